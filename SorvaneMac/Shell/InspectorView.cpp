#include "SorvaneMac/Shell/InspectorView.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/FormView.h"
#include "SorvaneMac/Shell/GuidePane.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr std::array<const char*, 3> tabNames = {"Setup", "Guide", "Notes"};

}  // namespace

InspectorView::InspectorView(Workspace& workspace)
    : workspace_(workspace),
      stack_(new QStackedWidget),
      form_(new FormView),
      guide_(new GuidePane(workspace)),
      note_(new QPlainTextEdit),
      stageNote_(Buttons::make("Add note to report", [this] {
          workspace_.state.stageResearcherNote(workspace_.state.selection.get());
      })) {
    setProperty("inspector", true);
    setAttribute(Qt::WA_StyledBackground);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(tabs());
    column->addWidget(stack_, 1);
    stack_->addWidget(form_);
    stack_->addWidget(guide_);
    stack_->addWidget(notesPane());
}

InspectorView::~InspectorView() = default;

QWidget* InspectorView::tabs() {
    auto* bar = new QFrame;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (std::size_t at = 0; at < tabNames.size(); ++at) {
        auto* button = new QPushButton(tabNames[at]);
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setProperty("tab", true);
        button->setAccessibleName(QString(tabNames[at]) + " of the inspector");
        connect(button, &QPushButton::clicked, this,
                [this, at] { workspace_.state.inspectorPane.set(static_cast<InspectorPane>(at)); });
        row->addWidget(button, 1);
        tabButtons_[at] = button;
    }
    auto* whole = new QWidget;
    auto* column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    auto* line = new QFrame;
    line->setProperty("line", true);
    column->addWidget(line);
    return whole;
}

QWidget* InspectorView::notesPane() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(Theme::px(15), Theme::px(14), Theme::px(15), Theme::px(15));
    column->setSpacing(Theme::px(8));
    column->addWidget(
        Labels::text("Your notes on this screen. They stay when the data change.", "small"));
    note_->setTabChangesFocus(true);
    note_->setAccessibleName("Researcher notes");
    note_->setPlaceholderText("Decisions, doubts, things to come back to…");
    connect(note_, &QPlainTextEdit::textChanged, this, [this] { writeNote(); });
    column->addWidget(note_, 1);
    column->addWidget(stageNote_);
    return page;
}

void InspectorView::refresh() {
    const StudioState& state = workspace_.state;
    const StudioScreen screen = state.selection.get();
    const auto pane = static_cast<std::size_t>(state.inspectorPane.get());
    tabButtons_[pane]->setChecked(true);
    stack_->setCurrentIndex(static_cast<int>(pane));
    if (state.inspectorPane.get() != InspectorPane::guide) {
        guide_->leave();
    }
    switch (state.inspectorPane.get()) {
        case InspectorPane::setup:
            form_->show(workspace_.screens.at(screen).setup());
            break;
        case InspectorPane::guide:
            guide_->refresh();
            break;
        case InspectorPane::notes:
            showNotes(screen);
            break;
    }
}

void InspectorView::takeFocus() {
    tabButtons_[static_cast<std::size_t>(workspace_.state.inspectorPane.get())]->setFocus(
        Qt::ShortcutFocusReason);
}

void InspectorView::showNotes(StudioScreen screen) {
    const StudioState& state = workspace_.state;
    const auto found = state.researcherNotes->find(std::string(rawValue(screen)));
    const QString text = found == state.researcherNotes->end() ? QString() : qtText(found->second);
    if (note_->toPlainText() != text) {
        const QSignalBlocker quiet(note_);
        note_->setPlainText(text);
    }
    const bool isStaged = state.researcherNoteIsStaged(screen);
    stageNote_->setText(isStaged ? "Note is in the report" : "Add note to report");
    stageNote_->setEnabled(!isStaged && !text.trimmed().isEmpty());
}

void InspectorView::writeNote() {
    const std::string key(rawValue(workspace_.state.selection.get()));
    workspace_.state.researcherNotes.edit([this, &key](std::map<std::string, std::string>& notes) {
        notes[key] = utf8(note_->toPlainText());
    });
}

}  // namespace sorvane
