#include "SorvaneMac/Shell/Labels.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QVariant>

#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Shell/BreakableText.h"

namespace sorvane::Labels {

namespace {

/// A label that gives away its text as it was, and not as it is laid out.
class TextLabel final : public QLabel {
public:
    TextLabel() {
        setTextFormat(Qt::PlainText);
        setTextInteractionFlags(Qt::TextSelectableByMouse);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override {
        QMenu menu(this);
        menu.addAction("Copy", this, [this] {
            Clipboard::setText(hasSelectedText() ? BreakableText::unmarked(selectedText())
                                                 : shown(*this));
        });
        menu.exec(event->globalPos());
    }
};

}  // namespace

QLabel* text(const QString& text, const char* role) {
    QLabel* label = line({}, role);
    show(*label, text);
    label->setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    label->setSizePolicy(policy);
    return label;
}

void show(QLabel& label, const QString& text) {
    label.setText(BreakableText::of(text));
    label.setAccessibleName(text);
}

QString shown(const QLabel& label) {
    return BreakableText::unmarked(label.text());
}

QLabel* line(const QString& text, const char* role) {
    auto* label = new TextLabel;
    label->setText(text);
    label->setProperty("role", role);
    return label;
}

QLabel* pill(const QString& text, const char* tone) {
    QLabel* label = line(text);
    label->setProperty("pill", tone);
    label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return label;
}

}  // namespace sorvane::Labels
