#include "SorvaneMac/Shell/RowTable.h"

#include <QHeaderView>
#include <QTableView>

#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/RowTableModel.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

QTableView* makeRowTable(RowTableModel* model, const QString& name) {
    auto* table = new QTableView;
    model->setParent(table);
    table->setModel(model);
    table->setItemDelegate(new RowDelegate(table));
    table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                           QAbstractItemView::SelectedClicked);
    table->setAccessibleName(name);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setShowGrid(false);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(Theme::px(28));
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setStretchLastSection(true);
    for (int column = 0; column < model->columnCount(); ++column) {
        const int width =
            model->headerData(column, Qt::Horizontal, RowTableModel::widthRole).toInt();
        table->setColumnWidth(column, Theme::px(width));
    }
    return table;
}

}  // namespace sorvane
