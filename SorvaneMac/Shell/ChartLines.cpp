#include <algorithm>
#include <cmath>
#include <limits>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartMarks.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

using Join = LinePlot::Join;
using Series = LinePlot::Series;

/// More points than this carry no markers, which would hide the line.
constexpr std::size_t mostMarkers = 60;
/// Parts of a slot by which series with interval bars stand beside each other, at most.
constexpr double widestDodge = 0.14;
constexpr double strokeLength = 4.0;
constexpr double bandOpacity = 0.16;
constexpr double markRadius = 8.0;
/// A series of more separate lines than this has thin ones, so that they do not hide each other.
constexpr std::size_t fewLines = 8;
constexpr double thinLine = 1.0;
constexpr double thinOpacity = 0.6;

double valueAt(const std::vector<double>& values, std::size_t at) {
    return at < values.size() ? values[at] : std::nan("");
}

bool hasIntervals(const Series& series) {
    return !series.lower.empty() && !series.upper.empty();
}

/// As many points as there are both x and y; beside each other where bars would hide bars.
LinePlot prepared(const LinePlot& given) {
    LinePlot plot = given;
    const bool dodges = !plot.categories.empty() && plot.interval == LinePlot::Interval::bars &&
                        std::ranges::any_of(plot.series, hasIntervals);
    const double count = static_cast<double>(plot.series.size());
    const double step = dodges ? std::min(widestDodge, 0.6 / count) : 0.0;
    double offset = -step * (count - 1.0) / 2.0;
    for (Series& series : plot.series) {
        series.x.resize(std::min(series.x.size(), series.y.size()));
        series.y.resize(series.x.size());
        for (double& x : series.x) {
            x += offset;
        }
        offset += step;
    }
    return plot;
}

ValueRange acrossOf(const LinePlot& plot) {
    ValueRange range = ChartRange::nothing();
    for (const Series& series : plot.series) {
        ChartRange::include(range, series.x);
        ChartRange::include(range, series.strokes);
    }
    // A curve of steps starts on the axis; points keep off it.
    return plot.join == Join::steps ? ChartRange::drawable(range) : ChartRange::padded(range);
}

ValueRange uprightOf(const LinePlot& plot) {
    if (plot.yRange) {
        return *plot.yRange;
    }
    ValueRange range = ChartRange::nothing();
    ChartRange::include(range, plot.reference.value_or(std::nan("")));
    for (const Series& series : plot.series) {
        ChartRange::include(range, series.y);
        ChartRange::include(range, series.lower);
        ChartRange::include(range, series.upper);
    }
    return ChartRange::padded(range);
}

bool countsAcross(const LinePlot& plot) {
    return std::ranges::all_of(plot.series, [](const Series& series) {
        return std::ranges::all_of(series.x, [](double x) { return x == std::floor(x); });
    });
}

/// The points without those that have no place; an empty run stands between two runs.
using Runs = std::vector<std::vector<QPointF>>;

Runs runsOf(const std::vector<double>& x, const std::vector<double>& y, Join join) {
    Runs runs(1);
    for (std::size_t at = 0; at < x.size(); ++at) {
        const double value = valueAt(y, at);
        if (!ChartRange::hasPlace(x[at]) || !ChartRange::hasPlace(value)) {
            runs.emplace_back();
            continue;
        }
        std::vector<QPointF>& run = runs.back();
        if (join == Join::steps && !run.empty()) {
            run.emplace_back(x[at], run.back().y());
        }
        run.emplace_back(x[at], value);
    }
    return runs;
}

QPolygonF placed(const std::vector<QPointF>& run, const ChartPlaces& places) {
    QPolygonF line;
    for (const QPointF& point : run) {
        line << places.at(point.x(), point.y());
    }
    return line;
}

