#include <algorithm>

#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QPainter>
#include <QValueAxis>

#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartMarks.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"

namespace sorvane::ChartPlots {

namespace {

/// A box takes this part of its slot, and at most so much of the picture.
constexpr double boxShare = 0.5;
constexpr double widestBox = 64.0;

bool isComplete(const BoxPlot::Box& box) {
    const double parts[] = {box.lowerWhisker, box.firstQuartile, box.median, box.thirdQuartile,
                            box.upperWhisker};
    return std::all_of(std::begin(parts), std::end(parts), ChartRange::hasPlace);
}

void paintBox(QPainter& painter, const ChartPlaces& places, double slot, const BoxPlot::Box& box) {
    const QPen outline = painter.pen();
    const double half =
        std::min(places.at(slot + boxShare / 2.0, box.median).x() - places.at(slot, box.median).x(),
                 widestBox / 2.0);
    const QPointF middle = places.at(slot, box.median);
    const double top = places.at(slot, box.thirdQuartile).y();
    const double bottom = places.at(slot, box.firstQuartile).y();
    for (const auto& [from, to] : {std::pair(top, box.upperWhisker), {bottom, box.lowerWhisker}}) {
        const QPointF end = places.at(slot, to);
        painter.drawLine(QPointF(end.x(), from), end);
        painter.drawLine(end - QPointF(half / 3.0, 0.0), end + QPointF(half / 3.0, 0.0));
    }
    painter.drawRect(QRectF(QPointF(middle.x() - half, top), QPointF(middle.x() + half, bottom)));
    painter.setPen(QPen(outline.color(), 2.4));
    painter.drawLine(middle - QPointF(half, 0.0), middle + QPointF(half, 0.0));
    painter.setPen(outline);
}

void paintBoxes(QPainter& painter,
                const ChartPlaces& places,
                const std::vector<BoxPlot::Box>& boxes,
                const ChartInk& ink) {
    double slot = 0.0;
    for (const BoxPlot::Box& box : boxes) {
        painter.setPen(QPen(ink.primary, 1.4));
        painter.setBrush(ink.primaryFill);
        if (isComplete(box)) {
            paintBox(painter, places, slot, box);
        }
        painter.setBrush(Qt::NoBrush);
        for (const double outlier : box.outliers) {
            if (ChartRange::hasPlace(outlier)) {
                painter.drawEllipse(places.at(slot, outlier), ChartMarks::pointRadius,
                                    ChartMarks::pointRadius);
            }
        }
        slot += 1.0;
    }
}

}  // namespace

void add(ChartCanvas& canvas, const HistogramPlot& plot) {
    if (plot.counts.empty() || plot.edges.size() != plot.counts.size() + 1) {
        return;
    }
    auto* counts = new QBarSet("");
    double highest = 1.0;
    for (const std::int64_t count : plot.counts) {
        *counts << static_cast<double>(count);
        highest = std::max(highest, static_cast<double>(count));
    }
    counts->setColor(canvas.ink.primary);
    counts->setBorderColor(canvas.ink.ground);
    auto* bars = new QBarSeries;
    bars->setBarWidth(1.0);
    bars->append(counts);
    canvas.chart.addSeries(bars);
    // The bars stand on equal slots; an empty series brings the scale of the variable under them.
    const double count = static_cast<double>(plot.counts.size());
    ChartAxes::addNumbers(canvas, *bars,
                          {.range = {-0.5, count - 0.5}, .extent = ChartAxes::Extent::exact},
                          Qt::AlignBottom)
        .setVisible(false);
    ChartAxes::addNumbers(canvas, *bars, {.range = {0.0, highest}, .wholeNumbers = true},
                          Qt::AlignLeft);
    ChartAxes::addNumbers(
        canvas, canvas.addScale(),
        {.range = {plot.edges.front(), plot.edges.back()}, .extent = ChartAxes::Extent::exact},
        Qt::AlignBottom);
}

void add(ChartCanvas& canvas, const BoxPlot& plot) {
    if (plot.boxes.empty()) {
        return;
    }
    std::vector<std::string> names;
    ValueRange range = ChartRange::nothing();
    for (const BoxPlot::Box& box : plot.boxes) {
        names.push_back(box.label);
        ChartRange::include(range, {box.lowerWhisker, box.upperWhisker});
        ChartRange::include(range, box.outliers);
    }
    QAbstractSeries& scale = canvas.addScale();
    ChartAxes::addCategories(canvas, scale, names, Qt::AlignBottom);
    ChartAxes::addNumbers(canvas, scale, {.range = ChartRange::padded(range)}, Qt::AlignLeft);
    canvas.paint(&scale, [boxes = plot.boxes, ink = canvas.ink](QPainter& painter,
                                                                const ChartPlaces& places) {
        paintBoxes(painter, places, boxes, ink);
    });
}

}  // namespace sorvane::ChartPlots
