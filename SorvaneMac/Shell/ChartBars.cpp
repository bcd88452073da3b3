#include <algorithm>
#include <cmath>

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QHorizontalBarSeries>
#include <QValueAxis>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartOverlay.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

/// Room beyond the longest bar for the figure at its end.
constexpr double labelShare = 0.16;
/// Room above the plot for the figure of the reference line.
constexpr int referenceMargin = 20;

bool isBounded(const BarPlot& plot) {
    return std::all_of(plot.values.begin(), plot.values.end(), [](double value) {
        return !std::isfinite(value) || std::abs(value) <= 1.0;
    });
}

/// Coefficients that stay within 1 are written without their leading zero, as in the tables.
QString figureText(double value, const BarPlot& plot) {
    if (!std::isfinite(value)) {
        return "--";
    }
    std::string text = NumberText::fixed(value, plot.decimals);
    return qtText(isBounded(plot) ? APAFormat::withoutLeadingZero(std::move(text)) : text);
}

/// The bars from below to above, since the axis counts so and the first label stands on top.
QHorizontalBarSeries* barSeries(const BarPlot& plot, std::size_t count, const ChartInk& ink) {
    auto* values = new QBarSet("");
    for (std::size_t at = count; at-- > 0;) {
        const double value = plot.values[at];
        values->append(std::isfinite(value) ? value : 0.0);
        if (plot.reference && value < *plot.reference) {
            values->selectBar(values->count() - 1);
        }
    }
    values->setColor(ink.primary);
    values->setSelectedColor(ink.apart);
    values->setBorderColor(Qt::transparent);
    auto* bars = new QHorizontalBarSeries;
    bars->setBarWidth(0.6);
    bars->append(values);
    return bars;
}

ChartAxes::ValueRange rangeOf(const BarPlot& plot) {
    ChartAxes::ValueRange range{0.0, std::max(plot.reference.value_or(0.0), 0.0)};
    for (const double value : plot.values) {
        if (std::isfinite(value)) {
            range.minimum = std::min(range.minimum, value);
            range.maximum = std::max(range.maximum, value);
        }
    }
    range.maximum += (range.maximum - range.minimum) * labelShare;
    return range;
}

}  // namespace

void add(QChart& chart, const BarPlot& plot, const Chart& texts, const ChartInk& ink) {
    const std::size_t count = std::min(plot.labels.size(), plot.values.size());
    if (count == 0) {
        return;
    }
    QHorizontalBarSeries* bars = barSeries(plot, count, ink);
    chart.addSeries(bars);
    auto* overlay = new ChartOverlay(chart, *bars, ink);
    QStringList names;
    for (std::size_t at = count; at-- > 0;) {
        const double value = plot.values[at];
        const double end = std::isfinite(value) ? std::max(value, 0.0) : 0.0;
        overlay->labels.push_back(
            {{end, static_cast<double>(names.size())}, figureText(value, plot)});
        names << qtText(plot.labels[at]);
    }
    if (plot.reference) {
        overlay->verticalLine = plot.reference;
        overlay->lineLabel = figureText(*plot.reference, plot);
        chart.setMargins(chart.margins() + QMargins(0, referenceMargin, 0, 0));
    }
    QBarCategoryAxis* labels = ChartAxes::categories(names, qtText(texts.yLabel), ink);
    labels->setLineVisible(false);
    ChartAxes::attach(chart, bars, labels, Qt::AlignLeft);
    QValueAxis* axis =
        ChartAxes::value(rangeOf(plot), ChartAxes::Extent::exact, qtText(texts.xLabel), ink);
    ChartAxes::leaveTitleOnly(*axis);
    ChartAxes::attach(chart, bars, axis, Qt::AlignBottom);
}

}  // namespace sorvane::ChartPlots
