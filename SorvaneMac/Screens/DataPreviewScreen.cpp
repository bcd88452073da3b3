#include "SorvaneMac/Screens/DataPreviewScreen.h"

#include <algorithm>

#include "SorvaneCore/Dataset/Grid/BlankDatasetFactory.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

namespace {

std::string detailsOf(const DataVariable& variable) {
    std::vector<std::string> lines = {variable.label.value_or("")};
    for (std::string& value : DatasetText::labelledValues(variable)) {
        lines.push_back(std::move(value));
    }
    lines.insert(lines.end(), variable.warnings.begin(), variable.warnings.end());
    std::string details;
    for (const std::string& line : lines) {
        details += (details.empty() || line.empty() ? "" : "\n") + line;
    }
    return details;
}

}  // namespace

SetupForm DataPreviewScreen::setup() {
    SetupForm form;
    form.title = "Data Preview";
    form.controls = {
        NoteControl{isEditable()
                        ? "Type in a cell to change it; Ctrl+Z undoes while you type. Counts and "
                          "roles follow. A block copied from a spreadsheet is pasted with Ctrl+V "
                          "from the selected cell on."
                        : "An imported table is read only; its source stays the record of what was "
                          "collected. Cells can be selected and copied.",
                    false},
        NoteControl{
            "Find a text with Ctrl+F; Return goes to the next match and Shift+Return to the "
            "one before. Ctrl+G goes to a row. Ctrl+C copies what is selected, for a "
            "spreadsheet.",
            false}};
    if (isEditable()) {
        addGrid(form);
        addSelectedColumn(form);
    }
    DataPreparation::addUndo(form, state_);
    return form;
}

void DataPreviewScreen::addGrid(SetupForm& form) {
    DatasetFields& data = state_.data;
    // While the name is typed the draft may have blanks at its end that the name has not.
    const bool isDraftOfName =
        UnicodeText::trimmed(data.datasetDraftName.get()) == state_.dataset().name;
    form.controls.emplace_back(HeadingControl{"GRID"});
    form.controls.emplace_back(
        TextControl{.label = "Name",
                    .prompt = "Untitled dataset",
                    .text = isDraftOfName ? data.datasetDraftName.get() : state_.dataset().name,
                    .set = [this](const std::string& name) {
                        state_.data.datasetDraftName.set(name);
                        state_.updateDatasetName();
                    }});
    form.controls.emplace_back(
        OptionControls::stepper("Rows", data.datasetDraftRows, 1, BlankDatasetFactory::mostRows));
    form.controls.emplace_back(OptionControls::stepper("Columns", data.datasetDraftColumns, 1,
                                                       BlankDatasetFactory::mostColumns));
    const std::int64_t rows = data.datasetDraftRows.get();
    const std::int64_t columns = data.datasetDraftColumns.get();
    form.controls.emplace_back(ButtonControl{.label = "Set the grid to " +
                                                      DatasetText::counted(rows, "row") + " and " +
                                                      DatasetText::counted(columns, "column"),
                                             .isEnabled = rows != state_.dataset().rowCount() ||
                                                          columns != state_.dataset().columnCount(),
                                             .press = [this, rows, columns] {
                                                 state_.setDatasetSize(rows, columns);
                                             }});
    form.controls.emplace_back(ButtonControl{.label = "Add row", .press = [this] {
                                                 state_.addDatasetRow();
                                             }});
    form.controls.emplace_back(ButtonControl{.label = "Add column", .press = [this] {
                                                 state_.addDatasetColumn("");
                                             }});
}

void DataPreviewScreen::addSelectedColumn(SetupForm& form) {
    const std::optional<std::int64_t> column = selectedColumn();
    if (!column) {
        return;
    }
    const StudioState::HeaderBinding header = state_.headerBinding(*column);
    form.controls.emplace_back(HeadingControl{"SELECTED COLUMN"});
    form.controls.emplace_back(
        FormControls::textField("New name of " + header.text, header.text, datasetHeaderDraft));
    form.controls.emplace_back(
        ButtonControl{.label = "Rename column",
                      .isEnabled = !UnicodeText::trimmed(datasetHeaderDraft.get()).empty(),
                      .press = [this, set = header.set] {
                          set(datasetHeaderDraft.get());
                          datasetHeaderDraft.set("");
                      }});
    form.controls.emplace_back(ButtonControl{.label = "Delete column " + header.text,
                                             .isEnabled = state_.dataset().columnCount() > 1,
                                             .press = [this, at = *column] {
                                                 state_.deleteDatasetColumn(at);
                                             }});
}

std::optional<std::int64_t> DataPreviewScreen::selectedColumn() const {
    const std::optional<std::int64_t>& column = state_.data.selectedDatasetColumn.get();
    return column && *column < state_.dataset().columnCount() ? column : std::nullopt;
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
        heads.push_back(
            {.name = variable.name,
             .label = variable.label.value_or(""),
             .role = std::string(displayName(variable.assignedType)),
             .missing =
                 variable.missingCount == 0
                     ? std::string("complete")
                     : DatasetText::share(variable.missingCount, dataset.rowCount()) + " missing",
             .details = detailsOf(variable)});
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
