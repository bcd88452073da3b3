#include "SorvaneMac/Screens/CategoricalTestsScreen.h"

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryTableGates.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricScreen.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

void CategoricalTestsScreen::seed() {
    npSeed(fields_, state_.dataset());
}

SetupForm CategoricalTestsScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List groupings = VariableLists::anovaGroupingVariables(state_.dataset());
    SetupForm form;
    form.title = "Categorical Tests";
    form.controls = {HeadingControl{"TABLE"},
                     variablePicker("Row category", fields_.npRowCat, groupings),
                     variablePicker("Column category", fields_.npColCat, groupings)};
    OptionControls::addNote(form, gate());
    return form;
}

std::optional<Gate> CategoricalTestsScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (std::optional<Gate> missing = CategoryTableGates::unsuitableFields(
            state_.dataset(), fields_, "Pick two different categorical fields.")) {
        return missing;
    }
    return ResultText::notYetGate("The table of two categorical fields");
}

std::string CategoricalTestsScreen::subtitle() const {
    return "Counts, shares and tests of two categorical fields.";
}

Guide CategoricalTestsScreen::guide() const {
    return {.answers =
                "How two categorical variables go together: counts, row and column shares, and "
                "whether they are associated (chi-square with Cramer's V; Fisher exact for a "
                "table of two by two).",
            .needs =
                "Two different fields with few categories, each case counted once. Expected "
                "counts below 5 make the chi-square p-value rough.",
            .doNotClaim = {"Do not claim that one variable causes the other from an association.",
                           "Do not read a significant table without looking at its cells.",
                           "Do not compare counts between rows of unequal size; compare shares."}};
}

}  // namespace sorvane
