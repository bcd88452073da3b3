#include "SorvaneMac/Screens/LatentClass/LatentClassAnalyses.h"
#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"
#include "SorvaneMac/Screens/LatentClass/MixtureControls.h"
#include "SorvaneMac/Screens/PlannedAnalysis.h"

namespace sorvane {

namespace {

class FactorMixture final : public PlannedAnalysis<LatentClassFields> {
public:
    using PlannedAnalysis::PlannedAnalysis;

    std::string heading() const override { return std::string(name()); }

    std::string subtitle() const override {
        return "Groups of cases that differ in the level of one common factor.";
    }

    void addControls(SetupForm& form) override {
        MixtureControls::add(form, state_.dataset(), fields_, LatentMixtureMode::profile);
    }

    std::string runLabel() const override { return "Run factor mixture"; }

    Guide guide() const override { return MixtureControls::guide(); }

private:
    std::string_view name() const override { return "Factor mixture analysis"; }

    std::optional<Gate> selectionGate() const override {
        return LatentIndicators::gate(state_.dataset(), fields_, LatentMixtureMode::profile);
    }
};

}  // namespace

std::unique_ptr<Analysis> LatentClassAnalyses::factorMixture(StudioState& state,
                                                             LatentClassFields& fields) {
    return std::make_unique<FactorMixture>(state, fields);
}

}  // namespace sorvane
