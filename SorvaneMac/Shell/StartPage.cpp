#include "SorvaneMac/Shell/StartPage.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

CardFrame* startCard(const QString& sentence) {
    auto* card = new CardFrame;
    const int side = Theme::px(22);
    card->body().setContentsMargins(side, Theme::px(20), side, Theme::px(20));
    const qsizetype colon = sentence.indexOf(':');
    card->setAccessibleName(sentence);
    card->body().addWidget(Labels::text(sentence.left(colon), "cardTitle"));
    card->body().addWidget(Labels::text(sentence.mid(colon + 1).trimmed(), "quiet"));
    card->body().addStretch(1);
    return card;
}

QWidget* newProjectCard(QWidget* page, Workspace& workspace) {
    CardFrame* card = startCard("New Project: import a file or start with a blank spreadsheet");
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::px(8));
    row->addWidget(Buttons::make(
        "Import a file…", [page, &workspace] { importFromDialog(page, workspace); },
        Buttons::Weight::primary));
    row->addWidget(Buttons::make("Blank grid", [&workspace] { openBlankGrid(workspace); }));
    row->addStretch(1);
    card->body().addLayout(row);
    return card;
}

QWidget* openProjectCard() {
    CardFrame* card = startCard("Open Project: browse saved .svp projects on this Mac");
    card->body().addWidget(
        Labels::text("Saving and opening projects comes with a later version.", "small"));
    QPushButton* open = Buttons::make("Open…", {});
    open->setEnabled(false);
    auto* row = new QHBoxLayout;
    row->addWidget(open);
    row->addStretch(1);
    card->body().addLayout(row);
    return card;
}

QWidget* sampleRow(QWidget* page, Workspace& workspace) {
    auto* card = new CardFrame;
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::px(8));
    auto* words = new QVBoxLayout;
    words->setSpacing(Theme::px(2));
    words->addWidget(Labels::text("Sample study", "strong"));
    words->addWidget(Labels::text(
        "A made-up survey on emotional intelligence, to try every screen with.", "quiet"));
    row->addLayout(words, 1);
    row->addWidget(Buttons::make("Open the sample study", [&workspace] { openSample(workspace); }));
    row->addWidget(
        Buttons::make("Paste data…", [page, &workspace] { pasteFromDialog(page, workspace); }));
    card->body().addLayout(row);
    return card;
}

}  // namespace

StartPage::StartPage(Workspace& workspace) {
    auto* middle = new QWidget;
    middle->setMaximumWidth(Theme::px(700));
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(Theme::px(30), Theme::px(72), Theme::px(30), Theme::px(30));
    column->setSpacing(Theme::px(6));
    column->addWidget(Labels::text("Sorvane", "startTitle"));
    column->addWidget(
        Labels::text("Survey and scale research on this machine. Nothing leaves it.", "quiet"));
    column->addSpacing(Theme::px(18));
    auto* cards = new QHBoxLayout;
    cards->setSpacing(Theme::px(16));
    cards->addWidget(newProjectCard(this, workspace), 1);
    cards->addWidget(openProjectCard(), 1);
    column->addLayout(cards);
    column->addSpacing(Theme::px(10));
    column->addWidget(sampleRow(this, workspace));
    column->addSpacing(Theme::px(8));
    column->addWidget(
        Labels::text("CSV, TSV or text. Drop a file anywhere in this window.", "quiet"));
    column->addStretch(1);

    auto* page = new QWidget;
    auto* centered = new QHBoxLayout(page);
    centered->setContentsMargins(0, 0, 0, 0);
    centered->addStretch(1);
    centered->addWidget(middle, 100);
    centered->addStretch(1);
    auto* scroll = new QScrollArea;
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setAccessibleName("Start");
    scroll->setFrameShape(QFrame::NoFrame);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
}

}  // namespace sorvane
