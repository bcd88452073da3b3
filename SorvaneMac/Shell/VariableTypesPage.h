#pragma once

#include <memory>

#include "SorvaneMac/Screens/UserVariableRole.h"
#include "SorvaneMac/Shell/TablePage.h"

class QTableView;

namespace sorvane {

class VariableTypesModel;

/// Variable Types: the quick roles above, and a row for each variable.
class VariableTypesPage final : public TablePage {
public:
    explicit VariableTypesPage(Workspace& workspace);
    ~VariableTypesPage() override;

protected:
    void refreshTable() override;

private:
    QWidget* quickRoles();
    void assignSelected(UserVariableRole role);

    std::unique_ptr<VariableTypesModel> model_;
    QTableView* table_;
};

}  // namespace sorvane
