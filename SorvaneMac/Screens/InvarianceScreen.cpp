#include "SorvaneMac/Screens/InvarianceScreen.h"

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;
using VariableLists::without;

constexpr std::size_t seededItems = 8;
/// With fewer a factor is not identified within each group.
constexpr std::size_t fewestItems = 3;

}  // namespace

void InvarianceScreen::seed() {
    Seeding::fillFirst(
        fields_.invItems,
        SuitedVariables::withFewCategories(SuitedVariables::analyzed(state_.dataset())),
        seededItems);
    Seeding::fillFirst(fields_.invGroup,
                       without(anovaGroupingVariables(state_.dataset()), fields_.invItems.get()));
}

std::vector<std::string> InvarianceScreen::items() const {
    std::vector<std::string> names =
        FormControls::chosen(fields_.invItems.get(), numericVariables(state_.dataset()));
    std::erase(names, fields_.invGroup->name);
    return names;
}

SetupForm InvarianceScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = numericVariables(state_.dataset());
    SetupForm form;
    form.title = "Invariance";
    form.controls = {
        HeadingControl{"GROUPS"},
        variablePicker("Groups to compare", fields_.invGroup,
                       anovaGroupingVariables(state_.dataset())),
        HeadingControl{"ONE FACTOR"},
        withUnavailable(variableCheckList("Items of the factor", fields_.invItems,
                                          without(numeric, {fields_.invGroup->name})),
                        fields_.invItems.get(), numeric),
    };
    OptionControls::addRun(form, "Run invariance", gate(), [this] { run(); });
    return form;
}

std::optional<Gate> InvarianceScreen::goneColumn() const {
    if (auto gone = SelectionGates::goneColumn(
            fields_.invGroup, anovaGroupingVariables(state_.dataset()), "grouping columns")) {
        return gone;
    }
    return SelectionGates::goneColumn(fields_.invItems, numericVariables(state_.dataset()),
                                      "numeric columns");
}

std::optional<Gate> InvarianceScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (const std::optional<Gate> gone = goneColumn()) {
        return *gone;
    }
    if (fields_.invGroup->isBlank()) {
        return Gate{
            .title = "Set the groups to compare",
            .lead = "",
            .text =
                "Set a grouping column in the Setup panel. If none is offered, give one the "
                "role Independent / group in Variable Types."};
    }
    if (items().size() < fewestItems) {
        return Gate{.title = "Select at least three items",
                    .lead = "",
                    .text =
                        "Check three or more numeric items of one factor in the Setup panel; with "
                        "fewer, a one-factor model has no solution of its own in a group."};
    }
    return ResultText::notYetGate("Invariance testing");
}

std::string InvarianceScreen::subtitle() const {
    return "Configural, metric and scalar models of one factor, compared step by step "
           "between groups.";
}

Guide InvarianceScreen::guide() const {
    return {.answers =
                "Whether a scale works alike in the groups that are to be compared: the same items "
                "on the factor (configural), with the same loadings (metric), and with the same "
                "intercepts (scalar).",
            .needs =
                "Three numeric items or more of one factor that fits in each group by itself, and "
                "a grouping variable with 100 complete cases or more in every group. Items with "
                "fewer than five answer categories strain the normal theory behind it.",
            .doNotClaim = {
                "Do not compare scale means between groups unless scalar invariance holds, at "
                "least in part; nor correlations and slopes unless metric invariance does.",
                "Do not claim invariance because a test is not significant in small groups, nor "
                "its failure because one is in large ones; look at the change of the fit indices.",
                "Do not read a failure of invariance as a fault of the people of one group."}};
}

}  // namespace sorvane
