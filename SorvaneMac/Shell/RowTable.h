#pragma once

class QAbstractItemModel;
class QString;
class QTableView;

namespace sorvane {

/// A table view of records: whole rows are selected, no grid between columns.
QTableView* makeRowTable(QAbstractItemModel& model, const QString& name);

}  // namespace sorvane
