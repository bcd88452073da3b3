#include "SorvaneMac/Screens/CompareMeans/OneWayAnova.h"

#include "SorvaneMac/Screens/CompareMeans/GroupComparison.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

std::string OneWayAnova::subtitle() const {
    return std::string(displayName(InferentialTest::anova));
}

void OneWayAnova::addControls(SetupForm& form) {
    GroupSelection::addControls(form, state_.dataset(), {fields_.cmOutcome, fields_.cmGrouping});
}

std::string OneWayAnova::runLabel() const {
    return "Run ANOVA";
}

std::optional<Gate> OneWayAnova::gate() const {
    const GroupSelectionFields selected{fields_.cmOutcome, fields_.cmGrouping};
    if (std::optional<Gate> missing = GroupSelection::gate(state_.dataset(), selected)) {
        return missing;
    }
    if (!GroupSelection::hasTwoUsableGroups(state_.dataset(), selected)) {
        return GroupComparison::tooFewGroups(state_.dataset(), fields_.cmOutcome->name,
                                             fields_.cmGrouping->name);
    }
    return std::nullopt;
}

std::string OneWayAnova::selection() const {
    return fields_.cmOutcome->name + " by " + fields_.cmGrouping->name;
}

std::optional<OneWayRun> OneWayAnova::compute() {
    OneWayRun run =
        GroupComparison::run(state_.dataset(), fields_.cmOutcome->name, fields_.cmGrouping->name);
    fields_.cmAssumptionFindings.replace(run.assumptions);
    return run;
}

void OneWayAnova::present(const OneWayRun& run, ScreenContent& content) const {
    if (run.result) {
        GroupComparison::show(run, content);
    } else {
        content.gate = GroupComparison::tooFewGroups(state_.dataset(), fields_.cmOutcome->name,
                                                     fields_.cmGrouping->name);
    }
}

Guide OneWayAnova::guide() const {
    return {
        .answers =
            "Whether the means of a numeric outcome differ anywhere among two or more groups, and "
            "then, by post-hoc comparisons, between which.",
        .needs =
            "Independent cases, each in one group, with two or more values in at least two "
            "groups. The values should be roughly normal within groups. Where the variances "
            "differ, Welch's form is the safer one.",
        .doNotClaim = {"Do not claim causation from this group comparison alone.",
                       "Do not claim which groups differ from the omnibus test without post-hoc "
                       "evidence.",
                       "Do not ignore assumption warnings when reporting statistical "
                       "significance."}};
}

}  // namespace sorvane
