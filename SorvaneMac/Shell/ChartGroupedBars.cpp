#include <algorithm>
#include <cmath>

#include <QAbstractBarSeries>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QFontMetricsF>
#include <QHorizontalStackedBarSeries>
#include <QPainter>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

constexpr double barWidth = 0.72;
constexpr double figureAir = 4.0;

bool isStacked(const GroupedBarPlot& plot) {
    return plot.arrangement == GroupedBarPlot::Arrangement::stacked;
}

/// As many values as categories, shares in per cent, so that bars, axis and figures agree.
GroupedBarPlot prepared(const GroupedBarPlot& given) {
    GroupedBarPlot plot = given;
    const bool isShare = plot.scale == GroupedBarPlot::Scale::share;
    for (GroupedBarPlot::Series& series : plot.series) {
        series.values.resize(plot.categories.size(), std::nan(""));
        for (double& value : series.values) {
            value = isShare ? value * 100.0 : value;
        }
    }
    return plot;
}

double drawnValue(double value) {
    return ChartRange::hasPlace(value) ? value : 0.0;
}

QAbstractBarSeries* barsOf(const GroupedBarPlot& plot, const ChartInk& ink) {
    QAbstractBarSeries* bars = nullptr;
    if (isStacked(plot)) {
        bars = new QHorizontalStackedBarSeries;
    } else {
        bars = new QBarSeries;
    }
    for (std::size_t at = 0; at < plot.series.size(); ++at) {
        auto* set = new QBarSet("");
        std::vector<double> values = plot.series[at].values;
        if (isStacked(plot)) {
            std::ranges::reverse(values);
        }
        for (const double value : values) {
            *set << drawnValue(value);
        }
        set->setColor(ink.seriesColor(at));
        // A seam between the parts of a bar; under upright bars it would cut the axis.
        set->setBorderColor(isStacked(plot) ? ink.ground : QColor(Qt::transparent));
        bars->append(set);
    }
    bars->setBarWidth(barWidth);
    return bars;
}

ValueRange rangeOf(const GroupedBarPlot& plot) {
    ValueRange range{0.0, 0.0};
    for (std::size_t category = 0; category < plot.categories.size(); ++category) {
        double sum = 0.0;
        for (const GroupedBarPlot::Series& series : plot.series) {
            sum += drawnValue(series.values[category]);
            ChartRange::include(range, isStacked(plot) ? sum : series.values[category]);
        }
    }
    // Shares that fill the bar stop at 100, whatever the last digit of their sum.
    const bool isFull = plot.scale == GroupedBarPlot::Scale::share && isStacked(plot) &&
                        std::abs(range.maximum - 100.0) < 0.5;
    range.maximum = isFull ? 100.0 : range.maximum;
    return range.minimum == range.maximum ? ValueRange{0.0, 1.0} : range;
}

/// Writes each value into its part of the bar, where there is room.
void paintStackFigures(QPainter& painter,
                       const ChartPlaces& places,
                       const GroupedBarPlot& plot,
                       const ChartInk& ink) {
    const std::size_t count = plot.categories.size();
    const QFontMetricsF metrics(ink.font);
    const double barHeight = places.area().height() / static_cast<double>(count) * barWidth;
    if (barHeight < metrics.height()) {
        return;
    }
    painter.setFont(ink.font);
    for (std::size_t category = 0; category < count; ++category) {
        const double slot = ChartAxes::slotFromAbove(category, count);
        double from = 0.0;
        for (std::size_t at = 0; at < plot.series.size(); ++at) {
            const double value = drawnValue(plot.series[at].values[category]);
            const QPointF start = places.at(from, slot);
            const QPointF end = places.at(from + value, slot);
            from += value;
            const QString text = qtText(svFigure(value, plot.decimals));
            if (metrics.horizontalAdvance(text) + figureAir > end.x() - start.x()) {
                continue;
            }
            painter.setPen(ChartInk::textOn(ink.seriesColor(at)));
            painter.drawText(
                QRectF(start, end).adjusted(0.0, -barHeight / 2.0, 0.0, barHeight / 2.0),
                Qt::AlignCenter, text);
        }
    }
}

}  // namespace

void add(ChartCanvas& canvas, const GroupedBarPlot& given) {
    if (given.categories.empty() || given.series.empty()) {
        return;
    }
    GroupedBarPlot plot = prepared(given);
    QAbstractBarSeries* bars = barsOf(plot, canvas.ink);
    canvas.chart.addSeries(bars);
    const bool stacked = isStacked(plot);
    ChartAxes::addCategories(canvas, *bars, plot.categories,
                             stacked ? Qt::AlignLeft : Qt::AlignBottom);
    ChartAxes::addNumbers(
        canvas, *bars,
        {.range = rangeOf(plot), .percent = plot.scale == GroupedBarPlot::Scale::share},
        stacked ? Qt::AlignBottom : Qt::AlignLeft);
    for (std::size_t at = 0; plot.series.size() > 1 && at < plot.series.size(); ++at) {
        canvas.addSwatch(qtText(plot.series[at].name), canvas.ink.seriesColor(at));
    }
    if (stacked) {
        canvas.paint(bars, [plot = std::move(plot), ink = canvas.ink](QPainter& painter,
                                                                      const ChartPlaces& places) {
            paintStackFigures(painter, places, plot, ink);
        });
    }
}

}  // namespace sorvane::ChartPlots
