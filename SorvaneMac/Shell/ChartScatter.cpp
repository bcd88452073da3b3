#include <algorithm>
#include <cmath>

#include <QImage>
#include <QPaintEngine>
#include <QPainter>

#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartMarks.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"

namespace sorvane::ChartPlots {

namespace {

/// More points are drawn smaller, as one picture, each spot of it once.
constexpr std::size_t manyPoints = 2000;
constexpr double smallPointRadius = 1.8;
/// Spots a unit of the design; finer ones cannot be told apart under a mark.
constexpr double spotsPerUnit = 1.0;
/// Dots a unit of the design where the device has none of its own.
constexpr double dotsOnPaper = 3.0;

void paintFew(QPainter& painter, const ChartPlaces& places, const ScatterPlot& plot, QColor color) {
    color.setAlphaF(0.65F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    for (std::size_t at = 0; at < plot.x.size(); ++at) {
        painter.drawEllipse(places.at(plot.x[at], plot.y[at]), ChartMarks::pointRadius,
                            ChartMarks::pointRadius);
    }
}

/// The middles of the marks, of all points that share a spot the first.
std::vector<QPointF> spots(const ChartPlaces& places, const ScatterPlot& plot) {
    const QRectF area = places.area();
    const auto columns = static_cast<std::size_t>(area.width() * spotsPerUnit) + 2;
    const auto rows = static_cast<std::size_t>(area.height() * spotsPerUnit) + 2;
    std::vector<bool> isCovered(columns * rows);
    std::vector<QPointF> found;
    for (std::size_t at = 0; at < plot.x.size(); ++at) {
        const QPointF inside = places.at(plot.x[at], plot.y[at]) - area.topLeft();
        const double column = std::clamp(inside.x(), 0.0, area.width()) * spotsPerUnit;
        const double row = std::clamp(inside.y(), 0.0, area.height()) * spotsPerUnit;
        const std::size_t spot =
            static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column);
        if (!isCovered[spot]) {
            isCovered[spot] = true;
            found.push_back(inside);
        }
    }
    return found;
}

double dotsPerUnit(const QPainter& painter) {
    const bool isDrawing = painter.paintEngine()->type() == QPaintEngine::SVG;
    return isDrawing ? dotsOnPaper : painter.deviceTransform().m11();
}

/// Copies one mark to all spots, which is quicker than filling a disc for each.
void paintMany(QPainter& painter,
               const ChartPlaces& places,
               const ScatterPlot& plot,
               QColor color) {
    const double dots = dotsPerUnit(painter);
    color.setAlphaF(0.5F);
    const double edge = smallPointRadius + 0.5;
    const auto blank = [dots](QSizeF size) {
        QImage image((size * dots).toSize() + QSize(1, 1), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(dots);
        image.fill(Qt::transparent);
        return image;
    };
    QImage mark = blank({2.0 * edge, 2.0 * edge});
    QPainter markPainter(&mark);
    markPainter.setRenderHint(QPainter::Antialiasing);
    markPainter.setPen(Qt::NoPen);
    markPainter.setBrush(color);
    markPainter.drawEllipse(QPointF(edge, edge), smallPointRadius, smallPointRadius);
    markPainter.end();

    QImage cloud = blank(places.area().size() + QSizeF(2.0 * edge, 2.0 * edge));
    QPainter cloudPainter(&cloud);
    for (const QPointF& spot : spots(places, plot)) {
        cloudPainter.drawImage(spot, mark);
    }
    cloudPainter.end();
    const QSizeF size = QSizeF(cloud.size()) / dots;
    painter.drawImage(QRectF(places.area().topLeft() - QPointF(edge, edge), size), cloud);
}

ScatterPlot withPlaces(const ScatterPlot& plot) {
    ScatterPlot placed{.x = {}, .y = {}, .line = plot.line};
    const std::size_t count = std::min(plot.x.size(), plot.y.size());
    placed.x.reserve(count);
    placed.y.reserve(count);
    for (std::size_t at = 0; at < count; ++at) {
        if (ChartRange::hasPlace(plot.x[at]) && ChartRange::hasPlace(plot.y[at])) {
            placed.x.push_back(plot.x[at]);
            placed.y.push_back(plot.y[at]);
        }
    }
    return placed;
}

void paintLine(QPainter& painter,
               const ChartPlaces& places,
               const ScatterPlot::Line& line,
               const ValueRange& across) {
    const auto place = [&](double x) {
        return places.at(x, line.intercept + line.slope * x);
    };
    painter.save();
    painter.setClipRect(places.area());
    painter.drawLine(place(across.minimum), place(across.maximum));
    painter.restore();
}

}  // namespace

void add(ChartCanvas& canvas, const ScatterPlot& plot) {
    ScatterPlot placed = withPlaces(plot);
    if (placed.x.empty()) {
        return;
    }
    ValueRange across = ChartRange::nothing();
    ChartRange::include(across, placed.x);
    across = ChartRange::padded(across);
    ValueRange upright = ChartRange::nothing();
    ChartRange::include(upright, placed.y);
    QAbstractSeries& scale = canvas.addScale();
    ChartAxes::addNumbers(canvas, scale, {.range = across, .extent = ChartAxes::Extent::exact},
                          Qt::AlignBottom);
    ChartAxes::addNumbers(canvas, scale, {.range = ChartRange::padded(upright)}, Qt::AlignLeft);
    canvas.paint(&scale, [placed = std::move(placed), across, ink = canvas.ink](
                             QPainter& painter, const ChartPlaces& places) {
        const bool isMany = placed.x.size() > manyPoints;
        isMany ? paintMany(painter, places, placed, ink.primary)
               : paintFew(painter, places, placed, ink.primary);
        if (placed.line) {
            painter.setPen(QPen(ink.apart, 2.0));
            paintLine(painter, places, *placed.line, across);
        }
    });
}

}  // namespace sorvane::ChartPlots
