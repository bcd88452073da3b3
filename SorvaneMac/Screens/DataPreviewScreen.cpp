#include "SorvaneMac/Screens/DataPreviewScreen.h"

#include <algorithm>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

SetupForm DataPreviewScreen::setup() {
    SetupForm form;
    form.title = "Data Preview";
    const bool isEditable = state_.data.isDatasetEditable.get();
    form.controls = {
        NoteControl{isEditable
                        ? "Type in a cell to change it. Counts and roles follow what you type."
                        : "An imported table is read only; its source stays the record of what was "
                          "collected. Cells can be selected and copied.",
                    false},
        NoteControl{
            "Find a text with Ctrl+F; Return goes to the next match and Shift+Return to the "
            "one before. Ctrl+G goes to a row. Ctrl+C copies what is selected, for a "
            "spreadsheet.",
            false}};
    return form;
}

ScreenContent DataPreviewScreen::content() const {
    ScreenContent content;
    content.title = "Data Preview";
    if (!state_.hasData()) {
        content.gate = ResultText::noDataGate();
        return content;
    }
    content.subtitle = state_.dataset().name + " · " + DatasetText::size(state_.dataset()) + " · " +
                       DatasetText::missing(state_.dataset());
    return content;
}

std::vector<DataPreviewScreen::ColumnHead> DataPreviewScreen::columnHeads() const {
    const ImportedDataset& dataset = state_.dataset();
    std::vector<ColumnHead> heads;
    heads.reserve(dataset.variables.size());
    for (const DataVariable& variable : dataset.variables) {
        std::string details = variable.label.value_or("");
        for (const std::string& warning : variable.warnings) {
            details += (details.empty() ? "" : "\n") + warning;
        }
        heads.push_back(
            {.name = variable.name,
             .role = std::string(displayName(variable.assignedType)),
             .missing =
                 variable.missingCount == 0
                     ? std::string("complete")
                     : DatasetText::share(variable.missingCount, dataset.rowCount()) + " missing",
             .details = std::move(details)});
    }
    return heads;
}

bool DataPreviewScreen::hasValueLabels() const {
    return std::ranges::any_of(state_.dataset().variables, [](const DataVariable& variable) {
        return variable.valueLabels && !variable.valueLabels->empty();
    });
}

ShownCells DataPreviewScreen::cells() const {
    return {state_.dataset(), showsValueLabels.get() ? CellForm::labelled : CellForm::stored};
}

Guide DataPreviewScreen::guide() const {
    return {.answers = "What stands in each cell of the table?",
            .needs = "A dataset. Cells can be typed only in a grid that was created blank.",
            .doNotClaim = {"Do not correct cells by eye without noting it; say in the report what "
                           "was changed."}};
}

}  // namespace sorvane
