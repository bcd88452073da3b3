#include "SorvaneMac/Screens/Multivariate/Discriminant.h"

#include "SorvaneMac/Screens/Multivariate/GroupedOutcomes.h"

namespace sorvane {

namespace {

Gate cannotRunDiscriminant() {
    return {.title = "Cannot run discriminant analysis",
            .lead = "",
            .text =
                "Discriminant analysis needs 2+ numeric variables, a grouping factor with 2+ "
                "groups, and enough complete cases."};
}

}  // namespace

void Discriminant::addControls(SetupForm& form) {
    GroupedOutcomes::addControls(form, state_.dataset(), fields_, "Variables");
}

std::optional<Gate> Discriminant::selectionGate() const {
    return GroupedOutcomes::gate(state_.dataset(), fields_, cannotRunDiscriminant());
}

Guide Discriminant::guide() const {
    return {.answers =
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

}  // namespace sorvane
