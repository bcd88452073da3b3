#include "SorvaneMac/Shell/ChartDrawing.h"

#include <cstdlib>
#include <limits>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/ChartSizes.h"
#include "SorvaneMac/Shell/Theme.h"
#include "Tests/Shell/ChartGallery.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

QImage drawn(const Chart& chart, const ChartInk& ink, QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(ink.ground);
    ChartDrawing drawing(chart, ink);
    drawing.resize(size);
    QPainter painter(&image);
    drawing.paint(painter);
    return image;
}

QSize suitable(const Chart& chart, const ChartInk& ink) {
    return {ChartSizes::suitableWidth(chart, ink.font), ChartSizes::suitableHeight(chart)};
}

int inked(const QImage& image, const QRect& place, const QColor& ground) {
    int found = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            found += image.pixelColor(x, y) != ground ? 1 : 0;
        }
    }
    return found;
}

/// What lies on the outermost pixels is cut by the edge of the picture.
int inkedOnEdge(const QImage& image, const QColor& ground) {
    const QRect whole = image.rect();
    return inked(image, whole, ground) - inked(image, whole.adjusted(1, 1, -1, -1), ground);
}

TEST(ChartDrawing, KeepsEveryPlotInsideOfItsPictureInLightAndDark) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        Theme::apply(offscreenApplication(), appearance);
        const ChartInk ink = ChartInk::screen();
        for (const auto& [name, chart] : chartGallery()) {
            const QSize wanted = suitable(chart, ink);
            for (const QSize size : {wanted, QSize(260, wanted.height()), wanted * 2}) {
                const QImage image = drawn(chart, ink, size);
                EXPECT_GT(inked(image, image.rect(), ink.ground), 500) << name;
                EXPECT_EQ(inkedOnEdge(image, ink.ground), 0) << name << " at " << size.width();
            }
        }
    }
    Theme::apply(offscreenApplication(), Appearance::light);
}

TEST(ChartDrawing, KeepsManyAndLongNamesInsideOfThePicture) {
    const std::string name = "A rather long name of a category that somebody asked about, number ";
    BarPlot bars{.reference = 0.3};
    GroupedBarPlot groups;
    IntervalPlot rows;
    HeatMap map{.palette = HeatMap::Palette::sequential};
    for (int at = 0; at < 60; ++at) {
        bars.labels.push_back(name);
        bars.values.push_back(at / 60.0);
        rows.rows.push_back({name, at - 1.0, at - 2.0, at + 0.5});
    }
    groups.categories = map.rows = map.columns = bars.labels;
    groups.series = {{name, bars.values}, {"other", bars.values}};
    map.values.assign(3600, 0.5);
    const ChartInk ink = ChartInk::print();
    for (const Chart& chart :
         {Chart{.plot = bars}, Chart{.xLabel = name, .plot = groups}, Chart{.plot = rows},
          Chart{.yLabel = name, .plot = map}, Chart{.plot = factorModel(8, 5)}}) {
        const QImage image = drawn(chart, ink, suitable(chart, ink));
        EXPECT_GT(inked(image, image.rect(), ink.ground), 1000);
        EXPECT_EQ(inkedOnEdge(image, ink.ground), 0) << chart.plot.index();
    }
}

TEST(ChartDrawing, DrawsWhatIsThereOfBrokenValues) {
    using Series = LinePlot::Series;
    const Chart charts[] = {
        {.plot = HistogramPlot{}},
        {.plot = HistogramPlot{.edges = {4.0, 4.0}, .counts = {0}}},
        {.plot = BoxPlot{}},
        {.plot = BoxPlot{.boxes = {{"a", nan, nan, nan, nan, nan, {inf}}}}},
        {.plot = ScatterPlot{}},
        {.plot = ScatterPlot{.x = {5.0}, .y = {3.0}, .line = std::nullopt}},
        {.plot = ScatterPlot{.x = {nan, 1.0, 2.0, 1e308}, .y = {1.0, inf, 3.0, -1e308}}},
        {.plot = BarPlot{.labels = {"a", "a"}, .values = {nan, -inf}}},
        {.plot = GroupedBarPlot{.categories = {"a", "b"}, .series = {{"s", {nan}}}}},
        {.plot = IntervalPlot{.rows = {{"a", nan, nan, nan}, {"b", 1.0, -inf, inf}}}},
        {.plot = LinePlot{.series = {Series{}, Series{.x = {1, 2, 3}, .y = {1, nan}}}}},
        {.plot = LinePlot{.series = {{.x = {0, 1}, .y = {1, inf}, .lower = {nan}, .upper = {2, 3}}},
                          .join = LinePlot::Join::steps,
                          .interval = LinePlot::Interval::band,
                          .marked = 9.0}},
        {.plot = HeatMap{.rows = {"a"}, .columns = {"b", "c"}, .values = {nan}}},
        {.plot = Dendrogram{.leaves = {"a"}}},
        {.plot = Dendrogram{.leaves = {"a", "b"}, .merges = {{0, 7, 1.0}}}},
        {.plot = Dendrogram{.leaves = {"a", "b"}, .merges = {{0, 1, nan}}}},
        {.plot = PathDiagram{.nodes = {{"a"}}, .paths = {{.from = 0, .to = 9}, {.from = 0}}}},
        {.plot = PathDiagram{.nodes = {{"a"}, {"b"}}, .paths = {{0, 1}, {1, 0}}}},
    };
    const ChartInk ink = ChartInk::print();
    for (const Chart& chart : charts) {
        const QImage image = drawn(chart, ink, {400, 250});
        EXPECT_GT(inked(image, image.rect(), ink.ground), 0) << &chart - charts;
        EXPECT_EQ(inkedOnEdge(image, ink.ground), 0) << &chart - charts;
    }
}

/// Whether two colours are the same but for smoothed edges.
bool isNear(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
               std::abs(a.blue() - b.blue()) <
           150;
}

/// How many columns of the picture a colour reaches, below the legend.
int columnsWith(const QImage& image, const QColor& color) {
    int found = 0;
    for (int x = 0; x < image.width(); ++x) {
        bool isThere = false;
        for (int y = 40; y < image.height(); ++y) {
            isThere = isThere || isNear(image.pixelColor(x, y), color);
        }
        found += isThere ? 1 : 0;
    }
    return found;
}

TEST(ChartDrawing, TellsTwoStrataApartByMoreThanColour) {
    using Series = LinePlot::Series;
    const ChartInk ink = ChartInk::print();
    const LinePlot plot{.series = {Series{.name = "a", .x = {0.0, 10.0}, .y = {2.0, 2.0}},
                                   Series{.name = "b", .x = {0.0, 10.0}, .y = {1.0, 1.0}}},
                        .join = LinePlot::Join::steps,
                        .markers = false};
    const QImage image = drawn({.plot = plot}, ink, {400, 250});
    const int solid = columnsWith(image, ink.seriesColor(0));
    const int dashed = columnsWith(image, ink.seriesColor(1));
    EXPECT_GT(solid, 300);
    EXPECT_GT(dashed, 150);
    EXPECT_LT(dashed, solid * 9 / 10);
}

}  // namespace
}  // namespace sorvane