/// The area between the limits, in pieces where one of them is missing.
void paintBand(QPainter& painter,
               const ChartPlaces& places,
               const Series& series,
               const LinePlot& plot,
               QColor color) {
    std::vector<double> lower = series.lower;
    std::vector<double> upper = series.upper;
    for (std::size_t at = 0; at < series.x.size(); ++at) {
        const bool isWhole =
            ChartRange::hasPlace(valueAt(lower, at)) && ChartRange::hasPlace(valueAt(upper, at));
        if (!isWhole && at < lower.size() && at < upper.size()) {
            lower[at] = upper[at] = std::nan("");
        }
    }
    const Runs below = runsOf(series.x, lower, plot.join);
    const Runs above = runsOf(series.x, upper, plot.join);
    color.setAlphaF(static_cast<float>(bandOpacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    for (std::size_t at = 0; at < below.size() && at < above.size(); ++at) {
        QPolygonF area = placed(above[at], places);
        QPolygonF back = placed(below[at], places);
        std::ranges::reverse(back);
        area += back;
        painter.drawPolygon(area);
    }
    painter.setBrush(Qt::NoBrush);
}

void paintBars(QPainter& painter,
               const ChartPlaces& places,
               const Series& series,
               const QColor& color) {
    for (std::size_t at = 0; at < series.x.size(); ++at) {
        const double lower = valueAt(series.lower, at);
        const double upper = valueAt(series.upper, at);
        if (ChartRange::hasPlace(lower) && ChartRange::hasPlace(upper)) {
            ChartMarks::paintWhisker(painter, places.at(series.x[at], lower),
                                     places.at(series.x[at], upper), color);
        }
    }
}

/// The height of a curve of steps at x; NaN before it starts.
double heightAt(const Series& series, double x) {
    double height = std::nan("");
    for (std::size_t at = 0; at < series.x.size() && series.x[at] <= x; ++at) {
        height = series.y[at];
    }
    return height;
}

void paintStrokes(QPainter& painter,
                  const ChartPlaces& places,
                  const Series& series,
                  const QColor& color) {
    painter.setPen(QPen(color, 1.4));
    for (const double x : series.strokes) {
        const double y = heightAt(series, x);
        if (ChartRange::hasPlace(x) && ChartRange::hasPlace(y)) {
            const QPointF place = places.at(x, y);
            painter.drawLine(place - QPointF(0.0, strokeLength),
                             place + QPointF(0.0, strokeLength));
        }
    }
}

QPen thinPen(const ChartMarks::SeriesLook& look) {
    QPen pen = ChartMarks::linePen(look);
    QColor color = look.color;
    color.setAlphaF(static_cast<float>(thinOpacity));
    pen.setColor(color);
    pen.setWidthF(thinLine);
    return pen;
}

void paintSeries(QPainter& painter,
                 const ChartPlaces& places,
                 const LinePlot& plot,
                 const Series& series,
                 const ChartMarks::SeriesLook& look) {
    if (plot.interval == LinePlot::Interval::band) {
        paintBand(painter, places, series, plot, look.color);
    } else {
        paintBars(painter, places, series, look.color);
    }
    const Runs runs = runsOf(series.x, series.y, plot.join);
    painter.setPen(runs.size() > fewLines ? thinPen(look) : ChartMarks::linePen(look));
    for (const std::vector<QPointF>& run : runs) {
        if (plot.join != Join::none && run.size() > 1) {
            painter.drawPolyline(placed(run, places));
        }
    }
    paintStrokes(painter, places, series, look.color);
    if (!plot.markers || series.x.size() > mostMarkers) {
        return;
    }
    for (std::size_t at = 0; at < series.x.size(); ++at) {
        if (ChartRange::hasPlace(series.x[at]) && ChartRange::hasPlace(series.y[at])) {
            ChartMarks::paintMarker(painter, look, places.at(series.x[at], series.y[at]));
        }
    }
}

std::ptrdiff_t pointsInside(const LinePlot& plot, const ChartPlaces& places, const QRectF& place) {
    std::ptrdiff_t count = 0;
    for (const Series& series : plot.series) {
        for (std::size_t at = 0; at < series.x.size(); ++at) {
            count += place.contains(places.at(series.x[at], series.y[at])) ? 1 : 0;
        }
    }
    return count;
}

/// Above or below an end of the line at a height, where the fewest points are near.
QRectF freestPlace(const LinePlot& plot, const ChartPlaces& places, double y, const QSizeF& size) {
    const double right = places.area().right() - size.width();
    const double left = places.area().left();
    QRectF best;
    std::ptrdiff_t fewest = std::numeric_limits<std::ptrdiff_t>::max();
    for (const QPointF corner : {QPointF(right, y - size.height()), QPointF(right, y),
                                 QPointF(left, y - size.height()), QPointF(left, y)}) {
        const QRectF place(corner, size);
        const std::ptrdiff_t near = pointsInside(
            plot, places, place.adjusted(-markRadius, -markRadius, markRadius, markRadius));
        if (near < fewest) {
            fewest = near;
            best = place;
        }
    }
    return best;
}

void paintReference(QPainter& painter,
                    const ChartPlaces& places,
                    const LinePlot& plot,
                    const ChartInk& ink) {
    const QRectF area = places.area();
    const double y = places.at(0.0, *plot.reference).y();
    painter.setPen(QPen(ink.quiet, 1.2, Qt::DashLine));
    painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    painter.setFont(ink.font);
    const QFontMetricsF metrics(ink.font);
    const QString name =
        metrics.elidedText(qtText(plot.referenceName), Qt::ElideRight, area.width());
    const QSizeF size(metrics.horizontalAdvance(name) + 4.0, metrics.height());
    painter.drawText(freestPlace(plot, places, y, size), Qt::AlignCenter, name);
}

/// A ring around the marked point of the first series, with its name to the upper right on a ground
/// of its own, so that no line runs through it.
void paintMarked(QPainter& painter,
                 const ChartPlaces& places,
                 const LinePlot& plot,
                 const ChartInk& ink) {
    const Series& series = plot.series.front();
    const auto found = std::ranges::find(series.x, *plot.marked);
    if (found == series.x.end()) {
        return;
    }
    const QPointF place =
        places.at(*found, series.y[static_cast<std::size_t>(found - series.x.begin())]);
    painter.setPen(QPen(ink.apart, 1.8));
    painter.drawEllipse(place, markRadius, markRadius);
    painter.setFont(ink.font);
    painter.setPen(ink.text);
    const QString name = qtText(plot.markedName);
    QRectF text = QFontMetricsF(ink.font).boundingRect(name).adjusted(-2.0, 0.0, 2.0, 0.0);
    text.moveBottomLeft(place + QPointF(markRadius, -markRadius));
    text.moveRight(std::min(text.right(), places.area().right()));
    painter.fillRect(text, ink.ground);
    painter.drawText(text, Qt::AlignCenter, name);
}

void paintLines(QPainter& painter,
                const ChartPlaces& places,
                const LinePlot& plot,
                const ChartInk& ink) {
    painter.save();
    painter.setClipRect(places.area().adjusted(-6.0, -6.0, 6.0, 6.0));
    for (std::size_t at = 0; at < plot.series.size(); ++at) {
        paintSeries(painter, places, plot, plot.series[at], ChartMarks::lookOf(ink, at));
    }
    painter.restore();
    if (plot.reference) {
        paintReference(painter, places, plot, ink);
    }
    if (plot.marked) {
        paintMarked(painter, places, plot, ink);
    }
}

}  // namespace

void add(ChartCanvas& canvas, const LinePlot& given) {
    LinePlot plot = prepared(given);
    if (std::ranges::all_of(plot.series, [](const Series& series) { return series.x.empty(); })) {
        return;
    }
    QAbstractSeries& scale = canvas.addScale();
    if (plot.categories.empty()) {
        ChartAxes::addNumbers(canvas, scale,
                              {.range = acrossOf(plot),
                               .extent = ChartAxes::Extent::exact,
                               .wholeNumbers = countsAcross(given)},
                              Qt::AlignBottom);
    } else {
        ChartAxes::addCategories(canvas, scale, plot.categories, Qt::AlignBottom);
    }
    ChartAxes::addNumbers(canvas, scale, {.range = uprightOf(plot)}, Qt::AlignLeft);
    for (std::size_t at = 0; plot.series.size() > 1 && at < plot.series.size(); ++at) {
        canvas.legend.push_back(ChartMarks::legendEntry(ChartMarks::lookOf(canvas.ink, at),
                                                        qtText(plot.series[at].name),
                                                        plot.join != Join::none, plot.markers));
    }
    canvas.paint(&scale, [plot = std::move(plot), ink = canvas.ink](QPainter& painter,
                                                                    const ChartPlaces& places) {
        paintLines(painter, places, plot, ink);
    });
}

}  // namespace sorvane::ChartPlots
