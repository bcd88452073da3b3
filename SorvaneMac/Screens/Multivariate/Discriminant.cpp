#include "SorvaneMac/Screens/Multivariate/GroupedOutcomes.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateAnalyses.h"
#include "SorvaneMac/Screens/PlannedAnalysis.h"

namespace sorvane {

namespace {

Gate cannotRunDiscriminant() {
    return {.title = "Cannot run discriminant analysis",
            .lead = "",
            .text =
                "Discriminant analysis needs 2+ numeric variables, a grouping factor with 2+ "
                "groups, and enough complete cases."};
}

class Discriminant final : public PlannedAnalysis<MultivariateFields> {
public:
    using PlannedAnalysis::PlannedAnalysis;

    std::string subtitle() const override {
        return "Tell groups apart by several numeric variables at once.";
    }
    void addControls(SetupForm& form) override {
        GroupedOutcomes::addControls(form, state_.dataset(), fields_, "Variables");
    }

    std::string runLabel() const override { return "Run discriminant analysis"; }

    Guide guide() const override {
        return {
            .answers =
                "Which weighted combinations of numeric variables tell known groups apart, and "
                "how many cases they would place in their own group.",
            .needs =
                "Groups that are known beforehand, two or more numeric variables, and more cases "
                "than groups plus variables. Spreads should be alike in all groups.",
            .doNotClaim = {"Do not report the share of cases classified correctly as if it held "
                           "for new cases: the rule was fitted to the same ones.",
                           "Do not compare that share with zero; compare it with the share of the "
                           "largest group.",
                           "Do not read weights of correlated variables as their importance."}};
    }

private:
    std::string_view name() const override { return displayName(MVTest::discriminant); }

    std::optional<Gate> selectionGate() const override {
        return GroupedOutcomes::gate(state_.dataset(), fields_, cannotRunDiscriminant());
    }
};

}  // namespace

std::unique_ptr<Analysis> MultivariateAnalyses::discriminant(StudioState& state,
                                                             MultivariateFields& fields) {
    return std::make_unique<Discriminant>(state, fields);
}

}  // namespace sorvane
