#include "SorvaneMac/Shell/ElidedLabel.h"

#include <QPainter>
#include <QVariant>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// With less room than this, a few letters say nothing.
constexpr int leastWidth = 50;

}  // namespace

ElidedLabel::ElidedLabel() {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    if (width() < Theme::px(leastWidth)) {
        return;
    }
    QPainter painter(this);
    painter.setPen(Theme::colors().quietText);
    painter.drawText(rect(), Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

}  // namespace sorvane
