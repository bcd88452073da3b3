#pragma once

#include <memory>

#include "SorvaneMac/Shell/TablePage.h"

class QTableView;

namespace sorvane {

class DataGridHeader;
class DataGridModel;

/// Data Preview: the table in a grid.
class DataPreviewPage final : public TablePage {
public:
    explicit DataPreviewPage(Workspace& workspace);
    ~DataPreviewPage() override;

    /// Puts the selected cells on the clipboard as lines of tab-separated text.
    bool copySelection() override;

protected:
    void refreshTable() override;

private:
    void prepareGrid();
    void rememberPlace();

    std::unique_ptr<DataGridModel> model_;
    QTableView* grid_;
    DataGridHeader* header_;
};

}  // namespace sorvane
