#include "SorvaneMac/Shell/DataPreviewPage.h"

#include <algorithm>

#include <QTableView>
#include <QVBoxLayout>

#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Screens/DataPreviewScreen.h"
#include "SorvaneMac/Shell/DataGridHeader.h"
#include "SorvaneMac/Shell/DataGridModel.h"
#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// Heads beyond this many columns take the common width; measuring thousands would be felt.
constexpr int measuredColumns = 300;

DataPreviewScreen& screenOf(Workspace& workspace) {
    return static_cast<DataPreviewScreen&>(workspace.screens.at(StudioScreen::dataPreview));
}

}  // namespace

DataPreviewPage::DataPreviewPage(Workspace& workspace)
    : TablePage(StudioScreen::dataPreview, workspace),
      model_(std::make_unique<DataGridModel>(
          [&workspace](std::int64_t row, std::int64_t column, const std::string& text) {
              workspace.state.updateDatasetCell(row, column, text);
          })),
      grid_(new QTableView),
      header_(new DataGridHeader(*model_)) {
    prepareGrid();
    column().addWidget(grid_, 1);
}

DataPreviewPage::~DataPreviewPage() {
    // The grid refers to the model, which goes first otherwise.
    delete grid_;
}

void DataPreviewPage::prepareGrid() {
    grid_->setHorizontalHeader(header_);
    grid_->setModel(model_.get());
    grid_->setItemDelegate(new CellDelegate(grid_));
    grid_->setAccessibleName("Data table");
    grid_->setWordWrap(false);
    grid_->setTabKeyNavigation(false);
    grid_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid_->verticalHeader()->setDefaultSectionSize(Theme::px(25));
    grid_->verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid_->horizontalHeader()->setDefaultSectionSize(Theme::px(100));
    connect(grid_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { rememberPlace(); });
}

void DataPreviewPage::rememberPlace() {
    const QModelIndex current = grid_->currentIndex();
    if (current.isValid()) {
        workspace().state.data.selectedDatasetRow.set(current.row());
        workspace().state.data.selectedDatasetColumn.set(current.column());
    }
}

void DataPreviewPage::refreshTable() {
    const StudioState& state = workspace().state;
    const int columns = model_->columnCount();
    model_->show(state.dataset().rows, screenOf(workspace()).columnHeads(),
                 state.data.isDatasetEditable.get());
    if (model_->columnCount() != columns) {
        for (int column = 0; column < std::min(model_->columnCount(), measuredColumns); ++column) {
            grid_->setColumnWidth(column, header_->suitableWidth(column));
        }
    }
}

bool DataPreviewPage::copySelection() {
    if (!grid_->hasFocus()) {
        return false;
    }
    QString text;
    for (const QItemSelectionRange& range : grid_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            for (int column = range.left(); column <= range.right(); ++column) {
                text += column == range.left() ? "" : "\t";
                text += model_->index(row, column).data().toString();
            }
            text += '\n';
        }
    }
    if (!text.isEmpty()) {
        Clipboard::setText(text);
    }
    return true;
}

}  // namespace sorvane
