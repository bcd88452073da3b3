#include "SorvaneMac/Shell/DataPreviewPage.h"

#include <algorithm>

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Screens/SelectionText.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/DataGridView.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

using Direction = DataGridFindBar::Direction;

DataPreviewPage::DataPreviewPage(Workspace& workspace)
    : TablePage(StudioScreen::dataPreview, workspace),
      preview_(static_cast<DataPreviewScreen&>(workspace.screens.at(StudioScreen::dataPreview))),
      grid_(new DataGridView(
          [&workspace](std::int64_t row, std::int64_t column, const std::string& text) {
              workspace.state.updateDatasetCell(row, column, text);
          })),
      findBar_(new DataGridFindBar({.search = [this] { search(); },
                                    .move = [this](Direction direction) { goToMatch(direction); },
                                    .close =
                                        [this] {
                                            closeFindBar();
                                        }})),
      row_(new QLineEdit),
      labels_(new QCheckBox("Value labels")) {
    column().addWidget(toolBar());
    column().addWidget(findBar_);
    column().addWidget(grid_, 1);
    findBar_->hide();
    addShortcut("Find…", QKeySequence::Find, [this] { openFindBar(); });
    addShortcut("Find Next", QKeySequence("F3"), [this] { goToMatch(Direction::forward); });
    addShortcut("Find Previous", QKeySequence("Shift+F3"),
                [this] { goToMatch(Direction::backward); });
    addShortcut("Go to Row…", QKeySequence("Ctrl+G"), [this] {
        row_->setFocus(Qt::ShortcutFocusReason);
        row_->selectAll();
    });
    connect(grid_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { rememberPlace(); });
}

void DataPreviewPage::commitEdits() {
    grid_->commitOpenEditor();
}

QWidget* DataPreviewPage::toolBar() {
    auto* bar = new QWidget;
    auto* items = new WrapLayout(Theme::px(8));
    bar->setLayout(items);
    auto* find = Buttons::make(
        "Find…", [this] { openFindBar(); }, Buttons::Weight::tool);
    find->setToolTip("Find a text in the table (Ctrl+F)");
    items->addWidget(find);
    items->addWidget(Labels::line("Row", "small"));
    items->addWidget(row_);
    items->addWidget(labels_);
    gridButtons_ = gridButtons();
    items->addWidget(gridButtons_);
    row_->setFixedWidth(Theme::px(90));
    row_->setAccessibleName("Go to row");
    row_->setToolTip("Go to a row by its number (Ctrl+G)");
    labels_->setAccessibleName("Show value labels in place of codes");
    connect(row_, &QLineEdit::returnPressed, this, [this] { goToRow(); });
    connect(labels_, &QCheckBox::toggled, this,
            [this](bool isOn) { preview_.showsValueLabels.set(isOn); });
    return bar;
}

QWidget* DataPreviewPage::gridButtons() {
    auto* group = new QWidget;
    auto* row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::px(8));
    StudioState& state = workspace().state;
    const auto add = [row](const QString& label, std::function<void()> press) {
        row->addWidget(Buttons::make(label, std::move(press), Buttons::Weight::tool));
    };
    add("Add Row", [&state] { state.addDatasetRow(); });
    add("Add Column", [&state] { state.addDatasetColumn(""); });
    add("Name, Size and Columns…", [&state] { state.showSetup(); });
    return group;
}

void DataPreviewPage::addShortcut(const QString& name,
                                  const QKeySequence& keys,
                                  std::function<void()> action) {
    auto* made = new QAction(name, this);
    made->setShortcut(keys);
    connect(made, &QAction::triggered, this, [action = std::move(action)] { action(); });
    addAction(made);
}

void DataPreviewPage::rememberPlace() {
    if (const std::optional<CellPlace> place = grid_->place()) {
        DatasetFields& table = workspace().state.data;
        table.selectedDatasetRow.set(static_cast<std::int64_t>(place->row));
        table.selectedDatasetColumn.set(static_cast<std::int64_t>(place->column));
        findBar_->say(found_.words.empty() ? "" : grid_->cells().matches().summary(place));
    }
}

void DataPreviewPage::refreshTable() {
    const bool hasLabels = preview_.hasValueLabels();
    labels_->setEnabled(hasLabels);
    labels_->setToolTip(hasLabels ? "Show a labelled code by its label"
                                  : "No variable of this table has value labels.");
    labels_->setChecked(preview_.showsValueLabels.get());
    const bool changed = grid_->show(preview_.cells(), preview_.columnHeads(),
                                     workspace().state.data.isDatasetEditable.get());
    gridButtons_->setVisible(preview_.isEditable());
    row_->setPlaceholderText(QString("1–%1").arg(grid_->cells().rowCount()));
    if (changed && !found_.words.empty()) {
        grid_->cells().setMatches(TableMatches::of(grid_->cells().cells(), found_));
        findBar_->say(grid_->cells().matches().summary(grid_->place()));
    }
}

bool DataPreviewPage::copySelection() {
    if (!grid_->hasFocus()) {
        return false;
    }
    const std::string text =
        SelectionText::tabSeparated(grid_->cells().cells(), grid_->selectedBlocks());
    if (!text.empty()) {
        Clipboard::setText(qtText(text));
    }
    return true;
}

bool DataPreviewPage::pasteSelection() {
    const std::optional<CellPlace> place = grid_->place();
    if (!grid_->hasFocus() || !preview_.isEditable() || !place) {
        return false;
    }
    workspace().state.pasteDatasetBlock(static_cast<std::int64_t>(place->row),
                                        static_cast<std::int64_t>(place->column),
                                        utf8(Clipboard::text()));
    return true;
}

void DataPreviewPage::openFindBar() {
    findBar_->open();
}

void DataPreviewPage::search() {
    const TableQuery query = findBar_->query();
    if (query == found_) {
        return;
    }
    found_ = query;
    grid_->cells().setMatches(TableMatches::of(grid_->cells().cells(), query));
    const TableMatches& matches = grid_->cells().matches();
    const std::optional<CellPlace> here = grid_->place();
    if (const auto first = here && matches.contains(*here) ? here : matches.next(here)) {
        grid_->goTo(*first);
    }
    findBar_->say(query.words.empty() ? "" : matches.summary(grid_->place()));
}

void DataPreviewPage::goToMatch(Direction direction) {
    if (findBar_->query() != found_) {
        search();
        return;
    }
    const TableMatches& matches = grid_->cells().matches();
    const std::optional<CellPlace> here = grid_->place();
    const auto place = direction == Direction::forward
                           ? matches.next(here)
                           : matches.previous(here.value_or(CellPlace()));
    if (place) {
        grid_->goTo(*place);
    } else if (found_.words.empty()) {
        openFindBar();
    }
}

void DataPreviewPage::closeFindBar() {
    findBar_->hide();
    found_ = {};
    grid_->cells().setMatches({});
    grid_->setFocus();
}

void DataPreviewPage::goToRow() {
    const std::optional<double> number = NumberText::parse(utf8(row_->text()));
    const int rows = grid_->cells().rowCount();
    if (!number || !(*number >= 1.0) || rows == 0) {
        row_->selectAll();
        return;
    }
    const double row = std::min(*number, static_cast<double>(rows));
    const std::optional<CellPlace> here = grid_->place();
    grid_->goTo({.row = static_cast<std::size_t>(row) - 1, .column = here ? here->column : 0});
    grid_->setFocus();
}

}  // namespace sorvane
