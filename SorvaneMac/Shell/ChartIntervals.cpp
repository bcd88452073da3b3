#include <cmath>

#include <QPainter>

#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartMarks.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"

namespace sorvane::ChartPlots {

namespace {

/// Rows closer than this carry neither end bars nor full points.
constexpr double closeRows = 9.0;

void paintRow(QPainter& painter,
              const ChartPlaces& places,
              double slot,
              const IntervalPlot::Row& row,
              const ChartInk& ink) {
    const bool isClose = places.at(0.0, 0.0).y() - places.at(0.0, 1.0).y() < closeRows;
    if (ChartRange::hasPlace(row.lower) && ChartRange::hasPlace(row.upper)) {
        const QPointF from = places.at(row.lower, slot);
        const QPointF to = places.at(row.upper, slot);
        if (isClose) {
            painter.setPen(QPen(ink.primary, 1.0));
            painter.drawLine(from, to);
        } else {
            ChartMarks::paintWhisker(painter, from, to, ink.primary);
        }
    }
    if (ChartRange::hasPlace(row.estimate)) {
        const double radius = isClose ? 1.6 : ChartMarks::pointRadius + 0.6;
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink.primary);
        painter.drawEllipse(places.at(row.estimate, slot), radius, radius);
    }
}

}  // namespace

void add(ChartCanvas& canvas, const IntervalPlot& plot) {
    if (plot.rows.empty()) {
        return;
    }
    std::vector<std::string> labels;
    ValueRange range = ChartRange::nothing();
    ChartRange::include(range, plot.reference.value_or(std::nan("")));
    for (const IntervalPlot::Row& row : plot.rows) {
        labels.push_back(row.label);
        ChartRange::include(range, {row.lower, row.estimate, row.upper});
    }
    QAbstractSeries& scale = canvas.addScale();
    ChartAxes::addCategories(canvas, scale, labels, Qt::AlignLeft);
    ChartAxes::addNumbers(canvas, scale, {.range = ChartRange::padded(range)}, Qt::AlignBottom);
    canvas.paint(&scale, [plot, ink = canvas.ink](QPainter& painter, const ChartPlaces& places) {
        if (plot.reference) {
            const double x = places.at(*plot.reference, 0.0).x();
            painter.setPen(QPen(ink.quiet, 1.2, Qt::DashLine));
            painter.drawLine(QPointF(x, places.area().top()), QPointF(x, places.area().bottom()));
        }
        for (std::size_t at = 0; at < plot.rows.size(); ++at) {
            paintRow(painter, places, ChartAxes::slotFromAbove(at, plot.rows.size()), plot.rows[at],
                     ink);
        }
    });
}

}  // namespace sorvane::ChartPlots
