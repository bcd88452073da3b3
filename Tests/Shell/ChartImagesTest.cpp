#include "SorvaneMac/Shell/ChartImages.h"

#include <cmath>
#include <limits>

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/ChartInk.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

QImage drawn(const Chart& chart) {
    offscreenApplication();
    const std::vector<std::uint8_t> png = chartPng(chart);
    return QImage::fromData(png.data(), static_cast<int>(png.size()), "PNG");
}

int count(const QImage& image, const QColor& color) {
    int found = 0;
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3) {
            found += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return found;
}

Chart chartOf(decltype(Chart::plot) plot) {
    Chart chart;
    chart.title = "Title";
    chart.xLabel = "x";
    chart.yLabel = "y";
    chart.plot = std::move(plot);
    return chart;
}

TEST(ChartImages, DrawsEveryPlotForPaperAt300Dots) {
    const Chart charts[] = {
        chartOf(HistogramPlot{.edges = {0.0, 1.0, 2.0}, .counts = {3, 7}}),
        chartOf(BoxPlot{.boxes = {{.label = "a",
                                   .lowerWhisker = 1.0,
                                   .firstQuartile = 2.0,
                                   .median = 3.0,
                                   .thirdQuartile = 4.0,
                                   .upperWhisker = 5.0,
                                   .outliers = {9.0}}}}),
        chartOf(ScatterPlot{.x = {1.0, 2.0}, .y = {2.0, 4.0}, .line = ScatterPlot::Line{0.0, 2.0}}),
        chartOf(BarPlot{.labels = {"a", "b"}, .values = {0.5, nan}}),
    };
    const ChartInk ink = ChartInk::print();
    for (const Chart& chart : charts) {
        const QImage image = drawn(chart);
        EXPECT_EQ(image.width(), 1950);
        EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 300.0, 0.5);
        EXPECT_GT(count(image, Qt::white), 1000);
        EXPECT_GT(
            count(image, ink.primary) + count(image, ink.primaryFill) + count(image, ink.apart), 5);
        const std::vector<std::uint8_t> svg = chartSvg(chart);
        EXPECT_NE(std::string(svg.begin(), svg.end()).find("<svg"), std::string::npos);
    }
}

TEST(ChartImages, SetsBarsBelowTheReferenceApart) {
    BarPlot bars{.labels = {"a", "b"}, .values = {0.5, 0.6}, .reference = 0.3};
    const QColor apart = ChartInk::print().apart;
    EXPECT_EQ(count(drawn(chartOf(bars)), apart), 0);
    bars.values = {0.5, 0.2};
    EXPECT_GT(count(drawn(chartOf(bars)), apart), 100);
}

TEST(ChartImages, DrawsEmptyAndConstantPlots) {
    for (const Chart& chart :
         {chartOf(HistogramPlot{}), chartOf(BoxPlot{}), chartOf(ScatterPlot{}), chartOf(BarPlot{}),
          chartOf(ScatterPlot{.x = {5.0, 5.0}, .y = {nan, 1.0}, .line = std::nullopt}),
          chartOf(HistogramPlot{.edges = {4.0, 4.0}, .counts = {0}})}) {
        EXPECT_FALSE(drawn(chart).isNull());
    }
}

}  // namespace
}  // namespace sorvane
