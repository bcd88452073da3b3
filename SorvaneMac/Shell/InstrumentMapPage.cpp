#include "SorvaneMac/Shell/InstrumentMapPage.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "SorvaneMac/Screens/InstrumentMapScreen.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/InstrumentMapModel.h"
#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/RowTable.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

InstrumentMapScreen& screenOf(Workspace& workspace) {
    return static_cast<InstrumentMapScreen&>(workspace.screens.at(StudioScreen::instrumentMap));
}

}  // namespace

InstrumentMapPage::InstrumentMapPage(Workspace& workspace)
    : TablePage(StudioScreen::instrumentMap, workspace),
      model_(std::make_unique<InstrumentMapModel>([&workspace](const Uuid& id, bool isIncluded) {
          screenOf(workspace).setIncluded(id, isIncluded);
      })),
      table_(makeRowTable(*model_, "Columns and what they seem to be")) {
    table_->setItemDelegateForColumn(InstrumentMapModel::included, new SwitchDelegate(table_));
    const int widths[] = {54, 150, 165, 66, 172};
    int column = 0;
    for (const int width : widths) {
        table_->setColumnWidth(column++, Theme::px(width));
    }
    auto* bar = new QHBoxLayout;
    bar->addWidget(Buttons::make(
        "Select Likert items",
        [&workspace] { workspace.state.selectLikertCandidateItemsForReliability(); },
        Buttons::Weight::tool));
    bar->addStretch(1);
    this->column().addLayout(bar);
    this->column().addWidget(table_, 1);
}

InstrumentMapPage::~InstrumentMapPage() {
    // The table refers to the model, which goes first otherwise.
    delete table_;
}

void InstrumentMapPage::refreshTable() {
    model_->show(screenOf(workspace()).rows());
}

}  // namespace sorvane
