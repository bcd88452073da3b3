#include "SorvaneMac/Shell/ChartOverlay.h"

#include <cmath>

#include <QAbstractSeries>
#include <QChart>
#include <QPainter>

namespace sorvane {

namespace {

constexpr std::size_t manyPoints = 1500;
constexpr double pointRadius = 3.0;
constexpr double smallPointRadius = 1.6;
constexpr double labelGap = 5.0;

}  // namespace

ChartOverlay::ChartOverlay(QChart& chart, QAbstractSeries& series, const ChartInk& ink)
    : QGraphicsItem(&chart), chart_(chart), series_(series), ink_(ink) {
    setZValue(50);
}

QRectF ChartOverlay::boundingRect() const {
    return chart_.rect();
}

void ChartOverlay::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    painter->setRenderHint(QPainter::Antialiasing);
    paintLine(*painter);
    paintPoints(*painter);
    paintLabels(*painter);
}

void ChartOverlay::paintPoints(QPainter& painter) const {
    const bool many = points.size() > manyPoints;
    const double radius = many ? smallPointRadius : pointRadius;
    QColor fill = ink_.primary;
    fill.setAlphaF(many ? 0.5F : 0.65F);
    painter.setPen(hollowPoints ? QPen(ink_.primary, 1.2) : QPen(Qt::NoPen));
    painter.setBrush(hollowPoints ? QBrush(Qt::NoBrush) : QBrush(fill));

    const QRectF area = chart_.plotArea().adjusted(-radius, -radius, radius, radius);
    const auto columns = static_cast<std::size_t>(area.width()) + 1;
    std::vector<bool> covered(columns * (static_cast<std::size_t>(area.height()) + 1));
    for (const QPointF& point : points) {
        const QPointF place = chart_.mapToPosition(point, &series_);
        // A point without a place is neither inside nor outside.
        const bool isPlaced = std::isfinite(place.x()) && std::isfinite(place.y());
        if (!isPlaced || !area.contains(place)) {
            continue;
        }
        const QPointF inside = place - area.topLeft();
        const std::size_t spot =
            static_cast<std::size_t>(inside.y()) * columns + static_cast<std::size_t>(inside.x());
        if (!many || !covered[spot]) {
            covered[spot] = true;
            painter.drawEllipse(place, radius, radius);
        }
    }
}

void ChartOverlay::paintLine(QPainter& painter) const {
    if (!verticalLine) {
        return;
    }
    const QRectF area = chart_.plotArea();
    const double x = chart_.mapToPosition({*verticalLine, 0.0}, &series_).x();
    painter.setPen(QPen(ink_.text, 1.2, Qt::DashLine));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    painter.setFont(ink_.font);
    painter.setPen(ink_.quiet);
    const QRectF above(x - 40.0, area.top() - 18.0, 80.0, 16.0);
    painter.drawText(above, Qt::AlignCenter, lineLabel);
}

void ChartOverlay::paintLabels(QPainter& painter) const {
    painter.setFont(ink_.font);
    painter.setPen(ink_.text);
    const QFontMetricsF metrics(ink_.font);
    for (const Label& label : labels) {
        const QPointF place = chart_.mapToPosition(label.at, &series_);
        painter.drawText(place + QPointF(labelGap, metrics.capHeight() / 2.0), label.text);
    }
}

}  // namespace sorvane
