#include "SorvaneMac/Shell/StartPage.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/ProjectActions.h"
#include "SorvaneMac/Shell/QtText.h"
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

QWidget* openProjectCard(QWidget* page, Workspace& workspace) {
    CardFrame* card = startCard("Open Project: browse saved .svp projects on this Mac");
    auto* row = new QHBoxLayout;
    row->addWidget(
        Buttons::make("Open…", [page, &workspace] { openProjectFromDialog(page, workspace); }));
    row->addStretch(1);
    card->body().addLayout(row);
    return card;
}

/// A project opened last, by its name; the folder beside it.
QWidget* recentRow(QWidget* page, Workspace& workspace, const std::filesystem::path& file) {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::px(8));
    QPushButton* open = Buttons::make(
        fromPath(file.filename()).replace('&', "&&"),
        [page, &workspace, file] { openProject(page, workspace, file); }, Buttons::Weight::link);
    open->setToolTip(fromPath(file));
    row->addWidget(open);
    row->addWidget(Labels::text(fromPath(file.parent_path()), "small"), 1);
    return line;
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

StartPage::StartPage(Workspace& workspace) : workspace_(workspace), recents_(new QVBoxLayout) {
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
    cards->addWidget(openProjectCard(this, workspace), 1);
    column->addLayout(cards);
    recents_->setSpacing(Theme::px(2));
    column->addLayout(recents_);
    column->addSpacing(Theme::px(10));
    column->addWidget(sampleRow(this, workspace));
    column->addSpacing(Theme::px(8));
    column->addWidget(Labels::text(
        qtText(SpreadsheetImporter::acceptedFormats) + " Drop a file anywhere in this window.",
        "quiet"));
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

void StartPage::refresh() {
    while (QLayoutItem* item = recents_->takeAt(0)) {
        if (QWidget* row = item->widget()) {
            // It may be the one whose button is being pressed.
            row->hide();
            row->deleteLater();
        }
        delete item;
    }
    const std::vector<std::filesystem::path> files = workspace_.state.recentProjects();
    if (!files.empty()) {
        recents_->addSpacing(Theme::px(10));
        recents_->addWidget(Labels::text("Recent projects", "strong"));
    }
    for (const std::filesystem::path& file : files) {
        recents_->addWidget(recentRow(this, workspace_, file));
    }
}

}  // namespace sorvane
