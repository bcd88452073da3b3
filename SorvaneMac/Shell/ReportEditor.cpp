#include "SorvaneMac/Shell/ReportEditor.h"

#include <algorithm>

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocumentFragment>

#include "SorvaneMac/Report/PrintedReport.h"
#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/Report/RichTextConversion.h"
#include "SorvaneMac/Report/TableFitting.h"
#include "SorvaneMac/Report/UnbrokenText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

constexpr int writeBackMilliseconds = 400;
constexpr double pageMargin = 8.0;
/// The toolkit lays a table that takes the whole width out a little wider than that.
constexpr double tableOverhang = 2.0;
/// What dims white paper, and the white of figures with it, in a dark window.
constexpr auto dusk = "#e9ebee";
constexpr QChar mark(UnbrokenText::wordJoiner);

bool isStyleKey(const QKeyEvent& event) {
    return event.matches(QKeySequence::Bold) || event.matches(QKeySequence::Italic) ||
           event.matches(QKeySequence::Underline);
}

}  // namespace

ReportEditor::ReportEditor(StudioState& state) : state_(state) {
    setAccessibleName("Report");
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    setStyleSheet("QTextEdit { background: " + Theme::colors().sidebar.name() +
                  "; color: #101318; border: 1px solid " + Theme::colors().border.name() +
                  "; border-radius: 2px; }" + "QTextEdit:focus { border: 2px solid " +
                  Theme::colors().accent.name() + "; }");
    document()->setDefaultFont(Theme::faces(16));
    document()->setDocumentMargin(pageMargin);
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this](const QSizeF& size) {
                const bool overflows = size.width() > viewport()->width() + tableOverhang;
                setHorizontalScrollBarPolicy(overflows ? Qt::ScrollBarAsNeeded
                                                       : Qt::ScrollBarAlwaysOff);
            });
    writeBack_.setSingleShot(true);
    writeBack_.setInterval(writeBackMilliseconds);
    connect(&writeBack_, &QTimer::timeout, this, &ReportEditor::commit);
    connect(this, &QTextEdit::textChanged, this, [this] {
        if (!isLoading_) {
            isEdited_ = true;
            writeBack_.start();
        }
    });
}

ReportEditor::~ReportEditor() {
    disconnect();
}

void ReportEditor::refresh() {
    const std::optional<std::vector<std::uint8_t>>& stored = state_.reportRTFData.get();
    if (stored == shown_) {
        return;
    }
    shown_ = stored;
    isLoading_ = true;
    const std::optional<RichDocument> document = stored ? decode(*stored) : std::nullopt;
    RichTextConversion::write(UnbrokenText::numbersHeld(document.value_or(RichDocument())),
                              *this->document());
    TableFitting::fit(*this->document(), textWidth());
    // The columns are not an edit that could be undone.
    this->document()->setUndoRedoEnabled(false);
    this->document()->setUndoRedoEnabled(true);
    moveCursor(QTextCursor::Start);
    isLoading_ = false;
    isEdited_ = false;
    writeBack_.stop();
    setReadOnly(!document);
}

void ReportEditor::commit() {
    if (!isEdited_) {
        return;
    }
    isEdited_ = false;
    writeBack_.stop();
    // A document that was cleared or assembled anew meanwhile is not written over.
    if (state_.reportRTFData.get() != shown_) {
        refresh();
        return;
    }
    shown_ = encode(UnbrokenText::released(RichTextConversion::read(*document())));
    state_.reportRTFData.replace(shown_);
}

int ReportEditor::paperWidth() const {
    return static_cast<int>(textWidth() + 2 * pageMargin);
}

double ReportEditor::textWidth() const {
    return PrintedReport::textWidth * logicalDpiX() / 72.0;
}

bool ReportEditor::event(QEvent* event) {
    // Otherwise the menus would take those keys that they have other uses for.
    if (event->type() == QEvent::ShortcutOverride && isStyleKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTextEdit::event(event);
}

/// A key that would only pass or delete a mark passes or deletes it before it does its work.
void ReportEditor::passMark(const QKeyEvent& event) {
    const bool isBack = event.key() == Qt::Key_Left || event.key() == Qt::Key_Backspace;
    const bool isForth = event.key() == Qt::Key_Right || event.key() == Qt::Key_Delete;
    QTextCursor cursor = textCursor();
    if ((!isBack && !isForth) || cursor.hasSelection() ||
        document()->characterAt(cursor.position() - (isBack ? 1 : 0)) != mark) {
        return;
    }
    if (event.key() == Qt::Key_Backspace) {
        cursor.deletePreviousChar();
    } else if (event.key() == Qt::Key_Delete) {
        cursor.deleteChar();
    } else {
        cursor.movePosition(isBack ? QTextCursor::Left : QTextCursor::Right);
        setTextCursor(cursor);
    }
}

QMimeData* ReportEditor::createMimeDataFromSelection() const {
    QTextDocument copied;
    QTextCursor(&copied).insertFragment(textCursor().selection());
    QTextCursor found(&copied);
    while (!(found = copied.find(mark, found)).isNull()) {
        found.removeSelectedText();
    }
    auto* content = new QMimeData;
    content->setHtml(copied.toHtml());
    content->setText(copied.toPlainText());
    return content;
}

void ReportEditor::keyPressEvent(QKeyEvent* event) {
    if (!isStyleKey(*event)) {
        if (!isReadOnly()) {
            passMark(*event);
        }
        QTextEdit::keyPressEvent(event);
    } else if (isReadOnly()) {
        event->ignore();
    } else if (event->matches(QKeySequence::Bold)) {
        setFontWeight(fontWeight() > QFont::Medium ? QFont::Normal : QFont::Bold);
    } else if (event->matches(QKeySequence::Italic)) {
        setFontItalic(!fontItalic());
    } else {
        setFontUnderline(!fontUnderline());
    }
}

/// The page is paper in either appearance: what is seen is what is printed.
void ReportEditor::paintEvent(QPaintEvent* event) {
    QPainter(viewport()).fillRect(event->rect(), Qt::white);
    QTextEdit::paintEvent(event);
    if (Theme::isDark()) {
        QPainter painter(viewport());
        painter.setCompositionMode(QPainter::CompositionMode_Multiply);
        painter.fillRect(event->rect(), QColor(dusk));
    }
}

void ReportEditor::resizeEvent(QResizeEvent* event) {
    const QMargins margins = viewportMargins();
    const int room = viewport()->width() + margins.left() + margins.right();
    const int side = std::max((room - paperWidth()) / 2, 0);
    if (side != margins.left()) {
        setViewportMargins(side, 0, side, 0);
    }
    QTextEdit::resizeEvent(event);
}

}  // namespace sorvane
