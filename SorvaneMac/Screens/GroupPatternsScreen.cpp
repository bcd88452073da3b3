#include "SorvaneMac/Screens/GroupPatternsScreen.h"

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Screens/CompareMeans/GroupComparison.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::anovaOutcomeVariables;

Gate needOutcomeAndGroups() {
    return {.title = "Need a numeric outcome and a grouping field",
            .lead = "",
            .text =
                "Pick an outcome and a grouping field in the Setup panel. If one is not offered, "
                "set its role in Variable Types."};
}

}  // namespace

SetupForm GroupPatternsScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List groupings = VariableLists::without(
        anovaGroupingVariables(dataset), {state_.selectedANOVAOutcomeName->name});
    SetupForm form;
    form.title = "Group Patterns";
    form.controls = {
        HeadingControl{"VARIABLES"},
        variablePicker("Outcome", state_.selectedANOVAOutcomeName, anovaOutcomeVariables(dataset)),
        variablePicker("Grouping", state_.selectedANOVAGroupName, groupings)};
    OptionControls::addNote(form, gate());
    return form;
}

std::optional<Gate> GroupPatternsScreen::gate() const {
    const ImportedDataset& dataset = state_.dataset();
    const Field<VariableName>& outcome = state_.selectedANOVAOutcomeName;
    const Field<VariableName>& group = state_.selectedANOVAGroupName;
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (outcome->isBlank() || group->isBlank() || outcome.get() == group.get()) {
        return needOutcomeAndGroups();
    }
    if (std::optional<Gate> gone = SelectionGates::goneColumn(
            outcome, anovaOutcomeVariables(dataset), "numeric outcomes")) {
        return gone;
    }
    if (std::optional<Gate> gone = SelectionGates::goneColumn(
            group, anovaGroupingVariables(dataset), "grouping columns")) {
        return gone;
    }
    if (!GroupSelection::hasTwoUsableGroups(
            dataset, {state_.selectedANOVAOutcomeName, state_.selectedANOVAGroupName})) {
        return GroupComparison::tooFewGroups(dataset, state_.selectedANOVAOutcomeName->name,
                                             state_.selectedANOVAGroupName->name);
    }
    return std::nullopt;
}

OneWayRun GroupPatternsScreen::comparison() const {
    return GroupComparison::run(state_.dataset(), state_.selectedANOVAOutcomeName->name,
                                state_.selectedANOVAGroupName->name);
}

ScreenContent GroupPatternsScreen::content() const {
    ScreenContent content;
    content.title = std::string(title(id()));
    content.subtitle = "How an outcome spreads within and between groups.";
    content.gate = gate();
    if (content.gate) {
        return content;
    }
    const OneWayRun run = comparison();
    if (run.result) {
        GroupComparison::show(run, content);
    } else {
        content.gate =
            GroupComparison::tooFewGroups(state_.dataset(), state_.selectedANOVAOutcomeName->name,
                                          state_.selectedANOVAGroupName->name);
    }
    return content;
}

Json GroupPatternsScreen::record() const {
    return toJson(comparison().result);
}

Guide GroupPatternsScreen::guide() const {
    return {.answers =
                "How the values of an outcome lie within each group and between groups: centre, "
                "spread, and how large the difference is beside the spread.",
            .needs =
                "A numeric outcome and a grouping field with at least two groups of two or more "
                "values. Groups of a handful of cases show patterns that the next sample will "
                "not.",
            .doNotClaim = {"Do not claim causation from this group comparison alone.",
                           "Do not claim a difference that the spread within groups could hide.",
                           "Do not compare a group whose values are mostly missing as if it were "
                           "complete."}};
}

}  // namespace sorvane
