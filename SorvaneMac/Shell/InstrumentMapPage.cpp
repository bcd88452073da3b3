#include "SorvaneMac/Shell/InstrumentMapPage.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/RowTable.h"

namespace sorvane {

namespace {

constexpr int labelColumn = 2;

using Row = InstrumentMapScreen::Row;

std::vector<RowColumn<Row>> columnsOf(InstrumentMapScreen& map) {
    return {
        {.look = {.head = "Item",
                  .width = 54,
                  .headTip =
                      "Whether the column is in the item set that Scale & Reliability analyzes"},
         .switchName = [](const Row& row) { return "Include " + row.name + " in reliability"; },
         .isOn =
             [](const Row& row) {
                 return row.canBeIncluded ? std::optional(row.isIncluded) : std::nullopt;
             },
         .turn =
             [&map](const Row& row, bool isOn) {
                 map.setIncluded(row.id, isOn);
             }},
        {.look = {.head = "Column", .width = 150, .ink = RowColumnLook::Ink::strong},
         .text = &Row::name,
         .toolTip = &Row::label},
        {.look = {.head = "Label", .width = 190}, .text = &Row::label},
        {.look = {.head = "Seems to be", .width = 165}, .text = &Row::category},
        {.look = {.head = "Scale", .width = 66, .isNumber = true}, .text = &Row::probability},
        {.look = {.head = "Role found", .width = 172}, .text = &Row::inferredRole},
        {.look = {.head = "Why", .width = 260}, .text = &Row::reasons},
        {.look = {.head = "Remarks", .width = 260, .ink = RowColumnLook::Ink::quiet},
         .text = &Row::remarks}};
}

}  // namespace

InstrumentMapPage::InstrumentMapPage(Workspace& workspace)
    : TablePage(StudioScreen::instrumentMap, workspace),
      map_(static_cast<InstrumentMapScreen&>(workspace.screens.at(StudioScreen::instrumentMap))),
      model_(new RecordTableModel<Row>(columnsOf(map_))),
      table_(makeRowTable(model_, "Columns and what they seem to be")) {
    auto* bar = new QHBoxLayout;
    bar->addWidget(Buttons::make(
        "Select Likert items",
        [&workspace] { workspace.state.selectLikertCandidateItemsForReliability(); },
        Buttons::Weight::tool));
    bar->addStretch(1);
    column().addLayout(bar);
    column().addWidget(table_, 1);
}

void InstrumentMapPage::refreshTable() {
    table_->setColumnHidden(labelColumn, !map_.hasLabels());
    model_->show(map_.rows());
}

}  // namespace sorvane
