#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>

#include "SorvaneCore/Numerics/LeadingZero.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

constexpr double keyWidth = 120.0;
constexpr double keyHeight = 10.0;
constexpr double figureAir = 3.0;

ValueRange rangeOf(const HeatMap& plot) {
    if (plot.range) {
        return *plot.range;
    }
    ValueRange range = ChartRange::nothing();
    ChartRange::include(range, plot.values);
    range = ChartRange::drawable(range);
    if (plot.palette == HeatMap::Palette::diverging) {
        const double furthest = std::max(std::abs(range.minimum), std::abs(range.maximum));
        range = {-furthest, furthest};
    }
    return range;
}

/// From -1 to 1 with 0 in the middle, or from 0 to 1.
double shareOf(double value, const ValueRange& range, HeatMap::Palette palette) {
    if (palette == HeatMap::Palette::sequential) {
        const double span = range.maximum - range.minimum;
        return span > 0.0 ? std::clamp((value - range.minimum) / span, 0.0, 1.0) : 0.0;
    }
    const double end = value < 0.0 ? -range.minimum : range.maximum;
    return end > 0.0 ? std::clamp(value / end, -1.0, 1.0) : 0.0;
}

bool isBounded(const ValueRange& range) {
    return range.minimum >= -1.0 && range.maximum <= 1.0;
}

QString figureText(double value, const ValueRange& range, int decimals) {
    std::string text = NumberText::fixed(value, decimals);
    return qtText(isBounded(range) ? NumberText::withoutLeadingZero(std::move(text)) : text);
}

/// The largest type in which every figure stands within its cell; absent where that is too small.
std::optional<QFont> figureFont(const HeatMap& plot,
                                const ValueRange& range,
                                QSizeF cell,
                                const QFont& font) {
    constexpr int smallest = 7;
    for (QFont fitting = font; fitting.pixelSize() >= std::min(smallest, font.pixelSize());
         fitting.setPixelSize(fitting.pixelSize() - 1)) {
        const QFontMetricsF metrics(fitting);
        double widest = 0.0;
        for (const double value : plot.values) {
            if (ChartRange::hasPlace(value)) {
                const QString text = figureText(value, range, plot.decimals);
                widest = std::max(widest, metrics.horizontalAdvance(text));
            }
        }
        if (widest + figureAir <= cell.width() && metrics.ascent() <= cell.height()) {
            return fitting;
        }
    }
    return std::nullopt;
}

void paintCells(QPainter& painter,
                const ChartPlaces& places,
                const HeatMap& plot,
                const ChartInk& ink) {
    const ValueRange range = rangeOf(plot);
    const QRectF area = places.area();
    const QSizeF cell(area.width() / static_cast<double>(plot.columns.size()),
                      area.height() / static_cast<double>(plot.rows.size()));
    const std::optional<QFont> font = figureFont(plot, range, cell, ink.font);
    painter.setFont(font.value_or(ink.font));
    const double gap = std::min(cell.width(), cell.height()) > 8.0 ? 1.0 : 0.0;
    for (std::size_t at = 0; at < plot.values.size(); ++at) {
        const double value = plot.values[at];
        const auto row = static_cast<double>(at / plot.columns.size());
        const auto column = static_cast<double>(at % plot.columns.size());
        const QRectF place(area.left() + column * cell.width(), area.top() + row * cell.height(),
                           cell.width() - gap, cell.height() - gap);
        if (!ChartRange::hasPlace(value)) {
            painter.setPen(QPen(ink.quiet, 1.0));
            painter.drawLine(place.bottomLeft(), place.topRight());
            continue;
        }
        const QColor fill = ink.shade(shareOf(value, range, plot.palette));
        painter.fillRect(place, fill);
        if (font) {
            painter.setPen(ChartInk::textOn(fill));
            painter.drawText(place, Qt::AlignCenter, figureText(value, range, plot.decimals));
        }
    }
}

/// The strip of colours with its ends.
void addKey(ChartCanvas& canvas, const HeatMap& plot) {
    const ValueRange range = rangeOf(plot);
    const bool isDiverging = plot.palette == HeatMap::Palette::diverging;
    const auto paintStrip = [ink = canvas.ink, isDiverging](QPainter& painter, QRectF place) {
        QLinearGradient colors(place.topLeft(), place.topRight());
        colors.setColorAt(0.0, ink.shade(isDiverging ? -1.0 : 0.0));
        if (isDiverging) {
            colors.setColorAt(0.5, ink.shade(0.0));
        }
        colors.setColorAt(1.0, ink.shade(1.0));
        QRectF strip(place.left(), 0.0, place.width(), keyHeight);
        strip.moveTop(place.center().y() - keyHeight / 2.0);
        painter.setPen(QPen(ink.grid, 1.0));
        painter.setBrush(colors);
        painter.drawRect(strip);
        painter.setBrush(Qt::NoBrush);
    };
    canvas.legend.push_back({.text = figureText(range.minimum, range, plot.decimals), .mark = {}});
    canvas.legend.push_back({.text = figureText(range.maximum, range, plot.decimals),
                             .markWidth = keyWidth,
                             .mark = paintStrip});
}

}  // namespace

void add(ChartCanvas& canvas, const HeatMap& given) {
    if (given.rows.empty() || given.columns.empty()) {
        return;
    }
    HeatMap plot = given;
    plot.values.resize(plot.rows.size() * plot.columns.size(), std::nan(""));
    QAbstractSeries& scale = canvas.addScale();
    ChartAxes::addCategories(canvas, scale, plot.columns, Qt::AlignBottom);
    ChartAxes::addCategories(canvas, scale, plot.rows, Qt::AlignLeft);
    addKey(canvas, plot);
    canvas.paint(&scale, [plot = std::move(plot), ink = canvas.ink](QPainter& painter,
                                                                    const ChartPlaces& places) {
        paintCells(painter, places, plot, ink);
    });
}

}  // namespace sorvane::ChartPlots
