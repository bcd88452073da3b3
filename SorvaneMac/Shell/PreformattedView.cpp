#include "SorvaneMac/Shell/PreformattedView.h"

#include <algorithm>

#include <QFontMetrics>
#include <QScrollBar>
#include <QTextDocument>
#include <QWheelEvent>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int widest = 420;
constexpr int smallest = 220;

}  // namespace

PreformattedView::PreformattedView(const QString& text) {
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setAccessibleName("Text plot");
    const QFont font = Theme::fixedWidthFont(12);
    setFont(font);
    // The stylesheet of the window sets fields in the text face; this one keeps its own.
    setStyleSheet(
        "QPlainTextEdit { border: 1px solid transparent; background: transparent; "
        "padding: 0; } QPlainTextEdit:focus { border-color: " +
        Theme::colors().accent.name() + "; }");
    document()->setDefaultFont(font);
    setPlainText(text);
    const QStringList lines = text.split('\n');
    const QFontMetrics metrics(font);
    int width = 0;
    for (const QString& line : lines) {
        width = std::max(width, metrics.horizontalAdvance(line));
    }
    const auto count = static_cast<int>(lines.size());
    textSize_ = {width + Theme::px(14), metrics.lineSpacing() * count + Theme::px(12)};
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize PreformattedView::sizeHint() const {
    const bool scrolls = textSize_.width() > Theme::px(widest);
    const int bar = scrolls ? horizontalScrollBar()->sizeHint().height() : 0;
    return {std::min(textSize_.width(), Theme::px(widest)), textSize_.height() + bar};
}

QSize PreformattedView::minimumSizeHint() const {
    return {std::min(textSize_.width(), Theme::px(smallest)), sizeHint().height()};
}

void PreformattedView::wheelEvent(QWheelEvent* event) {
    if (event->angleDelta().x() == 0) {
        event->ignore();
        return;
    }
    QPlainTextEdit::wheelEvent(event);
}

}  // namespace sorvane
