#include "SorvaneMac/Shell/FindingsPage.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "SorvaneMac/Report/TableFitting.h"
#include "SorvaneMac/Screens/FindingsScreen.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/ReportEditor.h"
#include "SorvaneMac/Shell/ReportExporting.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

constexpr int summaryLength = 110;
constexpr int sideAir = 22;
constexpr int paneAir = 16;
constexpr int narrowestList = 150;
constexpr int widestList = 252;
constexpr int scrollBarRoom = 14;

FindingsScreen& screenOf(Workspace& workspace) {
    return static_cast<FindingsScreen&>(workspace.screens.at(StudioScreen::findings));
}

QString shortened(const QString& text) {
    return text.size() <= summaryLength ? text : leading(text, summaryLength - 1).trimmed() + "…";
}

/// A small button that stays pressed while its style stands at the cursor. Its keys belong to the
/// editor: elsewhere they may mean something else.
QPushButton* styleButton(const QString& letter, const QString& name, const QKeySequence& keys) {
    QPushButton* button = Buttons::make(letter, {}, Buttons::Weight::tool);
    button->setCheckable(true);
    button->setAccessibleName(name);
    button->setToolTip(name + " (" + keys.toString(QKeySequence::NativeText) + " in the report)");
    QFont font = Theme::font(13, name == "Bold" ? QFont::Bold : QFont::Normal);
    font.setItalic(name == "Italic");
    font.setUnderline(name == "Underline");
    button->setFont(font);
    return button;
}

}  // namespace

FindingsPage::FindingsPage(Workspace& workspace)
    : workspace_(workspace),
      editor_(new ReportEditor(workspace.state)),
      count_(Labels::text("", "quiet")),
      placeholder_(Labels::text("The report appears here once it is assembled.", "quiet")),
      cards_(new QVBoxLayout),
      assemble_(Buttons::make(
          "Assemble", [this] { assemble(); }, Buttons::Weight::primary)),
      clear_(Buttons::make("Clear", [this] { clear(); })),
      bold_(styleButton("B", "Bold", QKeySequence::Bold)),
      italic_(styleButton("I", "Italic", QKeySequence::Italic)),
      underline_(styleButton("U", "Underline", QKeySequence::Underline)),
      size_(new QComboBox),
      formats_(formatBar()),
      staged_(stagedColumn()),
      panes_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    const int side = Theme::px(sideAir);
    panes_->setContentsMargins(side, Theme::px(18), side, Theme::px(18));
    panes_->setSpacing(Theme::px(paneAir));
    panes_->addWidget(staged_, 1);
    panes_->addWidget(editorColumn(), 3);
}

void FindingsPage::resizeEvent(QResizeEvent* event) {
    const int beside = editor_->paperWidth() + Theme::px(narrowestList + scrollBarRoom) +
                       Theme::px(2 * sideAir + paneAir);
    const bool isBelow = width() < beside;
    panes_->setDirection(isBelow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    staged_->setMaximumWidth(isBelow ? QWIDGETSIZE_MAX : Theme::px(widestList));
    Page::resizeEvent(event);
}

void FindingsPage::commitEdits() {
    editor_->commit();
}

QWidget* FindingsPage::stagedColumn() {
    auto* whole = new QWidget;
    whole->setMinimumWidth(Theme::px(narrowestList));
    auto* column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::px(3));
    column->addWidget(Labels::text("Findings", "pageTitle"));
    column->addWidget(count_);
    column->addSpacing(Theme::px(8));
    auto* list = new QWidget;
    list->setLayout(cards_);
    cards_->setContentsMargins(0, 0, Theme::px(4), 0);
    cards_->setSpacing(Theme::px(10));
    auto* scroll = new QScrollArea;
    scroll->setWidget(list);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setAccessibleName("Staged findings");
    column->addWidget(scroll, 1);
    auto* buttons = new WrapLayout(Theme::px(8));
    buttons->addWidget(assemble_);
    buttons->addWidget(clear_);
    column->addSpacing(Theme::px(5));
    column->addLayout(buttons);
    return whole;
}

