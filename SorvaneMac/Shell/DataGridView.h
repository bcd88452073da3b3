#pragma once

#include <QTableView>

#include "SorvaneMac/Screens/SelectionText.h"
#include "SorvaneMac/Shell/DataGridModel.h"

namespace sorvane {

class DataGridHeader;

/// The table in a grid, with row numbers and heads, for any number of rows.
class DataGridView final : public QTableView {
public:
    explicit DataGridView(DataGridModel::Write write);

    /// Shows another state of the table.
    ///
    /// Returns    whether any cell may be another than before
    bool show(ShownCells cells, DataGridModel::Heads heads, bool isEditable);
    using QTableView::show;

    DataGridModel& cells() { return *model_; }
    std::optional<CellPlace> place() const;
    /// Makes a cell the current one, alone selected, and brings it into view.
    void goTo(CellPlace place);
    std::vector<CellBlock> selectedBlocks() const;

    /// Writes what is being typed into a cell, which stays open.
    void commitOpenEditor();

    /// Typing does not search: a column of a million rows would be read at each key.
    void keyboardSearch(const QString&) override {}

private:
    DataGridModel* model_;
    DataGridHeader* header_;
};

}  // namespace sorvane
