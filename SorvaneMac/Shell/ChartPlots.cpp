#include "SorvaneMac/Shell/ChartPlots.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QBoxPlotSeries>
#include <QBoxSet>
#include <QChart>
#include <QLineSeries>
#include <QValueAxis>

#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartOverlay.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

using ChartAxes::attach;
using ChartAxes::Extent;
using ChartAxes::ValueRange;

void widen(ValueRange& range, double value) {
    if (std::isfinite(value)) {
        range.minimum = std::min(range.minimum, value);
        range.maximum = std::max(range.maximum, value);
    }
}

ValueRange rangeOf(const std::vector<double>& values) {
    ValueRange range{std::numeric_limits<double>::infinity(),
                     -std::numeric_limits<double>::infinity()};
    for (const double value : values) {
        widen(range, value);
    }
    return std::isfinite(range.minimum) ? range : ValueRange{};
}

/// A little air, so that no mark lies on the frame; none below a zero that nothing passes.
ValueRange padded(ValueRange range) {
    const double air = (range.maximum - range.minimum) * 0.04;
    const bool startsAtZero = range.minimum >= 0.0 && range.minimum < air;
    return {startsAtZero ? 0.0 : range.minimum - air, range.maximum + air};
}

QStringList slotNumbers(std::size_t count) {
    QStringList names;
    for (std::size_t at = 0; at < count; ++at) {
        names << QString::number(at);
    }
    return names;
}

}  // namespace

void add(QChart& chart, const HistogramPlot& plot, const Chart& texts, const ChartInk& ink) {
    if (plot.counts.empty() || plot.edges.size() != plot.counts.size() + 1) {
        return;
    }
    auto* counts = new QBarSet("");
    double highest = 0.0;
    for (const std::int64_t count : plot.counts) {
        *counts << static_cast<double>(count);
        highest = std::max(highest, static_cast<double>(count));
    }
    counts->setColor(ink.primary);
    counts->setBorderColor(ink.ground);
    auto* bars = new QBarSeries;
    bars->setBarWidth(1.0);
    bars->append(counts);
    chart.addSeries(bars);
    QBarCategoryAxis* bins = ChartAxes::categories(slotNumbers(plot.counts.size()), "", ink);
    attach(chart, bars, bins, Qt::AlignBottom);
    bins->setVisible(false);
    attach(chart, bars,
           ChartAxes::value({0.0, highest}, Extent::rounded, qtText(texts.yLabel), ink),
           Qt::AlignLeft);

    // The bars stand on equal slots; an empty series brings the scale of the variable under them.
    auto* scale = new QLineSeries;
    chart.addSeries(scale);
    QValueAxis* axis = ChartAxes::value({plot.edges.front(), plot.edges.back()}, Extent::exact,
                                        qtText(texts.xLabel), ink);
    axis->setGridLineVisible(false);
    attach(chart, scale, axis, Qt::AlignBottom);
}

void add(QChart& chart, const BoxPlot& plot, const Chart& texts, const ChartInk& ink) {
    if (plot.boxes.empty()) {
        return;
    }
    auto* boxes = new QBoxPlotSeries;
    QStringList names;
    std::vector<double> extremes;
    std::vector<QPointF> outliers;
    for (const BoxPlot::Box& box : plot.boxes) {
        const auto slot = static_cast<double>(names.size());
        names << qtText(box.label);
        boxes->append(new QBoxSet(box.lowerWhisker, box.firstQuartile, box.median,
                                  box.thirdQuartile, box.upperWhisker, names.back()));
        extremes.insert(extremes.end(), {box.lowerWhisker, box.upperWhisker});
        for (const double outlier : box.outliers) {
            extremes.push_back(outlier);
            outliers.emplace_back(slot, outlier);
        }
    }
    boxes->setBrush(ink.primaryFill);
    boxes->setPen(QPen(ink.primary, 1.6));
    boxes->setBoxWidth(std::min(0.5, 0.12 * static_cast<double>(plot.boxes.size())));
    chart.addSeries(boxes);
    attach(chart, boxes, ChartAxes::categories(names, qtText(texts.xLabel), ink), Qt::AlignBottom);
    attach(chart, boxes,
           ChartAxes::value(padded(rangeOf(extremes)), Extent::rounded, qtText(texts.yLabel), ink),
           Qt::AlignLeft);
    auto* overlay = new ChartOverlay(chart, *boxes, ink);
    overlay->points = std::move(outliers);
    overlay->hollowPoints = true;
}

void add(QChart& chart, const ScatterPlot& plot, const Chart& texts, const ChartInk& ink) {
    const std::size_t count = std::min(plot.x.size(), plot.y.size());
    if (count == 0) {
        return;
    }
    const ValueRange across = padded(rangeOf(plot.x));
    auto* line = new QLineSeries;
    line->setPen(QPen(ink.apart, 2.0));
    if (plot.line) {
        for (const double x : {across.minimum, across.maximum}) {
            line->append(x, plot.line->intercept + plot.line->slope * x);
        }
    }
    chart.addSeries(line);
    QValueAxis* horizontal = ChartAxes::value(across, Extent::exact, qtText(texts.xLabel), ink);
    horizontal->setGridLineVisible(false);
    attach(chart, line, horizontal, Qt::AlignBottom);
    attach(chart, line,
           ChartAxes::value(padded(rangeOf(plot.y)), Extent::rounded, qtText(texts.yLabel), ink),
           Qt::AlignLeft);
    auto* overlay = new ChartOverlay(chart, *line, ink);
    overlay->points.reserve(count);
    for (std::size_t at = 0; at < count; ++at) {
        overlay->points.emplace_back(plot.x[at], plot.y[at]);
    }
}

}  // namespace sorvane::ChartPlots
