#include <algorithm>
#include <cmath>
#include <functional>

#include <QBarSet>
#include <QChart>
#include <QFontMetricsF>
#include <QHorizontalBarSeries>
#include <QPainter>
#include <QValueAxis>

#include "SorvaneCore/Numerics/LeadingZero.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

/// Room beyond the longest bar on either side for the figure at its end.
constexpr double labelShare = 0.16;
/// Room above the plot for the figure of the reference line.
constexpr int referenceMargin = 20;
constexpr double figureGap = 5.0;

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
    return qtText(isBounded(plot) ? NumberText::withoutLeadingZero(std::move(text)) : text);
}

/// The bars from below to above, since the axis counts so and the first label stands on top.
QHorizontalBarSeries* barSeries(const BarPlot& plot, const ChartInk& ink) {
    auto* values = new QBarSet("");
    for (std::size_t at = plot.values.size(); at-- > 0;) {
        const double value = plot.values[at];
        values->append(ChartRange::hasPlace(value) ? value : 0.0);
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

/// Whether the bar goes to the left of 0, and its figure stands there.
bool pointsLeft(double value) {
    return ChartRange::hasPlace(value) && value < 0.0;
}

ValueRange rangeOf(const BarPlot& plot) {
    ValueRange range{0.0, 0.0};
    ChartRange::include(range, plot.values);
    ChartRange::include(range, plot.reference.value_or(0.0));
    range = range.minimum == range.maximum ? ValueRange{0.0, 1.0} : range;
    const double room = (range.maximum - range.minimum) * labelShare;
    const bool standsRight = std::ranges::any_of(plot.values, std::not_fn(pointsLeft));
    range.maximum += standsRight ? room : 0.0;
    range.minimum -= std::ranges::any_of(plot.values, pointsLeft) ? room : 0.0;
    return range;
}

void paintFigures(QPainter& painter,
                  const ChartPlaces& places,
                  const BarPlot& plot,
                  const ChartInk& ink) {
    const std::size_t count = plot.values.size();
    const double slot = places.area().height() / static_cast<double>(count);
    QFont font = ink.font;
    font.setPixelSize(std::clamp(static_cast<int>(slot * 0.78), 1, ink.font.pixelSize()));
    painter.setFont(font);
    painter.setPen(ink.text);
    const QFontMetricsF metrics(font);
    const double halfCap = metrics.capHeight() / 2.0;
    for (std::size_t at = 0; at < count; ++at) {
        const double value = plot.values[at];
        const double end = ChartRange::hasPlace(value) ? value : 0.0;
        const QPointF place = places.at(end, ChartAxes::slotFromAbove(at, count));
        const QString figure = figureText(value, plot);
        const double shift =
            pointsLeft(value) ? -figureGap - metrics.horizontalAdvance(figure) : figureGap;
        painter.drawText(place + QPointF(shift, halfCap), figure);
    }
}

/// Where bars go to both sides, their common base is drawn.
void paintZero(QPainter& painter,
               const ChartPlaces& places,
               const BarPlot& plot,
               const ChartInk& ink) {
    if (std::ranges::any_of(plot.values, pointsLeft)) {
        const QRectF area = places.area();
        const double x = places.at(0.0, 0.0).x();
        painter.setPen(QPen(ink.quiet, 1.0));
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
}

void paintReference(QPainter& painter,
                    const ChartPlaces& places,
                    const BarPlot& plot,
                    const ChartInk& ink) {
    const QRectF area = places.area();
    const double x = places.at(*plot.reference, 0.0).x();
    painter.setPen(QPen(ink.text, 1.2, Qt::DashLine));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    painter.setFont(ink.font);
    painter.setPen(ink.quiet);
    const QRectF above(x - 40.0, area.top() - 18.0, 80.0, 16.0);
    painter.drawText(above, Qt::AlignCenter, figureText(*plot.reference, plot));
}

}  // namespace

void add(ChartCanvas& canvas, const BarPlot& given) {
    BarPlot plot = given;
    const std::size_t count = std::min(plot.labels.size(), plot.values.size());
    if (count == 0) {
        return;
    }
    plot.labels.resize(count);
    plot.values.resize(count);
    QHorizontalBarSeries* bars = barSeries(plot, canvas.ink);
    canvas.chart.addSeries(bars);
    ChartAxes::addCategories(canvas, *bars, plot.labels, Qt::AlignLeft);
    ChartAxes::leaveTitleOnly(ChartAxes::addNumbers(
        canvas, *bars, {.range = rangeOf(plot), .extent = ChartAxes::Extent::exact},
        Qt::AlignBottom));
    if (plot.reference) {
        canvas.chart.setMargins(canvas.chart.margins() + QMargins(0, referenceMargin, 0, 0));
    }
    canvas.paint(bars, [plot, ink = canvas.ink](QPainter& painter, const ChartPlaces& places) {
        paintZero(painter, places, plot, ink);
        paintFigures(painter, places, plot, ink);
        if (plot.reference) {
            paintReference(painter, places, plot, ink);
        }
    });
}

}  // namespace sorvane::ChartPlots
