#include <algorithm>

#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

using NumberText::integer;

std::string rowsText(std::int64_t count) {
    return integer(count) + " row(s)";
}

std::string columnsText(std::int64_t count) {
    return integer(count) + " column(s)";
}

/// A grid may grow beyond the size that it can begin with, up to that of a spreadsheet.
constexpr std::int64_t mostRows = 1'048'576;
constexpr std::int64_t mostColumns = 16'384;
constexpr std::int64_t mostCells = 100'000'000;
constexpr std::string_view gridTooLarge =
    "The grid would be too large: it holds up to 1048576 rows, 16384 columns and 100 million "
    "cells. Nothing was changed.";

bool fitsGrid(const ImportedDataset& table, std::int64_t rows, std::int64_t columns) {
    const bool fitsSides = rows <= std::max(mostRows, table.rowCount()) &&
                           columns <= std::max(mostColumns, table.columnCount());
    return fitsSides &&
           rows * columns <= std::max(mostCells, table.rowCount() * table.columnCount());
}

std::size_t widthOf(const std::vector<std::vector<std::string>>& cells) {
    std::size_t width = 0;
    for (const std::vector<std::string>& line : cells) {
        width = std::max(width, line.size());
    }
    return width;
}

/// "Var11" and so on for columns beyond the last, none of which the table has.
std::vector<std::string> furtherHeaders(const StudioState& state, std::int64_t count) {
    std::vector<std::string> headers;
    for (std::int64_t number = state.dataset().columnCount() + 1;
         static_cast<std::int64_t>(headers.size()) < count; ++number) {
        const std::string name = "Var" + integer(number);
        if (!state.dataset().columnIndex(name)) {
            headers.push_back(name);
        }
    }
    return headers;
}

}  // namespace

bool StudioState::isInGrid(std::int64_t row, std::int64_t column) const {
    return data.isDatasetEditable.get() && row >= 0 && row < dataset().rowCount() && column >= 0 &&
           column < dataset().columnCount();
}

void StudioState::syncDatasetDraftHeaders() {
    const auto wanted = static_cast<std::size_t>(
        std::clamp<std::int64_t>(data.datasetDraftColumns.get(), 0, mostColumns));
    if (data.datasetDraftHeaders->size() == wanted) {
        return;
    }
    std::vector<std::string> headers = numberedHeaders(static_cast<std::int64_t>(wanted));
    const std::size_t kept = std::min(wanted, data.datasetDraftHeaders->size());
    std::copy_n(data.datasetDraftHeaders->begin(), kept, headers.begin());
    data.datasetDraftHeaders.set(std::move(headers));
}

void StudioState::updateDatasetCell(std::int64_t row, std::int64_t column, std::string_view value) {
    if (!isInGrid(row, column)) {
        return;
    }
    data.dataset.edit([row, column, value](ImportedDataset& table) {
        DatasetGridEditor::setCell(table, static_cast<std::size_t>(row),
                                   static_cast<std::size_t>(column), value);
    });
    ++data.editsSinceChange.typedCells;
    refreshAnalysisDefaults();
}

bool StudioState::pasteDatasetBlock(std::int64_t row, std::int64_t column, std::string_view text) {
    const std::vector<std::vector<std::string>> cells = DatasetGridEditor::pastedCells(text);
    const auto width = static_cast<std::int64_t>(widthOf(cells));
    if (!isInGrid(row, column) || width == 0) {
        return false;
    }
    const auto height = static_cast<std::int64_t>(cells.size());
    const std::int64_t rows = std::max(dataset().rowCount(), row + height);
    const std::int64_t newColumns =
        std::max<std::int64_t>(column + width - dataset().columnCount(), 0);
    if (!fitsGrid(dataset(), rows, dataset().columnCount() + newColumns)) {
        projectError.set(std::string(gridTooLarge));
        return false;
    }
    const std::string what = "block of " + rowsText(height) + " and " + columnsText(width);
    storeUndo("pasting of a " + what);
    const std::vector<std::string> headers = furtherHeaders(*this, newColumns);
    data.dataset.edit([&](ImportedDataset& table) {
        DatasetGridEditor::resizeRows(table, static_cast<std::size_t>(rows));
        DatasetGridEditor::appendColumns(table, headers);
        DatasetGridEditor::writeBlock(table, static_cast<std::size_t>(row),
                                      static_cast<std::size_t>(column), cells);
    });
    log("Pasted a " + what + " from row " + integer(row + 1) + " and column " +
        dataset().headers[static_cast<std::size_t>(column)] + " on.");
    projectError.set(std::nullopt);
    refreshAnalysisDefaults();
    return true;
}

void StudioState::updateDatasetName() {
    if (!data.isDatasetEditable.get()) {
        return;
    }
    const std::string_view name = UnicodeText::trimmed(data.datasetDraftName.get());
    data.dataset.edit([name](ImportedDataset& table) {
        table.name = name.empty() ? "Untitled dataset" : std::string(name);
    });
    data.editsSinceChange.name = true;
}

void StudioState::updateDatasetHeader(std::int64_t column, std::string_view name) {
    if (!data.isDatasetEditable.get() || column < 0 || column >= dataset().columnCount()) {
        return;
    }
    const auto index = static_cast<std::size_t>(column);
    const std::string from = dataset().headers[index];
    const std::string_view trimmed = UnicodeText::trimmed(name);
    std::string to = trimmed.empty() ? "Column " + integer(column + 1) : std::string(trimmed);
    if (to != from) {
        to = uniqueHeaderName(to, from);
    }
    if (to == from) {
        return;
    }
    storeUndo("renaming of " + from + " to " + to);
    data.dataChangeUndoFlags->renamed = {from, to};
    renameEverywhere(index, to);
    log("Renamed column " + from + " to " + to + ".");
    refreshAnalysisDefaults();
}

