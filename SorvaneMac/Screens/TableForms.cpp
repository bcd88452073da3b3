#include "SorvaneMac/Screens/TableForms.h"

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"

namespace sorvane {

namespace {

using VariableLists::List;
using VariableLists::numericVariables;

constexpr std::int64_t fewestBands = 2;
constexpr std::int64_t mostBands = 12;

List allVariables(const ImportedDataset& dataset) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        list.push_back(&variable);
    }
    return list;
}

Gate notReady(std::string title, std::string text) {
    return {.title = std::move(title), .lead = "", .text = std::move(text)};
}

}  // namespace

void BandsForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    DerivedVariableFields& derived = state_.derived;
    form.controls.emplace_back(variablePicker("Source variable",
                                              derived.selectedBinningVariableName,
                                              numericVariables(state_.dataset())));
    form.controls.emplace_back(enumerationPicker("Method", derived.binningMethod));
    form.controls.emplace_back(
        OptionControls::stepper("Bands", derived.binningBinCount, fewestBands, mostBands));
    form.controls.emplace_back(textField("Name of the new variable",
                                         derived.selectedBinningVariableName->name + " Group",
                                         derived.binnedVariableName));
    OptionControls::addRun(form, "Create groups", gate(), {});
}

Gate BandsForm::gate() const {
    const Field<VariableName>& source = state_.derived.selectedBinningVariableName;
    if (source->isBlank()) {
        return notReady("Nothing to group yet", "Choose a numeric variable to group.");
    }
    if (const auto gone = SelectionGates::goneColumn(source, numericVariables(state_.dataset()),
                                                     "numeric columns")) {
        return *gone;
    }
    return ResultText::notYetGate("Grouping into bands");
}

Guide BandsForm::guide() const {
    return {.answers =
                "How to turn a number such as age into a few ordered groups: bands of equal width, "
                "or bands of about equally many cases.",
            .needs =
                "A numeric variable with more values than bands. Quantile groups may part cases "
                "with the same value where many are tied.",
            .doNotClaim = {
                "Do not group a number only to compare means; a correlation or a regression on the "
                "number itself keeps what the bands throw away.",
                "Do not choose the cut points after looking at the outcome.",
                "Do not speak of natural groups; the bands are made by the rule."}};
}

void RenameForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    form.controls.emplace_back(
        variablePicker("Variable", fields_.dvName, allVariables(state_.dataset())));
    form.controls.emplace_back(textField("New name", fields_.dvName->name, fields_.dvNewName));
    OptionControls::addRun(form, "Rename", gate(), {});
    form.controls.emplace_back(
        ButtonControl{.label = "Delete variable", .isEnabled = false, .press = {}});
    if (!fields_.dvName->isBlank() && state_.dataset().columnCount() == 1) {
        form.controls.emplace_back(NoteControl{
            "The dataset needs at least one variable, so the last one cannot be deleted.", true});
    }
}

Gate RenameForm::gate() const {
    const std::string title = "Nothing to rename or delete yet";
    const std::string& name = fields_.dvName->name;
    const std::string wanted(UnicodeText::trimmed(fields_.dvNewName.get()));
    if (name.empty()) {
        return notReady(title, "Choose a variable to rename.");
    }
    if (const auto gone =
            SelectionGates::goneColumn(fields_.dvName, allVariables(state_.dataset()), "columns")) {
        return *gone;
    }
    if (wanted.empty()) {
        return notReady(title, "Enter the new name first.");
    }
    if (wanted == name) {
        return notReady(title, name + " already has that name.");
    }
    if (state_.dataset().columnIndex(wanted)) {
        return notReady(title,
                        "A variable named " + wanted + " already exists. Choose a different name.");
    }
    return ResultText::notYetGate("Renaming and deleting");
}

Guide RenameForm::guide() const {
    return {.answers =
                "How to give a variable another name, which every list and analysis then uses, or "
                "to take it out of the working table. The imported file stays as it is.",
            .needs = "A variable, and a name that no other variable has.",
            .doNotClaim = {
                "Do not delete a variable because it spoils a result; set its role to Do not "
                "analyze and say so.",
                "Do not rename items so that nobody can find them in the questionnaire."}};
}

}  // namespace sorvane
