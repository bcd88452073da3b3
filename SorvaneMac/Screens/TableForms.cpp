#include "SorvaneMac/Screens/TableForms.h"

#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"

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

std::optional<Gate> gateOf(std::string title, const std::optional<std::string>& lacking) {
    if (!lacking) {
        return std::nullopt;
    }
    return Gate{.title = std::move(title), .lead = "", .text = *lacking};
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
    DataPreparation::addRun(form, state_,
                            {.label = "Create groups",
                             .gate = gate(),
                             .message = &derived.binningMessage,
                             .run = [this] {
                                 run();
                             }});
}

std::optional<Gate> BandsForm::gate() const {
    return gateOf("Nothing to group yet", state_.binningLacks());
}

void BandsForm::run() {
    state_.createBinnedVariable();
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
    OptionControls::addRun(form, "Rename", gate(), [this] { run(); });
    const std::optional<std::string> lacking = state_.deletionLacks(fields_.dvName->name);
    form.controls.emplace_back(
        ButtonControl{.label = "Delete variable", .isEnabled = !lacking, .press = [this] {
                          state_.deleteVariable(fields_.dvName->name);
                      }});
    if (lacking && !fields_.dvName->isBlank()) {
        form.controls.emplace_back(NoteControl{*lacking, true});
    }
    DataPreparation::addOutcome(form, state_, fields_.dvMessage);
}

std::optional<Gate> RenameForm::gate() const {
    return gateOf("Nothing to rename or delete yet",
                  state_.renameLacks(fields_.dvName->name, fields_.dvNewName.get()));
}

void RenameForm::run() {
    state_.renameVariable(fields_.dvName->name, fields_.dvNewName.get());
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
