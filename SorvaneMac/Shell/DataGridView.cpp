#include "SorvaneMac/Shell/DataGridView.h"

#include <algorithm>

#include "SorvaneMac/Shell/DataGridHeader.h"
#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// Heads beyond this many columns take the common width; measuring thousands would be felt.
constexpr int measuredColumns = 300;

}  // namespace

DataGridView::DataGridView(DataGridModel::Write write)
    : model_(new DataGridModel(std::move(write))), header_(new DataGridHeader(*model_)) {
    model_->setParent(this);
    setHorizontalHeader(header_);
    setModel(model_);
    setItemDelegate(new CellDelegate(this));
    setAccessibleName("Data table");
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(Theme::px(25));
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    horizontalHeader()->setDefaultSectionSize(Theme::px(100));
}

bool DataGridView::show(ShownCells cells, DataGridModel::Heads heads, bool isEditable) {
    const int columns = model_->columnCount();
    const bool changed = model_->show(std::move(cells), std::move(heads), isEditable);
    if (model_->columnCount() != columns) {
        for (int column = 0; column < std::min(model_->columnCount(), measuredColumns); ++column) {
            setColumnWidth(column, header_->suitableWidth(column));
        }
    }
    return changed;
}

std::optional<CellPlace> DataGridView::place() const {
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return std::nullopt;
    }
    return CellPlace{.row = static_cast<std::size_t>(current.row()),
                     .column = static_cast<std::size_t>(current.column())};
}

void DataGridView::goTo(CellPlace place) {
    const QModelIndex index =
        model_->index(static_cast<int>(place.row), static_cast<int>(place.column));
    setCurrentIndex(index);
    scrollTo(index);
}

void DataGridView::commitOpenEditor() {
    if (QWidget* editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr) {
        commitData(editor);
    }
}

std::vector<CellBlock> DataGridView::selectedBlocks() const {
    std::vector<CellBlock> blocks;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        blocks.push_back({.top = static_cast<std::size_t>(range.top()),
                          .left = static_cast<std::size_t>(range.left()),
                          .bottom = static_cast<std::size_t>(range.bottom()),
                          .right = static_cast<std::size_t>(range.right())});
    }
    return blocks;
}

}  // namespace sorvane
