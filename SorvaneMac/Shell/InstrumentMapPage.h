#pragma once

#include <memory>

#include "SorvaneMac/Shell/TablePage.h"

class QTableView;

namespace sorvane {

class InstrumentMapModel;

/// Instrument Map: a row for each column of the table.
class InstrumentMapPage final : public TablePage {
public:
    explicit InstrumentMapPage(Workspace& workspace);
    ~InstrumentMapPage() override;

protected:
    void refreshTable() override;

private:
    std::unique_ptr<InstrumentMapModel> model_;
    QTableView* table_;
};

}  // namespace sorvane