QWidget* FindingsPage::formatBar() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::px(6));
    for (QPushButton* button : {bold_, italic_, underline_}) {
        row->addWidget(button);
    }
    for (const int points : {9, 10, 11, 12, 14, 16, 18, 20, 24}) {
        size_->addItem(QString::number(points), points);
    }
    size_->setAccessibleName("Text size in points");
    size_->setToolTip("Text size in points");
    row->addWidget(size_);
    connect(bold_, &QPushButton::clicked, this,
            [this](bool isOn) { editor_->setFontWeight(isOn ? QFont::Bold : QFont::Normal); });
    connect(italic_, &QPushButton::clicked, editor_, &QTextEdit::setFontItalic);
    connect(underline_, &QPushButton::clicked, editor_, &QTextEdit::setFontUnderline);
    connect(size_, &QComboBox::activated, this, [this] {
        editor_->setFontPointSize(size_->currentData().toDouble());
        editor_->setFocus();
    });
    connect(editor_, &QTextEdit::currentCharFormatChanged, this, [this] { followCursor(); });
    return bar;
}

QWidget* FindingsPage::editorColumn() {
    auto* whole = new QWidget;
    auto* column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::px(10));
    auto* bars = new WrapLayout(Theme::px(6));
    bars->addWidget(formats_);
    for (const auto& [label, format] :
         {std::pair("PDF…", ReportFormat::pdf), std::pair("Word…", ReportFormat::docx),
          std::pair("RTF…", ReportFormat::rtf), std::pair("Markdown…", ReportFormat::md)}) {
        const ReportFormat chosen = format;
        QPushButton* button = Buttons::make(
            label, [this, chosen] { exportReport(this, workspace_, chosen); },
            Buttons::Weight::tool);
        button->setAccessibleName("Export " + exportLabel(chosen));
        bars->addWidget(button);
    }
    column->addLayout(bars);
    placeholder_->setAlignment(Qt::AlignCenter);
    column->addWidget(placeholder_, 1);
    column->addWidget(editor_, 1);
    return whole;
}

void FindingsPage::refresh() {
    count_->setText(qtText(workspace_.screens.content(StudioScreen::findings).subtitle));
    if (workspace_.state.reportItems.get() != shown_ || cards_->isEmpty()) {
        shown_ = workspace_.state.reportItems.get();
        showStaged();
    }
    editor_->refresh();
    const bool hasDocument = screenOf(workspace_).hasDocument();
    editor_->setVisible(hasDocument);
    placeholder_->setVisible(!hasDocument);
    formats_->setEnabled(hasDocument);
    assemble_->setEnabled(!shown_.empty());
    assemble_->setText(hasDocument ? "Assemble again" : "Assemble");
    clear_->setEnabled(hasDocument || !shown_.empty());
}

void FindingsPage::showStaged() {
    while (QLayoutItem* item = cards_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const ReportItem& item : shown_) {
        cards_->addWidget(stagedCard(item));
    }
    if (shown_.empty()) {
        cards_->addWidget(Labels::text(qtText(sorvane::stageFirst), "quiet"));
    }
    cards_->addStretch(1);
}

QWidget* FindingsPage::stagedCard(const ReportItem& item) {
    auto* card = new CardFrame;
    card->setAccessibleName(qtText(item.title));
    card->body().setSpacing(Theme::px(3));
    card->body().addWidget(Labels::text(qtText(item.title), "strong"));
    QLabel* summary = Labels::text(shortened(qtText(item.apaSummary)), "small");
    summary->setToolTip(qtText(item.apaSummary));
    card->body().addWidget(summary);
    QPushButton* remove = Buttons::make(
        "Remove", [this, id = item.id] { workspace_.state.removeFromReport(id); },
        Buttons::Weight::link);
    remove->setAccessibleName("Remove " + qtText(item.title));
    card->body().addWidget(remove, 0, Qt::AlignRight);
    return card;
}

void FindingsPage::assemble() {
    FindingsScreen& screen = screenOf(workspace_);
    const Question question{.title = "Assemble the report again?",
                            .text =
                                "The new document takes the place of the present one. Edits "
                                "that you made to it are lost.",
                            .confirmLabel = "Assemble again"};
    if (screen.mustConfirmAssembling() && !workspace_.confirm(this, question)) {
        return;
    }
    commitEdits();
    screen.run();
}

void FindingsPage::clear() {
    const Question question{.title = "Clear the report?",
                            .text = "The staged findings and the assembled document are removed.",
                            .confirmLabel = "Clear"};
    if (workspace_.confirm(this, question)) {
        workspace_.state.clearReport();
    }
}

void FindingsPage::followCursor() {
    bold_->setChecked(editor_->fontWeight() > QFont::Medium);
    italic_->setChecked(editor_->fontItalic());
    underline_->setChecked(editor_->fontUnderline());
    const double points = TableFitting::fullPoints(editor_->currentCharFormat());
    size_->setCurrentIndex(size_->findText(QString::number(points)));
}

}  // namespace sorvane
