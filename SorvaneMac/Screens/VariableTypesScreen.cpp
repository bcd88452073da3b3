#include "SorvaneMac/Screens/VariableTypesScreen.h"

#include "SorvaneMac/Screens/ImportCards.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/JoinedText.h"

namespace sorvane {

namespace {

/// All labels where the values have some, else the first values.
std::string samplesOf(const DataVariable& variable) {
    const std::vector<std::string> labelled = DatasetText::labelledValues(variable);
    return joinedText(labelled.empty() ? variable.sampleValues : labelled);
}

}  // namespace

SetupForm VariableTypesScreen::setup() {
    SetupForm form;
    form.title = "Variable Types";
    form.controls = {
        NoteControl{"Select one variable or several and give them a role with the buttons above "
                    "the table, or choose a finer role in the Role column.",
                    false},
        NoteControl{"A role decides where a variable is offered: outcomes and groups in tests, "
                    "items in Scale & Reliability. What is not to be analyzed is offered nowhere.",
                    false}};
    if (state_.hasData()) {
        form.controls.emplace_back(HeadingControl{"RENAME OR DELETE"});
        rename_.addTo(form);
    }
    return form;
}

ScreenContent VariableTypesScreen::content() const {
    ScreenContent content;
    content.title = "Variable Types";
    if (!state_.hasData()) {
        content.gate = ResultText::noDataGate();
        return content;
    }
    content.subtitle = "The role of each variable. Every list in the program follows it.";
    if (std::optional<Card> card = ImportCards::cautions(state_)) {
        content.cards.push_back(*std::move(card));
    }
    return content;
}

std::vector<VariableTypesScreen::Row> VariableTypesScreen::rows() const {
    std::vector<Row> rows;
    rows.reserve(state_.dataset().variables.size());
    for (const DataVariable& variable : state_.dataset().variables) {
        rows.push_back({.id = variable.id,
                        .name = variable.name,
                        .label = variable.label.value_or(""),
                        .role = variable.assignedType,
                        .inReliability = variable.includeInReliability,
                        .inDescriptives = variable.includeInDescriptives,
                        .valid = ResultText::count(variable.nonMissingCount),
                        .missing = ResultText::count(variable.missingCount),
                        .distinct = ResultText::count(variable.uniqueCount),
                        .samples = samplesOf(variable),
                        .valueLabels = joinedText(DatasetText::labelledValues(variable), "\n"),
                        .warnings = joinedText(variable.warnings, "\n")});
    }
    return rows;
}

void VariableTypesScreen::assign(const std::vector<Uuid>& variables, VariableKind kind) {
    for (const Uuid& variable : variables) {
        state_.assignVariable(variable, kind);
    }
}

Guide VariableTypesScreen::guide() const {
    return {.answers = "What is each variable in this study?",
            .needs = "A dataset. The roles were guessed from names and values; check them once.",
            .doNotClaim = {"Do not treat a code such as a postal number as a quantity.",
                           "Do not change a role to make a result appear; decide it before the "
                           "analysis."}};
}

}  // namespace sorvane
