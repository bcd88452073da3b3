#include "SorvaneMac/Shell/ActionRow.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/ChartImages.h"
#include "SorvaneMac/Shell/ElidedLabel.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/TableCopying.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

/// With less room than this beside the buttons, the title stands above them.
constexpr int narrowestTitle = 130;

void copyNamed(const ReportItem& item, const ReportTable& table) {
    copyTable(table.title.value_or(item.title), table);
}

}  // namespace

ActionRow::ActionRow(StudioState& state)
    : state_(state),
      row_(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      buttons_(new WrapLayout(Theme::px(8))),
      title_(new ElidedLabel),
      add_(Buttons::make(
          "Add to report", [this] { stage(); }, Buttons::Weight::primary)),
      copyText_(Buttons::make("Copy APA text",
                              [this] { Clipboard::setText(qtText(finding_.item.apaSummary)); })),
      copyTable_(Buttons::make("Copy table", {})) {
    row_->setContentsMargins(0, 0, 0, 0);
    row_->setSpacing(Theme::px(8));
    row_->addWidget(title_, 1);
    for (QPushButton* button : {copyTable_, copyText_, add_}) {
        buttons_->addWidget(button);
    }
    row_->addLayout(buttons_);
}

void ActionRow::resizeEvent(QResizeEvent* event) {
    const int beside = buttons_->sizeHint().width() + Theme::px(narrowestTitle);
    row_->setDirection(width() < beside ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    QWidget::resizeEvent(event);
}

void ActionRow::show(const Finding& finding) {
    finding_ = finding;
    title_->setText(qtText(finding.item.title));
    title_->setToolTip(qtText(finding.item.apaSummary));
    for (QPushButton* button : {copyTable_, copyText_}) {
        button->setAccessibleName(button->text() + ": " + title_->text());
    }
    offerTables();
    refresh();
}

void ActionRow::refresh() {
    const bool isStaged = state_.isStaged(finding_.item);
    const QString label = isStaged ? "In report" : "Add to report";
    add_->setText(label);
    add_->setAccessibleName(label + ": " + title_->text());
    add_->setEnabled(!isStaged);
}

void ActionRow::stage() {
    ReportItem item = finding_.item;
    if (finding_.figure && !item.figure) {
        item.figure = chartPng(*finding_.figure);
    }
    state_.addToReport(item);
}

void ActionRow::offerTables() {
    const ReportItem& item = finding_.item;
    copyTable_->setVisible(item.table.has_value());
    copyTable_->disconnect();
    delete copyTable_->menu();
    const bool hasMenu = item.table && item.extraTables && !item.extraTables->empty();
    copyTable_->setProperty("hasMenu", hasMenu);
    if (!hasMenu) {
        connect(copyTable_, &QPushButton::clicked, this, [this] {
            if (finding_.item.table) {
                copyNamed(finding_.item, *finding_.item.table);
            }
        });
        return;
    }
    auto* menu = new QMenu(copyTable_);
    menu->addAction("Main table", this, [this] { copyNamed(finding_.item, *finding_.item.table); });
    for (std::size_t at = 0; at < item.extraTables->size(); ++at) {
        menu->addAction("Table " + QString::number(at + 2), this,
                        [this, at] { copyNamed(finding_.item, (*finding_.item.extraTables)[at]); });
    }
    copyTable_->setMenu(menu);
}

}  // namespace sorvane
