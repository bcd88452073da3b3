#include <map>
#include <numeric>

#include <gtest/gtest.h>

#include "Tests/Screens/ReferenceStudy.h"
#include "Tests/Support/Closeness.h"

/// Charts draw the figures of the analysis: those of R at their places.
namespace sorvane {
namespace {

using enum StudioScreen;
using Places = std::map<std::string, double>;

/// What a chart draws, by the names that its reader sees.
struct Drawn {
    Places places;

    void operator()(const BoxPlot& plot) {
        for (const BoxPlot::Box& box : plot.boxes) {
            places[box.label + " low"] = box.lowerWhisker;
            places[box.label + " first"] = box.firstQuartile;
            places[box.label + " median"] = box.median;
            places[box.label + " third"] = box.thirdQuartile;
            places[box.label + " high"] = box.upperWhisker;
        }
    }
    void operator()(const ScatterPlot& plot) {
        places["points"] = static_cast<double>(plot.x.size());
        places["first x"] = plot.x.front();
        places["first y"] = plot.y.front();
        places["intercept"] = plot.line->intercept;
        places["slope"] = plot.line->slope;
    }
    void operator()(const BarPlot& plot) {
        for (std::size_t i = 0; i < plot.labels.size(); ++i) {
            places[plot.labels[i]] = plot.values[i];
        }
    }
    void operator()(const GroupedBarPlot& plot) {
        for (const GroupedBarPlot::Series& series : plot.series) {
            for (std::size_t i = 0; i < plot.categories.size(); ++i) {
                places[series.name + " " + plot.categories[i]] = series.values[i];
            }
        }
    }
    void operator()(const IntervalPlot& plot) {
        for (const IntervalPlot::Row& row : plot.rows) {
            places[row.label] = row.estimate;
            places[row.label + " lower"] = row.lower;
            places[row.label + " upper"] = row.upper;
        }
    }
    void operator()(const LinePlot& plot) {
        for (const LinePlot::Series& series : plot.series) {
            for (std::size_t i = 0; i < series.x.size(); ++i) {
                const std::string place =
                    series.name + " " + plot.categories.at(static_cast<std::size_t>(series.x[i]));
                places[place] = series.y[i];
                if (!series.lower.empty()) {
                    places[place + " lower"] = series.lower[i];
                    places[place + " upper"] = series.upper[i];
                }
            }
        }
    }
    template <typename Other>
    void operator()(const Other& /*plot*/) {}
};

const std::set<std::string> groupings = {"am", "vs", "gear"};

struct ChartCase {
    int line;
    std::string data;
    StudioScreen screen;
    Settings settings;
    Places places;
};

// R 4.2.2: mean, t.test, median (of the halves for quartiles), lm of scaled columns, glm, prop.table, aggregate, predict of
// lm at the mean of the covariate, and survival::coxph (Breslow).
// clang-format off
const std::vector<ChartCase> chartCases = {
    {__LINE__, "mtcars.csv", inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("mpg")"}, {"cmGrouping", R"("gear")"}},
     {{"3", 16.10666667}, {"3 lower", 14.23952672}, {"3 upper", 17.97380661}, {"4", 24.53333333}, {"4 lower", 21.18063719}, {"4 upper", 27.88602947}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npOutcome", R"("mpg")"}, {"npGroup", R"("am")"}},
     {{"0 low", 10.4}, {"0 first", 14.7}, {"0 median", 17.3}, {"0 third", 19.2}, {"0 high", 24.4},
      {"1 low", 15.0}, {"1 first", 20.35}, {"1 median", 22.8}, {"1 third", 30.4}, {"1 high", 33.9}}},
    {__LINE__, "attitude.csv", inferential, {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["complaints","learning","raises"])"}},
     {{"Mean complaints", 66.6}, {"Mean complaints lower", 61.62818796}, {"Mean complaints upper", 71.57181204},
      {"Mean raises", 64.63333333}, {"Mean raises lower", 60.75094551}, {"Mean raises upper", 68.51572115}}},
    {__LINE__, "mtcars.csv", regression, {{"regOutcome", R"("mpg")"}, {"regPredictors", R"(["hp","wt"])"}},
     {{"hp", -0.3614506657}, {"wt", -0.6295545141}}},
    {__LINE__, "mtcars.csv", regression, {{"regModel", R"("logistic")"}, {"regOutcome", R"("am")"}, {"regPredictors", R"(["wt"])"}},
     {{"wt", -4.023969962}, {"wt lower", -6.839512603}, {"wt upper", -1.208427321}}},
    {__LINE__, "mtcars.csv", correlation, {{"corrX", R"("mpg")"}, {"corrY", R"("wt")"}},
     {{"points", 32}, {"first x", 21.0}, {"first y", 2.62}, {"intercept", 6.0472550135}, {"slope", -0.1408619699}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("chiSquare")"}, {"npRowCat", R"("am")"}, {"npColCat", R"("gear")"}},
     {{"3 0", 0.7894736842}, {"3 1", 0.0}, {"4 0", 0.2105263158}, {"4 1", 0.6153846154}, {"5 0", 0.0}, {"5 1", 0.3846153846}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("goodnessOfFit")"}, {"npGoFVar", R"("gear")"}},
     {{"Observed 3", 15}, {"Observed 4", 12}, {"Observed 5", 5}, {"Expected 3", 10.666666667}, {"Expected 5", 10.666666667}}},
    {__LINE__, "mtcars.csv", inferential, {{"cmTest", R"("factorial")"}, {"cmOutcome", R"("mpg")"}, {"cmFactors", R"(["am","vs"])"}},
     {{"0 0", 15.05}, {"1 0", 19.75}, {"0 1", 20.74285714}, {"1 1", 28.37142857}}},
    {__LINE__, "mtcars.csv", inferential, {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("mpg")"}, {"cmAncovaGroup", R"("am")"}, {"cmAncovaCovariates", R"(["wt"])"}},
     {{"M 0", 17.14736842}, {"M 1", 24.39230769}, {"M adj 0", 20.10021868}, {"M adj 1", 20.07660346}}},
    {__LINE__, "lung.csv", survival, {{"survMode", R"("cox")"}, {"survTime", R"("time")"}, {"survEvent", R"("dead")"}, {"survPredictors", R"(["age","sex"])"}},
     {{"sex", -0.5125647915}, {"sex lower", -0.840784432}, {"sex upper", -0.184345151}}},
};
// clang-format on

TEST(ChartFigures, StandWhereTheAnalysisPutsThem) {
    for (const ChartCase& each : chartCases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study(each.data);
        study.assignAll(groupings);
        const ScreenContent content = study.shown(each.screen, each.settings);
        ASSERT_FALSE(content.findings.empty());
        ASSERT_TRUE(content.findings.front().figure);
        Drawn drawn;
        std::visit(drawn, content.findings.front().figure->plot);
        for (const auto& [place, figure] : each.places) {
            ASSERT_TRUE(drawn.places.contains(place)) << place;
            EXPECT_TRUE(
                test::closeTo(drawn.places[place], figure, {.relative = 1e-6, .absolute = 1e-9}))
                << place;
        }
    }
}

TEST(ChartFigures, AHistogramCountsEveryCaseInItsBin) {
    ReferenceStudy study("mtcars.csv");
    study.assignAll(groupings);
    const ScreenContent content =
        study.shown(descriptives, {{"selectedDescriptiveVariableName", R"("mpg")"}});
    const auto& plot = std::get<HistogramPlot>(content.findings.front().figure->plot);
    ASSERT_EQ(plot.edges.size(), plot.counts.size() + 1);
    EXPECT_EQ(std::reduce(plot.counts.begin(), plot.counts.end()), 32);
    EXPECT_LE(plot.edges.front(), 10.4);
    EXPECT_GE(plot.edges.back(), 33.9);
    for (std::size_t bin = 0; bin < plot.counts.size(); ++bin) {
        std::int64_t inside = 0;
        for (const std::optional<double>& value : study.state.dataset().numericValues("mpg")) {
            const bool isLast = bin + 1 == plot.counts.size();
            inside += *value >= plot.edges[bin] && (*value < plot.edges[bin + 1] ||
                                                    (isLast && *value == plot.edges.back()))
                          ? 1
                          : 0;
        }
        EXPECT_EQ(plot.counts[bin], inside) << "from " << plot.edges[bin];
    }
}

}  // namespace
}  // namespace sorvane
