#include "SorvaneMac/Shell/DataGridFindBar.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

constexpr int typingPause = 150;

QPushButton* named(QPushButton* button, const QString& name) {
    button->setAccessibleName(name);
    button->setToolTip(name);
    return button;
}

}  // namespace

DataGridFindBar::DataGridFindBar(Actions actions)
    : actions_(std::move(actions)),
      words_(new QLineEdit),
      wholeCells_(new QCheckBox("Whole cells")),
      summary_(Labels::line("", "small")) {
    words_->setPlaceholderText("Find in the table");
    words_->setAccessibleName("Find in the table");
    words_->setClearButtonEnabled(true);
    words_->setFixedWidth(Theme::px(220));
    summary_->setMinimumWidth(Theme::px(150));
    pause_.setSingleShot(true);
    pause_.setInterval(typingPause);
    auto* row = new WrapLayout(Theme::px(6));
    setLayout(row);
    row->addWidget(words_);
    row->addWidget(
        named(Buttons::make(
                  "▲", [this] { actions_.move(Direction::backward); }, Buttons::Weight::tool),
              "Previous match (Shift+Return)"));
    row->addWidget(
        named(Buttons::make(
                  "▼", [this] { actions_.move(Direction::forward); }, Buttons::Weight::tool),
              "Next match (Return)"));
    row->addWidget(wholeCells_);
    row->addWidget(summary_);
    row->addWidget(named(Buttons::make(
                             "Done", [this] { actions_.close(); }, Buttons::Weight::tool),
                         "Close the find bar (Esc)"));
    connect(words_, &QLineEdit::textChanged, &pause_, qOverload<>(&QTimer::start));
    connect(wholeCells_, &QCheckBox::toggled, this, [this] { actions_.search(); });
    connect(&pause_, &QTimer::timeout, this, [this] { actions_.search(); });
}

TableQuery DataGridFindBar::query() const {
    return {.words = utf8(words_->text()),
            .extent = wholeCells_->isChecked() ? TableQuery::Extent::wholeCell
                                               : TableQuery::Extent::anywhereInCell};
}

void DataGridFindBar::say(const std::string& summary) {
    summary_->setText(qtText(summary));
    words_->setAccessibleDescription(qtText(summary));
}

void DataGridFindBar::open() {
    show();
    words_->setFocus(Qt::ShortcutFocusReason);
    words_->selectAll();
}

void DataGridFindBar::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        actions_.close();
    } else if (isReturn && words_->hasFocus()) {
        const bool back = event->modifiers().testFlag(Qt::ShiftModifier);
        actions_.move(back ? Direction::backward : Direction::forward);
    } else {
        QFrame::keyPressEvent(event);
    }
}

}  // namespace sorvane
