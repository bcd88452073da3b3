#include "SorvaneMac/Shell/ContentView.h"

#include <algorithm>

#include <QFrame>
#include <QScrollArea>
#include <QVBoxLayout>

#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/Shell/ActionRow.h"
#include "SorvaneMac/Shell/CardView.h"
#include "SorvaneMac/Shell/FlowLayout.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/TileStrip.h"
#include "SorvaneMac/Shell/Workspace.h"

namespace sorvane {

namespace {

constexpr int pageMargin = 22;
constexpr int cardGap = 12;

/// Whether two findings differ at most in the identifier, which a screen makes anew each time.
bool areAlike(const Finding& one, const Finding& other) {
    ReportItem item = one.item;
    item.id = other.item.id;
    return item == other.item && one.figure == other.figure;
}

/// Whether two contents look alike. Charts may hold many points, so nothing of them is copied.
bool areAlike(const ScreenContent& one, const ScreenContent& other) {
    return one.title == other.title && one.subtitle == other.subtitle && one.gate == other.gate &&
           one.tiles == other.tiles && one.cards == other.cards &&
           std::equal(one.findings.begin(), one.findings.end(), other.findings.begin(),
                      other.findings.end(), [](const Finding& left, const Finding& right) {
                          return areAlike(left, right);
                      });
}

QWidget* gateCard(const Gate& gate) {
    auto* card = new CardFrame(qtText(gate.title));
    if (!gate.lead.empty()) {
        card->body().addWidget(Labels::text(qtText(gate.lead)));
    }
    if (!gate.text.empty()) {
        card->body().addWidget(Labels::text(qtText(gate.text), "quiet"));
    }
    return card;
}

}  // namespace

ContentView::ContentView(Workspace& workspace)
    : state_(workspace.state),
      screens_(workspace.screens),
      scroll_(new QScrollArea),
      title_(Labels::text("", "pageTitle")),
      subtitle_(Labels::text("", "quiet")),
      tiles_(new TileStrip),
      cardHost_(new QWidget),
      flow_(new FlowLayout(Theme::px(cardGap))),
      actionBar_(new QFrame) {
    auto* page = new QWidget;
    page_ = new QVBoxLayout(page);
    const int margin = Theme::px(pageMargin);
    page_->setContentsMargins(margin, Theme::px(18), margin, margin);
    page_->setSpacing(Theme::px(cardGap));
    auto* head = new QVBoxLayout;
    head->setSpacing(Theme::px(3));
    head->addWidget(title_);
    head->addWidget(subtitle_);
    page_->addLayout(head);
    page_->addWidget(tiles_);
    cardHost_->setLayout(flow_);
    page_->addWidget(cardHost_);
    page_->addStretch(1);
    scroll_->setWidget(page);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    actionBar_->setProperty("bar", true);
    actions_ = new QVBoxLayout(actionBar_);
    actions_->setContentsMargins(margin, Theme::px(9), margin, Theme::px(9));
    actions_->setSpacing(Theme::px(7));
    actionBar_->hide();

    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);
    whole->addWidget(scroll_, 1);
    whole->addWidget(actionBar_);
}

ContentView::~ContentView() = default;

void ContentView::insertBelowTiles(QWidget* widget) {
    page_->insertWidget(page_->indexOf(cardHost_), widget);
}

void ContentView::show(const ScreenContent& content) {
    if (areAlike(content, content_)) {
        refreshActions();
        return;
    }
    content_ = content;
    showHead();
    showGate();
    tiles_->show(content_.tiles);
    showCards();
    showActions();
}

void ContentView::refreshActions() {
    for (ActionRow* row : actionRows_) {
        row->refresh();
    }
}

void ContentView::stageFirst() {
    if (!actionRows_.empty()) {
        actionRows_.front()->stage();
    }
}

void ContentView::showHead() {
    Labels::show(*title_, qtText(content_.title));
    scroll_->setAccessibleName(qtText(content_.title));
    Labels::show(*subtitle_, qtText(content_.subtitle));
    subtitle_->setVisible(!content_.subtitle.empty());
}

void ContentView::showGate() {
    delete gate_;
    gate_ = nullptr;
    if (content_.gate) {
        gate_ = gateCard(*content_.gate);
        page_->insertWidget(page_->indexOf(tiles_), gate_);
    }
}

void ContentView::showCards() {
    std::vector<std::pair<Card, CardView*>> former = std::move(cards_);
    cards_.clear();
    while (QLayoutItem* item = flow_->takeAt(0)) {
        delete item;
    }
    for (const Card& card : content_.cards) {
        const auto same = std::find_if(former.begin(), former.end(), [&card](const auto& each) {
            return each.second && each.first == card;
        });
        CardView* view =
            same == former.end()
                ? new CardView(card, [this](const ScreenLink& link) { screens_.follow(link); })
                : std::exchange(same->second, nullptr);
        flow_->addWidget(view);
        view->show();
        cards_.emplace_back(card, view);
    }
    for (const auto& [card, view] : former) {
        delete view;
    }
    cardHost_->setVisible(!cards_.empty());
}

void ContentView::showActions() {
    const std::size_t wanted = content_.findings.size();
    while (actionRows_.size() > wanted) {
        delete actionRows_.back();
        actionRows_.pop_back();
    }
    while (actionRows_.size() < wanted) {
        actionRows_.push_back(new ActionRow(state_));
        actions_->addWidget(actionRows_.back());
    }
    for (std::size_t at = 0; at < wanted; ++at) {
        actionRows_[at]->show(content_.findings[at]);
    }
    actionBar_->setVisible(wanted > 0);
}

}  // namespace sorvane
