#include "SorvaneMac/Shell/GuidePane.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "SorvaneCore/SorvaneEngine.h"
#include "SorvaneMac/Screens/Coaching.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/MethodRecordView.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

struct TabTexts {
    const char* label;
    const char* name;
};

/// In the order of InspectorTab.
constexpr std::array<TabTexts, 4> tabTexts = {{{"About", "What this screen answers"},
                                               {"Reproduce", "The method record of this screen"},
                                               {"Coach", "How to read this screen"},
                                               {"Notes", "Your notes on all screens"}}};

void clear(QVBoxLayout& column) {
    while (QLayoutItem* item = column.takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

void addPassage(QVBoxLayout& column, const QString& heading, const QString& text) {
    if (!text.isEmpty()) {
        column.addWidget(Labels::text(heading, "heading"));
        column.addWidget(Labels::text(text));
        column.addSpacing(Theme::px(8));
    }
}

QString nativeText() {
    return "On this machine, by the program's own engine (" + qtText(SorvaneEngine::version) +
           "). No figure comes from a server.";
}

}  // namespace

GuidePane::GuidePane(Workspace& workspace)
    : workspace_(workspace), stack_(new QStackedWidget), record_(new MethodRecordView(workspace)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(tabs());
    column->addWidget(stack_, 1);
    about_ = addPage(InspectorTab::whyNative);
    QVBoxLayout* reproduce = addPage(InspectorTab::reproduce);
    reproduce->addWidget(record_);
    reproduce->addStretch(1);
    coach_ = addPage(InspectorTab::coach);
    notes_ = addPage(InspectorTab::notes);
}

QWidget* GuidePane::tabs() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(Theme::px(15), Theme::px(10), Theme::px(15), 0);
    row->setSpacing(Theme::px(4));
    for (std::size_t at = 0; at < tabTexts.size(); ++at) {
        QPushButton* button = Buttons::make(
            tabTexts[at].label,
            [this, at] { workspace_.state.inspectorTab.set(static_cast<InspectorTab>(at)); },
            Buttons::Weight::tool);
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setAccessibleName(tabTexts[at].name);
        button->setToolTip(tabTexts[at].name);
        row->addWidget(button);
        tabButtons_[at] = button;
    }
    row->addStretch(1);
    return bar;
}

QVBoxLayout* GuidePane::addPage(InspectorTab tab) {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(Theme::px(15), Theme::px(14), Theme::px(15), Theme::px(15));
    column->setSpacing(Theme::px(4));
    auto* scroll = new QScrollArea;
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setAccessibleName(tabTexts[static_cast<std::size_t>(tab)].name);
    stack_->addWidget(scroll);
    return column;
}

void GuidePane::refresh() {
    const StudioState& state = workspace_.state;
    const auto tab = static_cast<std::size_t>(state.inspectorTab.get());
    tabButtons_[tab]->setChecked(true);
    stack_->setCurrentIndex(static_cast<int>(tab));
    if (state.inspectorTab.get() != InspectorTab::reproduce) {
        leave();
    }
    switch (state.inspectorTab.get()) {
        case InspectorTab::whyNative:
            showAbout(state.selection.get());
            break;
        case InspectorTab::reproduce:
            record_->refresh();
            break;
        case InspectorTab::coach:
            showCoaching(state.selection.get());
            break;
        case InspectorTab::notes:
            showNotes();
            break;
    }
}

void GuidePane::leave() {
    record_->leave();
}

void GuidePane::showAbout(StudioScreen screen) {
    const Guide guide = workspace_.screens.at(screen).guide();
    if (std::exchange(aboutShown_, guide) == guide) {
        return;
    }
    clear(*about_);
    addPassage(*about_, "WHAT IT ANSWERS", qtText(guide.answers));
    addPassage(*about_, "WHAT IT NEEDS", qtText(guide.needs));
    if (!guide.doNotClaim.empty()) {
        about_->addWidget(Labels::text("WHAT NOT TO CLAIM", "heading"));
        about_->addSpacing(Theme::px(3));
        for (const std::string& claim : guide.doNotClaim) {
            about_->addWidget(Labels::text(qtText(claim), "caution"));
            about_->addSpacing(Theme::px(3));
        }
        about_->addSpacing(Theme::px(5));
    }
    addPassage(*about_, "WHERE IT IS COMPUTED", nativeText());
    about_->addStretch(1);
}

void GuidePane::showCoaching(StudioScreen screen) {
    if (std::exchange(coachOf_, screen) == screen) {
        return;
    }
    clear(*coach_);
    for (const Passage& passage : coaching(screen)) {
        coach_->addWidget(Labels::text(qtText(passage.label), "heading"));
        coach_->addWidget(Labels::text(qtText(passage.text), passage.isCaution ? "caution" : ""));
        coach_->addSpacing(Theme::px(8));
    }
    coach_->addStretch(1);
}

void GuidePane::showNotes() {
    const StudioState& state = workspace_.state;
    std::vector<Note> notes;
    for (const StudioScreen screen : allStudioScreens()) {
        const auto found = state.researcherNotes->find(std::string(rawValue(screen)));
        if (found != state.researcherNotes->end() && !qtText(found->second).trimmed().isEmpty()) {
            notes.push_back({screen, found->second, state.researcherNoteIsStaged(screen)});
        }
    }
    if (shownNotes_ == notes) {
        return;
    }
    clear(*notes_);
    if (notes.empty()) {
        notes_->addWidget(Labels::text(
            "No notes yet. Each screen has its own under Notes above; here they stand together.",
            "quiet"));
    }
    for (const Note& note : notes) {
        const StudioScreen screen = note.screen;
        const QString name = qtText(title(screen));
        QPushButton* open = Buttons::make(
            QString(name).replace('&', "&&"),
            [this, screen] {
                workspace_.state.selection.set(screen);
                workspace_.state.inspectorPane.set(InspectorPane::notes);
            },
            Buttons::Weight::link);
        open->setAccessibleName("Open the notes on " + name);
        notes_->addWidget(open, 0, Qt::AlignLeft);
        notes_->addWidget(Labels::text(qtText(note.text).trimmed()));
        notes_->addWidget(
            Labels::text(note.isStaged ? "In the report" : "Not in the report", "small"));
        notes_->addSpacing(Theme::px(8));
    }
    notes_->addStretch(1);
    shownNotes_ = std::move(notes);
}

}  // namespace sorvane
