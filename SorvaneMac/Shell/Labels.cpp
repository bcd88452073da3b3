#include "SorvaneMac/Shell/Labels.h"

#include <QVariant>

namespace sorvane::Labels {

QLabel* text(const QString& text, const char* role) {
    QLabel* label = line(text, role);
    label->setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    label->setSizePolicy(policy);
    return label;
}

void showName(QLabel& label, const QString& name) {
    constexpr QChar breakHere(0x200B);
    label.setText(QString(name).replace('_', QString('_') + breakHere));
    label.setTextInteractionFlags(Qt::NoTextInteraction);
    label.setAccessibleName(name);
    label.setToolTip(name);
}

QLabel* line(const QString& text, const char* role) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFocusPolicy(Qt::NoFocus);
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
