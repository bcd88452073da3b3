#pragma once

#include <cstddef>

#include <QPen>
#include <QPointF>

#include "SorvaneMac/Shell/ChartCanvas.h"

/// The small signs of which plots are made.
namespace sorvane::ChartMarks {

constexpr double pointRadius = 3.2;

/// How one series looks: also without colour it differs from its neighbours.
struct SeriesLook {
    QColor color;
    Qt::PenStyle dash = Qt::SolidLine;
    std::size_t shape = 0;
};

SeriesLook lookOf(const ChartInk& ink, std::size_t series);

QPen linePen(const SeriesLook& look);

/// A disc, a square, a triangle or a diamond.
void paintMarker(QPainter& painter, const SeriesLook& look, QPointF centre);

/// A stroke from end to end, with a short bar across each.
void paintWhisker(QPainter& painter, QPointF from, QPointF to, const QColor& color);

/// The mark of a series in the legend.
LegendEntry legendEntry(const SeriesLook& look, const QString& name, bool hasLine, bool hasMarker);

}  // namespace sorvane::ChartMarks
