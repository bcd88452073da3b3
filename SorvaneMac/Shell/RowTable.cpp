#include "SorvaneMac/Shell/RowTable.h"

#include <QHeaderView>
#include <QTableView>

#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

QTableView* makeRowTable(QAbstractItemModel& model, const QString& name) {
    auto* table = new QTableView;
    table->setModel(&model);
    table->setItemDelegate(new CellDelegate(table));
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
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table->horizontalHeader()->setStretchLastSection(true);
    return table;
}

}  // namespace sorvane
