#include "SorvaneMac/Screens/Multilevel/MultilevelAnalyses.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelGates.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelGuide.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelSelection.h"
#include "SorvaneMac/Screens/PlannedAnalysis.h"

namespace sorvane {

namespace {

class OrdinalModel final : public PlannedAnalysis<MultilevelFields> {
public:
    using PlannedAnalysis::PlannedAnalysis;

    std::string heading() const override { return std::string(MultilevelGuide::heading); }
    std::string subtitle() const override {
        return "Ordered categories of cases in clusters, by a cumulative logit with a random "
               "intercept.";
    }
    void addControls(SetupForm& form) override {
        MultilevelSelection::addVariables(form, state_.dataset(), fields_);
    }
    std::string runLabel() const override { return std::string(MultilevelGuide::runLabel); }
    Guide guide() const override { return MultilevelGuide::guide(); }

private:
    std::string_view name() const override { return "Ordinal multilevel modeling"; }
    std::optional<Gate> selectionGate() const override {
        return MultilevelGates::gate(state_.dataset(), fields_);
    }
};

}  // namespace

std::unique_ptr<Analysis> MultilevelAnalyses::ordinalModel(StudioState& state,
                                                           MultilevelFields& fields) {
    return std::make_unique<OrdinalModel>(state, fields);
}

}  // namespace sorvane
