#pragma once

#include "SorvaneMac/Screens/UserVariableRole.h"
#include "SorvaneMac/Screens/VariableTypesScreen.h"
#include "SorvaneMac/Shell/RowTableModel.h"
#include "SorvaneMac/Shell/TablePage.h"

class QTableView;

namespace sorvane {

/// Variable Types: the quick roles above, and a row for each variable.
class VariableTypesPage final : public TablePage {
public:
    explicit VariableTypesPage(Workspace& workspace);

protected:
    void refreshTable() override;

private:
    QWidget* quickRoles();
    void renameSelected();
    void assignSelected(UserVariableRole role);

    VariableTypesScreen& types_;
    RecordTableModel<VariableTypesScreen::Row>* model_;
    QTableView* table_;
};

}  // namespace sorvane