void StudioState::finalizeDatasetHeaders() {
    if (!data.isDatasetEditable.get()) {
        return;
    }
    const std::vector<std::string> clean = DatasetGridEditor::sanitizeHeaders(dataset().headers);
    for (std::size_t column = 0; column < clean.size(); ++column) {
        const std::string former = dataset().headers[column];
        if (clean[column] != former) {
            renameEverywhere(column, clean[column]);
            log("Renamed column " + former + " to " + clean[column] + ".");
        }
    }
    refreshAnalysisDefaults();
}

StudioState::HeaderBinding StudioState::headerBinding(std::int64_t column) {
    const bool isThere = column >= 0 && column < dataset().columnCount();
    return {.text = isThere ? dataset().headers[static_cast<std::size_t>(column)] : std::string(),
            .set = [this, column](const std::string& name) {
                updateDatasetHeader(column, name);
            }};
}

void StudioState::addDatasetRow() {
    if (data.isDatasetEditable.get()) {
        setDatasetRowCount(dataset().rowCount() + 1);
    }
}

bool StudioState::addDatasetColumn(std::string_view named) {
    if (!data.isDatasetEditable.get()) {
        return false;
    }
    if (!fitsGrid(dataset(), dataset().rowCount(), dataset().columnCount() + 1)) {
        projectError.set(std::string(gridTooLarge));
        return false;
    }
    const std::string header = UnicodeText::trimmed(named).empty()
                                   ? furtherHeaders(*this, 1).front()
                                   : uniqueHeaderName(named);
    data.dataset.edit([&header](ImportedDataset& table) {
        DatasetGridEditor::appendColumns(table, {&header, 1});
    });
    data.editsSinceChange.sizes = true;
    log("Added column " + header + ".");
    refreshAnalysisDefaults();
    return true;
}

bool StudioState::deleteDatasetColumn(std::int64_t at, Snapshot snapshot) {
    if (!isInGrid(0, at)) {
        return false;
    }
    const auto index = static_cast<std::size_t>(at);
    const std::string name = dataset().headers[index];
    if (const std::optional<std::string> lacking = deletionLacks(name)) {
        editor.dvMessage.set(*lacking);
        return false;
    }
    if (snapshot == Snapshot::taken) {
        storeUndo("deletion of column " + name);
    }
    removeEverywhere(index);
    log("Deleted column " + name + ".");
    clearSelectionBeyondTable();
    refreshAnalysisDefaults();
    return true;
}

void StudioState::setDatasetRowCount(std::int64_t count) {
    setDatasetSize(count, dataset().columnCount());
}

void StudioState::setDatasetColumnCount(std::int64_t count) {
    setDatasetSize(dataset().rowCount(), count);
}

bool StudioState::setDatasetSize(std::int64_t rows, std::int64_t columns) {
    if (!data.isDatasetEditable.get() || rows < 1 || columns < 1) {
        return false;
    }
    if (!fitsGrid(dataset(), rows, columns)) {
        projectError.set(std::string(gridTooLarge));
        return false;
    }
    const std::int64_t fewerRows = dataset().rowCount() - rows;
    const std::int64_t fewerColumns = dataset().columnCount() - columns;
    if (fewerRows > 0 || fewerColumns > 0) {
        std::string label = fewerRows > 0 ? rowsText(fewerRows) : "";
        label += fewerRows > 0 && fewerColumns > 0 ? " and " : "";
        label += fewerColumns > 0 ? columnsText(fewerColumns) : "";
        storeUndo("removal of " + label);
    }
    resizeRows(rows);
    resizeColumns(columns);
    if (fewerRows > 0 || fewerColumns > 0) {
        data.editsSinceChange.sizes = false;
    }
    projectError.set(std::nullopt);
    clearSelectionBeyondTable();
    refreshAnalysisDefaults();
    return true;
}

void StudioState::resizeRows(std::int64_t count) {
    const std::int64_t former = dataset().rowCount();
    if (count == former) {
        return;
    }
    data.dataset.edit([count](ImportedDataset& table) {
        DatasetGridEditor::resizeRows(table, static_cast<std::size_t>(count));
    });
    data.editsSinceChange.sizes = true;
    log(count < former ? "Removed " + rowsText(former - count) + " from the end."
                       : "Added " + rowsText(count - former) + ".");
}

void StudioState::resizeColumns(std::int64_t count) {
    const std::int64_t former = dataset().columnCount();
    if (count > former) {
        const std::vector<std::string> headers = furtherHeaders(*this, count - former);
        data.dataset.edit([&headers](ImportedDataset& table) {
            DatasetGridEditor::appendColumns(table, headers);
        });
        data.editsSinceChange.sizes = true;
        log("Added " + columnsText(count - former) + ".");
    }
    while (dataset().columnCount() > count) {
        removeEverywhere(static_cast<std::size_t>(dataset().columnCount()) - 1);
    }
    if (count < former) {
        log("Removed " + columnsText(former - count) + " from the end.");
    }
}

void StudioState::clearSelectionBeyondTable() {
    if (data.selectedDatasetRow->value_or(-1) >= dataset().rowCount()) {
        data.selectedDatasetRow.set(std::nullopt);
    }
    if (data.selectedDatasetColumn->value_or(-1) >= dataset().columnCount()) {
        data.selectedDatasetColumn.set(std::nullopt);
    }
}

}  // namespace sorvane
