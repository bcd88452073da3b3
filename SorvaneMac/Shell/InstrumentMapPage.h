#pragma once

#include "SorvaneMac/Screens/InstrumentMapScreen.h"
#include "SorvaneMac/Shell/RowTableModel.h"
#include "SorvaneMac/Shell/TablePage.h"

class QTableView;

namespace sorvane {

/// Instrument Map: a row for each column of the table.
class InstrumentMapPage final : public TablePage {
public:
    explicit InstrumentMapPage(Workspace& workspace);

protected:
    void refreshTable() override;

private:
    InstrumentMapScreen& map_;
    RecordTableModel<InstrumentMapScreen::Row>* model_;
    QTableView* table_;
};

}  // namespace sorvane
