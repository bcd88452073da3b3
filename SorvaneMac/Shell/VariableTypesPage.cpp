#include "SorvaneMac/Shell/VariableTypesPage.h"

#include <QComboBox>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/RowTable.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/VariableTypesModel.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

VariableTypesScreen& screenOf(Workspace& workspace) {
    return static_cast<VariableTypesScreen&>(workspace.screens.at(StudioScreen::variableTypes));
}

/// Edits a role as a choice among all of them.
class RoleDelegate final : public CellDelegate {
public:
    using CellDelegate::CellDelegate;

    QWidget* createEditor(QWidget* parent,
                          const QStyleOptionViewItem&,
                          const QModelIndex&) const override {
        auto* choice = new QComboBox(parent);
        choice->addItems(VariableTypesModel::kindNames());
        choice->setAccessibleName("Role");
        connect(choice, &QComboBox::activated, this, [this, choice] {
            auto* self = const_cast<RoleDelegate*>(this);
            emit self->commitData(choice);
            emit self->closeEditor(choice);
        });
        return choice;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* choice = static_cast<QComboBox*>(editor);
        choice->setCurrentIndex(index.data(Qt::EditRole).toInt());
        choice->showPopup();
    }
    void setModelData(QWidget* editor,
                      QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        const int chosen = static_cast<QComboBox*>(editor)->currentIndex();
        if (chosen != index.data(Qt::EditRole).toInt()) {
            model->setData(index, chosen, Qt::EditRole);
        }
    }
};

}  // namespace

VariableTypesPage::VariableTypesPage(Workspace& workspace)
    : TablePage(StudioScreen::variableTypes, workspace),
      model_(std::make_unique<VariableTypesModel>(screenOf(workspace))),
      table_(makeRowTable(*model_, "Variables and their roles")) {
    using Model = VariableTypesModel;
    table_->setItemDelegateForColumn(Model::role, new RoleDelegate(table_));
    table_->setItemDelegateForColumn(Model::inReliability, new SwitchDelegate(table_));
    table_->setItemDelegateForColumn(Model::inDescriptives, new SwitchDelegate(table_));
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                            QAbstractItemView::SelectedClicked);
    const int widths[] = {150, 172, 52, 76, 60, 70, 72, 160};
    int at = 0;
    for (const int width : widths) {
        table_->setColumnWidth(at++, Theme::px(width));
    }
    column().addWidget(quickRoles());
    column().addWidget(table_, 1);
}

VariableTypesPage::~VariableTypesPage() {
    // The table refers to the model, which goes first otherwise.
    delete table_;
}

QWidget* VariableTypesPage::quickRoles() {
    auto* bar = new QWidget;
    auto* row = new WrapLayout(Theme::px(6));
    bar->setLayout(row);
    row->addWidget(Labels::line("Selected:", "small"));
    using enum UserVariableRole;
    for (const UserVariableRole role : {outcome, independent, scaleItem, openEnded, doNotAnalyze}) {
        row->addWidget(Buttons::make(
            qtText(displayName(role)), [this, role] { assignSelected(role); },
            Buttons::Weight::tool));
    }
    return bar;
}

void VariableTypesPage::assignSelected(UserVariableRole role) {
    std::vector<Uuid> selected;
    for (const QModelIndex& index : table_->selectionModel()->selectedRows()) {
        selected.push_back(model_->id(index.row()));
    }
    screenOf(workspace()).assign(selected, variableKind(role));
}

void VariableTypesPage::refreshTable() {
    model_->refresh();
}

}  // namespace sorvane
