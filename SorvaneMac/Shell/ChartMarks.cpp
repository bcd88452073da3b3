#include "SorvaneMac/Shell/ChartMarks.h"

#include <array>

#include <QPainter>
#include <QPolygonF>

namespace sorvane::ChartMarks {

namespace {

constexpr std::array dashes = {Qt::SolidLine, Qt::DashLine, Qt::DashDotLine, Qt::DotLine};
constexpr double whiskerEnd = 3.5;
constexpr double legendLine = 26.0;

}  // namespace

SeriesLook lookOf(const ChartInk& ink, std::size_t series) {
    return {.color = ink.seriesColor(series),
            .dash = dashes[series % dashes.size()],
            .shape = series % 4};
}

QPen linePen(const SeriesLook& look) {
    QPen pen(look.color, 1.8, look.dash, Qt::FlatCap, Qt::MiterJoin);
    return pen;
}

void paintMarker(QPainter& painter, const SeriesLook& look, QPointF centre) {
    constexpr double r = pointRadius;
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.color);
    switch (look.shape) {
        case 1:
            painter.drawRect(QRectF(centre.x() - r, centre.y() - r, 2.0 * r, 2.0 * r));
            break;
        case 2:
            painter.drawPolygon(
                QPolygonF({centre + QPointF(0.0, -1.3 * r), centre + QPointF(1.2 * r, r),
                           centre + QPointF(-1.2 * r, r)}));
            break;
        case 3:
            painter.drawPolygon(
                QPolygonF({centre + QPointF(0.0, -1.4 * r), centre + QPointF(1.4 * r, 0.0),
                           centre + QPointF(0.0, 1.4 * r), centre + QPointF(-1.4 * r, 0.0)}));
            break;
        default:
            painter.drawEllipse(centre, r + 0.2, r + 0.2);
    }
    painter.setBrush(Qt::NoBrush);
}

void paintWhisker(QPainter& painter, QPointF from, QPointF to, const QColor& color) {
    painter.setPen(QPen(color, 1.4));
    painter.drawLine(from, to);
    const bool upright = from.x() == to.x();
    const QPointF across = upright ? QPointF(whiskerEnd, 0.0) : QPointF(0.0, whiskerEnd);
    for (const QPointF& end : {from, to}) {
        painter.drawLine(end - across, end + across);
    }
}

LegendEntry legendEntry(const SeriesLook& look, const QString& name, bool hasLine, bool hasMarker) {
    return {.text = name,
            .markWidth = hasLine ? legendLine : 2.0 * pointRadius,
            .mark = [look, hasLine, hasMarker](QPainter& painter, QRectF place) {
                if (hasLine) {
                    painter.setPen(linePen(look));
                    painter.drawLine(QPointF(place.left(), place.center().y()),
                                     QPointF(place.right(), place.center().y()));
                }
                if (hasMarker) {
                    paintMarker(painter, look, place.center());
                }
            }};
}

}  // namespace sorvane::ChartMarks
