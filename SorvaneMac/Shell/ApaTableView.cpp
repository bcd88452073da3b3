#include "SorvaneMac/Shell/ApaTableView.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include "SorvaneMac/Shell/TableCopying.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// What a table is cut to on a narrow card before it scrolls.
constexpr int narrowest = 240;

}  // namespace

ApaTableView::ApaTableView(ReportTable table, const QString& name)
    : table_(std::move(table)), layout_(table_) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::TabFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(name);
    setAccessibleDescription(plainText(table_));
}

int ApaTableView::heightForWidth(int width) const {
    layout_.setWidth(width);
    const bool scrolls = width < layout_.minimumWidth();
    return layout_.height() + (scrolls ? horizontalScrollBar()->sizeHint().height() : 0);
}

QSize ApaTableView::sizeHint() const {
    const int width = layout_.naturalWidth();
    return {width, heightForWidth(width)};
}

QSize ApaTableView::minimumSizeHint() const {
    const int width = std::min(layout_.minimumWidth(), Theme::px(narrowest));
    return {width, 0};
}

void ApaTableView::resizeEvent(QResizeEvent*) {
    const int room = viewport()->width();
    layout_.setWidth(room);
    horizontalScrollBar()->setPageStep(room);
    horizontalScrollBar()->setRange(0, layout_.width() - room);
}

void ApaTableView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const int offset = horizontalScrollBar()->value();
    layout_.setWidth(viewport()->width());
    painter.translate(-offset, 0);
    layout_.paint(painter, event->rect().translated(offset, 0), offset);
    if (hasFocus()) {
        painter.resetTransform();
        painter.setPen(Theme::colors().accent);
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void ApaTableView::wheelEvent(QWheelEvent* event) {
    // The page scrolls up and down; only a sideways turn is for the table.
    if (event->angleDelta().x() == 0) {
        event->ignore();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

void ApaTableView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addAction("Copy table", this, [this] { copyTable(std::string(), table_); });
    menu.exec(event->globalPos());
}

}  // namespace sorvane
