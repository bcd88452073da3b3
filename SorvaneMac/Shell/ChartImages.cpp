#include "SorvaneMac/Shell/ChartImages.h"

#include <algorithm>
#include <cmath>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include "SorvaneMac/Screens/ChartDescription.h"
#include "SorvaneMac/Shell/ChartDrawing.h"
#include "SorvaneMac/Shell/ChartSizes.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

constexpr double dotsPerInch = 300.0;
constexpr double inchesInMeter = 1000.0 / 25.4;
/// Type of 12 design units reads as 9 points on paper at this many units an inch.
constexpr double unitsPerInch = 100.0;
constexpr int paperWidth = 650;
/// A page with one-inch margins keeps room for a caption below.
constexpr int paperHeight = 750;
/// Paper gives a plot a little more height than the window.
constexpr int addedHeight = 40;

QSize paperSize(const Chart& chart) {
    return {paperWidth, std::min(ChartSizes::suitableHeight(chart) + addedHeight, paperHeight)};
}

std::vector<std::uint8_t> bytesOf(const QByteArray& bytes) {
    return {bytes.begin(), bytes.end()};
}

}  // namespace

std::vector<std::uint8_t> chartPng(const Chart& chart) {
    constexpr double zoom = dotsPerInch / unitsPerInch;
    const QSize size = paperSize(chart);
    QImage image(size * zoom, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(static_cast<int>(std::lround(dotsPerInch * inchesInMeter)));
    image.setDotsPerMeterY(image.dotsPerMeterX());
    ChartDrawing drawing(chart, ChartInk::print());
    drawing.resize(size);
    {
        QPainter painter(&image);
        painter.scale(zoom, zoom);
        drawing.paint(painter);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytesOf(bytes);
}

std::vector<std::uint8_t> chartSvg(const Chart& chart) {
    const QSize size = paperSize(chart);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setSize(size);
    svg.setViewBox(QRect({0, 0}, size));
    svg.setResolution(static_cast<int>(unitsPerInch));
    // Both are written as they stand.
    svg.setTitle(qtText(chart.title).toHtmlEscaped());
    svg.setDescription(qtText(chartDescription(chart)).toHtmlEscaped());
    ChartDrawing drawing(chart, ChartInk::print());
    drawing.resize(size);
    QPainter painter(&svg);
    drawing.paint(painter);
    painter.end();
    return bytesOf(bytes);
}

}  // namespace sorvane
