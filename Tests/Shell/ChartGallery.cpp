#include "Tests/Shell/ChartGallery.h"

#include <cmath>

namespace sorvane {

namespace {

Chart chartOf(const char* x, const char* y, decltype(Chart::plot) plot) {
    return {.title = "Chart", .xLabel = x, .yLabel = y, .plot = std::move(plot)};
}

ScatterPlot scatter() {
    ScatterPlot plot{.x = {}, .y = {}, .line = ScatterPlot::Line{1.0, 0.6}};
    for (int at = 0; at < 120; ++at) {
        plot.x.push_back(1.0 + at % 25 * 0.2);
        plot.y.push_back(1.0 + 0.6 * plot.x.back() + std::sin(at * 1.7));
    }
    return plot;
}

LinePlot survival() {
    using Series = LinePlot::Series;
    const Series treated{.name = "Treated",
                         .x = {0, 3, 7, 12, 18, 24},
                         .y = {1, 0.95, 0.88, 0.8, 0.76, 0.7},
                         .lower = {1, 0.88, 0.78, 0.68, 0.62, 0.55},
                         .upper = {1, 1, 0.97, 0.91, 0.88, 0.84},
                         .strokes = {5, 14, 22}};
    const Series control{.name = "Control",
                         .x = {0, 2, 5, 9, 15, 21},
                         .y = {1, 0.85, 0.7, 0.52, 0.4, 0.31},
                         .lower = {1, 0.75, 0.58, 0.4, 0.28, 0.18},
                         .upper = {1, 0.94, 0.82, 0.65, 0.53, 0.45},
                         .strokes = {4, 10}};
    return {.series = {treated, control},
            .join = LinePlot::Join::steps,
            .interval = LinePlot::Interval::band,
            .markers = false,
            .yRange = ValueRange{0.0, 1.0}};
}

LinePlot profile() {
    return {.series = {{.name = "Women",
                        .x = {0, 1, 2},
                        .y = {3.1, 3.6, 4.2},
                        .lower = {2.8, 3.3, 3.9},
                        .upper = {3.4, 3.9, 4.5}},
                       {.name = "Men",
                        .x = {0, 1, 2},
                        .y = {3.0, 3.2, 3.3},
                        .lower = {2.7, 2.9, 3.0},
                        .upper = {3.3, 3.5, 3.6}}},
            .categories = {"Before", "After", "Follow-up"}};
}

LinePlot scree() {
    return {
        .series = {{.name = "Data", .x = {1, 2, 3, 4, 5, 6}, .y = {3.4, 1.4, 0.6, 0.3, 0.2, 0.1}},
                   {.name = "Random data",
                    .x = {1, 2, 3, 4, 5, 6},
                    .y = {1.3, 1.2, 1.0, 0.9, 0.8, 0.7}}},
        .reference = 1.0,
        .referenceName = "Eigenvalue of 1",
        .marked = 3.0,
        .markedName = "Elbow"};
}

HeatMap correlations() {
    HeatMap map{.range = ValueRange{-1.0, 1.0}};
    for (int row = 0; row < 6; ++row) {
        map.rows.push_back("item" + std::string(1, static_cast<char>('1' + row)));
        for (int column = 0; column < 6; ++column) {
            map.values.push_back(row == column ? 1.0 : std::cos(row + column * 1.3) * 0.8);
        }
    }
    map.columns = map.rows;
    return map;
}

Dendrogram tree() {
    return {.leaves = {"Anna", "Bert", "Cleo", "Dora", "Emil"},
            .merges = {{0, 3, 0.5}, {1, 4, 0.9}, {2, 5, 1.6}, {6, 7, 3.2}},
            .cut = 2.4};
}

GroupedBarPlot shares() {
    return {.categories = {"Control", "Online", "Workshop"},
            .series = {{"Disagree", {0.4, 0.25, 0.1}},
                       {"Neither", {0.3, 0.3, 0.25}},
                       {"Agree", {0.3, 0.45, 0.65}}},
            .arrangement = GroupedBarPlot::Arrangement::stacked,
            .scale = GroupedBarPlot::Scale::share};
}

}  // namespace

PathDiagram factorModel(int factors, int itemsEach) {
    PathDiagram diagram;
    for (int factor = 0; factor < factors; ++factor) {
        const std::size_t latent = diagram.nodes.size();
        diagram.nodes.push_back(
            {"Factor " + std::to_string(factor + 1), PathDiagram::Shape::latent});
        for (int other = 0; other < factor; ++other) {
            diagram.paths.push_back({.from = static_cast<std::size_t>(other * (itemsEach + 1)),
                                     .to = latent,
                                     .arrow = PathDiagram::Arrow::bidirected,
                                     .label = ".4" + std::to_string(other)});
        }
        for (int item = 0; item < itemsEach; ++item) {
            diagram.paths.push_back(
                {.from = latent, .to = diagram.nodes.size(), .label = ".7" + std::to_string(item)});
            diagram.nodes.push_back(
                {"item" + std::to_string(factor + 1) + "_" + std::to_string(item + 1)});
        }
    }
    return diagram;
}

std::vector<std::pair<std::string, Chart>> chartGallery() {
    GroupedBarPlot beside = shares();
    beside.arrangement = GroupedBarPlot::Arrangement::beside;
    const PathDiagram mediation{.nodes = {{"Training"}, {"Confidence"}, {"Performance"}},
                                .paths = {{.from = 0, .to = 1, .label = ".42"},
                                          {.from = 1, .to = 2, .label = ".35"},
                                          {.from = 0, .to = 2, .label = ".11"}}};
    return {
        {"histogram",
         chartOf("Age", "Cases",
                 HistogramPlot{.edges = {20, 25, 30, 35, 40}, .counts = {3, 9, 6, 1}})},
        {"box", chartOf("Group", "Score",
                        BoxPlot{.boxes = {{"Control", 1, 2, 3, 4, 5, {8.5}},
                                          {"Workshop", 2, 3.5, 4, 5, 7, {}}}})},
        {"scatter", chartOf("Hours", "Score", scatter())},
        {"bar", chartOf("Item-total r", "",
                        BarPlot{.labels = {"item1", "item2", "item3"},
                                .values = {0.52, 0.21, 0.66},
                                .reference = 0.3})},
        {"beside", chartOf("Group", "Share of cases", std::move(beside))},
        {"shares", chartOf("Share of cases", "", shares())},
        {"intervals", chartOf("Mean with 95% interval", "",
                              IntervalPlot{.rows = {{"Control", -0.2, -0.5, 0.1},
                                                    {"Online", 0.3, 0.1, 0.5},
                                                    {"Workshop", 0.6, 0.35, 0.85}},
                                           .reference = 0.0})},
        {"profile", chartOf("Occasion", "Mean score", profile())},
        {"survival", chartOf("Months", "Survival", survival())},
        {"scree", chartOf("Component", "Eigenvalue", scree())},
        {"heat", chartOf("", "", correlations())},
        {"tree", chartOf("Height", "", tree())},
        {"mediation", chartOf("", "", mediation)},
        {"factors", chartOf("", "", factorModel(3, 4))},
    };
}

}  // namespace sorvane
