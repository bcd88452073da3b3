#include "SorvaneMac/Screens/RelationshipsScreen.h"

#include <array>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CorrelationScreen.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::int64_t fewestPairs = 3;

Gate needTwoVariables() {
    return {.title = "Need two numeric variables",
            .lead = "Pick two different variables",
            .text =
                "Choose them in the Setup panel. Numeric columns are offered; set a column "
                "numeric in Variable Types if it is missing."};
}

Gate tooFewPairs() {
    return {.title = "Too few complete pairs",
            .lead = "",
            .text =
                "Fewer than three cases have a number in both columns. Choose columns that were "
                "measured on the same cases."};
}

}  // namespace

void RelationshipsScreen::seed() {
    corrSeed(fields_, state_.dataset());
}

SetupForm RelationshipsScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    SetupForm form;
    form.title = "Relationships";
    form.controls = {HeadingControl{"PAIR"},
                     variablePicker("First variable", fields_.corrX, numeric),
                     variablePicker("Second variable", fields_.corrY, numeric)};
    OptionControls::addNote(form, gate());
    return form;
}

std::optional<Gate> RelationshipsScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
    for (const Field<VariableName>* field : {&fields_.corrX, &fields_.corrY}) {
        if (std::optional<Gate> gone =
                SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
            return gone;
        }
    }
    if (fields_.corrX->isBlank() || fields_.corrY->isBlank() ||
        fields_.corrX.get() == fields_.corrY.get()) {
        return needTwoVariables();
    }
    const std::array<std::string, 2> names = {fields_.corrX->name, fields_.corrY->name};
    if (!Categories::hasCompleteRows(state_.dataset(), fewestPairs, names)) {
        return tooFewPairs();
    }
    return ResultText::notYetGate("The check of assumptions");
}

std::string RelationshipsScreen::subtitle() const {
    return "Assumptions and evidence for the association of two variables.";
}

Guide RelationshipsScreen::guide() const {
    return {.answers =
                "Whether the association of two numeric variables can be summed up by one "
                "coefficient: is it a straight line, are there far outliers, how are the values "
                "of each distributed.",
            .needs =
                "Two numeric variables and at least three cases with both values; with fewer than "
                "about thirty, a few cases decide what the plot looks like.",
            .doNotClaim = {"Do not claim causation from association.",
                           "Do not take a passed check as proof that an assumption holds; with "
                           "few cases hardly any departure is found.",
                           "Do not carry the association beyond the range of values observed."}};
}

}  // namespace sorvane
