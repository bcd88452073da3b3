#include "SorvaneMac/Screens/ChartDescription.h"

#include <limits>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(ChartDescription, SaysInASentenceWhatEachPlotShows) {
    using Series = LinePlot::Series;
    const std::pair<Chart, const char*> cases[] = {
        {{.xLabel = "age", .plot = HistogramPlot{.edges = {20, 25, 30}, .counts = {9, 4}}},
         "Histogram of age with 2 bars, highest between 20 and 25."},
        {{.xLabel = "group", .yLabel = "score", .plot = BoxPlot{{{"a", 1, 2, 3, 4, 5, {9}}}}},
         "Box plot of score by group: a with median 3, quartiles 2 and 4 and 1 outlier."},
        {{.xLabel = "x", .yLabel = "y", .plot = ScatterPlot{{1}, {2}, ScatterPlot::Line{0, -1}}},
         "Scatter plot of y against x with 1 point and a falling line."},
        {{.xLabel = "r", .plot = BarPlot{{"a", "b", "c"}, {0.2, nan, 0.6}, 0.3}},
         "Bar chart of r with 3 bars, lowest a (0.2) and highest c (0.6); 1 below 0.3."},
        {{.plot = IntervalPlot{{{"a", 1, 0.5, 1.5}, {"b", 1, -1, 3}}, 0.0}},
         "Points with intervals for 2 rows, all at 1; 1 of the intervals do not reach 0."},
        {{.xLabel = "months",
          .yLabel = "survival",
          .plot = LinePlot{.series = {Series{.name = "A", .x = {0, 1}, .y = {1, 0.5}}},
                           .join = LinePlot::Join::steps}},
         "Step curve of survival over months: A from 1 to 0.5."},
        {{.plot = HeatMap{.rows = {"a"}, .columns = {"b", "c"}, .values = {0.5, -0.5}}},
         "Heat map of 1 row and 2 columns, lowest a with c (-0.5) and highest a with b (0.5)."},
        {{.plot =
              Dendrogram{.leaves = {"a", "b", "c"}, .merges = {{0, 1, 1}, {2, 3, 4}}, .cut = 2}},
         "Tree of 3 cases or variables, joined between the heights 1 and 4, cut at 2 into 2 "
         "clusters."},
        {{.plot = PathDiagram{.nodes = {{"F", PathDiagram::Shape::latent}, {"x"}},
                              .paths = {{.from = 0, .to = 1, .label = ".71"}, {.to = 7}}}},
         "Path diagram of 1 latent variable and 1 observed variable: F to x .71."},
    };
    for (const auto& [chart, text] : cases) {
        EXPECT_EQ(chartDescription(chart), text);
    }
}

TEST(ChartDescription, NamesTheFirstSixOfALongList) {
    BoxPlot plot;
    plot.boxes.assign(9, {.label = "group"});
    const std::string text = chartDescription({.plot = plot});
    EXPECT_NE(text.find("; and 3 others."), std::string::npos) << text;
}

}  // namespace
}  // namespace sorvane
