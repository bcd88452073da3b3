#pragma once

class QString;
class QTableView;

namespace sorvane {

class RowTableModel;

/// A table view of records, with the widths, switches and choices that the model's columns ask for.
///
/// Whole rows are selected; there is no grid between columns. The view takes the model over.
QTableView* makeRowTable(RowTableModel* model, const QString& name);

}  // namespace sorvane
