#include "SorvaneMac/Shell/VariableTypesPage.h"

#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>

#include <QItemSelectionModel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/RowTable.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

constexpr int labelColumn = 1;

using Row = VariableTypesScreen::Row;

/// The names of the roles, in the order of their values.
std::vector<std::string> roleNames() {
    std::vector<std::string> names;
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<VariableKind>>(
        [&names](auto enumerator) { names.emplace_back(displayName(enumerator.value)); });
    return names;
}

RowColumn<Row> roleColumn(VariableTypesScreen& types) {
    return {.look = {.head = "Role", .width = 172, .choices = roleNames()},
            .text = [](const Row& row) { return std::string(displayName(row.role)); },
            .chosen = [](const Row& row) { return static_cast<std::size_t>(row.role); },
            .choose =
                [&types](const Row& row, std::size_t role) {
                    types.assign({row.id}, static_cast<VariableKind>(role));
                }};
}

RowColumn<Row> countColumn(std::string head, int width, std::string Row::*count) {
    return {.look = {.head = std::move(head), .width = width, .isNumber = true}, .text = count};
}

std::vector<RowColumn<Row>> columnsOf(VariableTypesScreen& types) {
    return {
        {.look = {.head = "Variable", .width = 150, .ink = RowColumnLook::Ink::strong},
         .text = &Row::name,
         .toolTip = &Row::label},
        {.look = {.head = "Label", .width = 190}, .text = &Row::label},
        roleColumn(types),
        {.look = {.head = "Item", .width = 52, .headTip = "In the item set of Scale & Reliability"},
         .switchName = [](const Row& row) { return row.name + ", Item"; },
         .isOn = [](const Row& row) { return std::optional(row.inReliability); },
         .turn =
             [&types](const Row& row, bool isOn) {
                 types.setInReliability(row.id, isOn);
             }},
        {.look = {.head = "Describe", .width = 76, .headTip = "In Descriptives & Explore"},
         .switchName = [](const Row& row) { return row.name + ", Describe"; },
         .isOn = [](const Row& row) { return std::optional(row.inDescriptives); },
         .turn =
             [&types](const Row& row, bool isOn) {
                 types.setInDescriptives(row.id, isOn);
             }},
        countColumn("Valid", 60, &Row::valid),
        countColumn("Missing", 70, &Row::missing),
        countColumn("Distinct", 72, &Row::distinct),
        {.look = {.head = "Values", .width = 190, .headTip = "What the values mean, or examples"},
         .text = &Row::samples,
         .toolTip = &Row::valueLabels},
        {.look = {.head = "Remarks", .width = 240, .ink = RowColumnLook::Ink::quiet},
         .text = &Row::warnings}};
}

}  // namespace

VariableTypesPage::VariableTypesPage(Workspace& workspace)
    : TablePage(StudioScreen::variableTypes, workspace),
      types_(static_cast<VariableTypesScreen&>(workspace.screens.at(StudioScreen::variableTypes))),
      model_(new RecordTableModel<Row>(columnsOf(types_))),
      table_(makeRowTable(model_, "Variables and their roles")) {
    column().addWidget(quickRoles());
    column().addWidget(table_, 1);
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
    row->addWidget(Buttons::make(
        "Rename or Delete…", [this] { renameSelected(); }, Buttons::Weight::tool));
    return bar;
}

void VariableTypesPage::renameSelected() {
    const QModelIndexList selected = table_->selectionModel()->selectedRows();
    types_.beginRename(selected.isEmpty() ? std::string()
                                          : model_->row(selected.front().row()).name);
}

void VariableTypesPage::assignSelected(UserVariableRole role) {
    std::vector<Uuid> selected;
    for (const QModelIndex& index : table_->selectionModel()->selectedRows()) {
        selected.push_back(model_->row(index.row()).id);
    }
    types_.assign(selected, variableKind(role));
}

void VariableTypesPage::refreshTable() {
    table_->setColumnHidden(labelColumn, !types_.hasLabels());
    model_->show(types_.rows());
}

}  // namespace sorvane
