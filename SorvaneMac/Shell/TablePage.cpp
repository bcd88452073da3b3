#include "SorvaneMac/Shell/TablePage.h"

#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/CardView.h"
#include "SorvaneMac/Shell/ContentView.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/TileStrip.h"

namespace sorvane {

TablePage::TablePage(StudioScreen screen, Workspace& workspace)
    : screen_(screen),
      workspace_(workspace),
      empty_(new ContentView(workspace)),
      title_(Labels::text("", "pageTitle")),
      subtitle_(Labels::text("", "quiet")),
      tiles_(new TileStrip),
      cardColumn_(new QVBoxLayout),
      stack_(new QStackedLayout(this)) {
    auto* table = new QWidget;
    column_ = new QVBoxLayout(table);
    column_->setContentsMargins(Theme::px(22), Theme::px(18), Theme::px(22), Theme::px(18));
    column_->setSpacing(Theme::px(12));
    auto* head = new QVBoxLayout;
    head->setSpacing(Theme::px(3));
    head->addWidget(title_);
    head->addWidget(subtitle_);
    column_->addLayout(head);
    column_->addWidget(tiles_);
    cardColumn_->setSpacing(Theme::px(12));
    column_->addLayout(cardColumn_);
    stack_->addWidget(empty_);
    stack_->addWidget(table);
}

void TablePage::refresh() {
    const ScreenContent& content = workspace_.screens.content(screen_);
    stack_->setCurrentIndex(content.gate ? 0 : 1);
    if (content.gate) {
        empty_->show(content);
        return;
    }
    Labels::show(*title_, qtText(content.title));
    Labels::show(*subtitle_, qtText(content.subtitle));
    tiles_->show(content.tiles);
    showCards(content.cards);
    refreshTable();
}

void TablePage::showCards(const std::vector<Card>& cards) {
    if (cards == cards_) {
        return;
    }
    cards_ = cards;
    while (QLayoutItem* item = cardColumn_->takeAt(0)) {
        // It may be the one whose button is being pressed.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (const Card& card : cards_) {
        cardColumn_->addWidget(new CardView(
            card, [this](const ScreenLink& link) { workspace_.screens.follow(link); }));
    }
}

}  // namespace sorvane
