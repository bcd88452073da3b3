#include "SorvaneMac/Screens/Multilevel/MultilevelCharts.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "SorvaneMac/Screens/Multilevel/MultilevelReport.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::MultilevelCharts {

namespace {

using Effects = std::vector<MultilevelClusterEffect>;

/// More rows or lines than these cannot be told apart.
constexpr std::size_t mostRows = 200;
constexpr std::size_t mostLines = 60;

/// Some of the positions of a list, evenly spaced, the first and the last among them.
std::vector<std::size_t> spread(std::size_t count, std::size_t most) {
    const std::size_t kept = std::min(count, most);
    std::vector<std::size_t> positions;
    for (std::size_t at = 0; at < kept; ++at) {
        positions.push_back(kept < 2 ? 0 : at * (count - 1) / (kept - 1));
    }
    return positions;
}

/// " 60 of 300 are drawn, evenly spaced in that order."; empty where all are.
std::string partWords(std::size_t count, std::size_t most) {
    return count <= most ? ""
                         : " " + ResultText::count(static_cast<std::int64_t>(most)) + " of " +
                               ResultText::count(static_cast<std::int64_t>(count)) +
                               " are drawn, evenly spaced in order.";
}

std::string scaleOf(MultilevelFamily family) {
    switch (family) {
        case MultilevelFamily::binomial:
        case MultilevelFamily::ordinal:
            return " (log odds)";
        case MultilevelFamily::poisson:
            return " (log rate)";
        case MultilevelFamily::gaussian:
            break;
    }
    return "";
}

Chart caterpillar(const MultilevelChoice& choice, Effects effects, const std::string& factor) {
    constexpr double normalCritical = 1.959963984540054;
    std::ranges::stable_sort(effects, std::greater<>(), &MultilevelClusterEffect::intercept);
    IntervalPlot plot{.reference = 0.0};
    for (const std::size_t at : spread(effects.size(), mostRows)) {
        const MultilevelClusterEffect& effect = effects[at];
        const double reach = normalCritical * effect.interceptError;
        plot.rows.push_back(
            {effect.cluster, effect.intercept, effect.intercept - reach, effect.intercept + reach});
    }
    Chart chart;
    chart.title = "Cluster intercepts: " + factor;
    chart.subtitle = "Departures from the overall intercept with 95% intervals" +
                     (choice.slope.empty() ? "." : ", where " + choice.slope + " is 0.") +
                     partWords(effects.size(), mostRows);
    chart.xLabel = "Departure of the intercept" + scaleOf(choice.family);
    chart.plot = std::move(plot);
    return chart;
}

/// A line on the scale of the outcome, by its level at the mean of x: its intercept may lie so far
/// from the values that a cluster's departure there would be a difference of huge numbers.
struct FittedLine {
    double mean = 0.0;
    double level = 0.0;
    double slope = 0.0;
    MultilevelFamily family = MultilevelFamily::gaussian;

    double at(double x) const {
        const double predictor = level + slope * (x - mean);
        switch (family) {
            case MultilevelFamily::binomial:
                return 1.0 / (1.0 + std::exp(-predictor));
            case MultilevelFamily::poisson:
                return std::exp(predictor);
            default:
                return predictor;
        }
    }
    void addTo(LinePlot::Series& series, const Lines::Range& range) const {
        const int steps = family == MultilevelFamily::gaussian ? 1 : 24;
        for (int step = 0; step <= steps; ++step) {
            const double share = static_cast<double>(step) / steps;
            const double x = range.minimum + share * (range.maximum - range.minimum);
            series.x.push_back(x);
            series.y.push_back(at(x));
        }
    }
};

/// A model with a slope, and what its clusters depart by.
struct LineModel {
    const MultilevelChoice& choice;
    const MultilevelResult& result;
    const Effects& effects;
    const Lines& lines;

    /// The line of a cluster without departures.
    FittedLine typical() const {
        FittedLine line{.mean = lines.mean, .level = lines.level, .family = choice.family};
        for (const MultilevelFixedEffect& effect : result.fixedEffects) {
            if (effect.name == choice.slope) {
                line.slope = effect.estimate;
            }
        }
        return line;
    }
    /// By their slope, those whose predictor varies.
    std::vector<std::size_t> clusters() const {
        std::vector<std::size_t> found;
        for (std::size_t c = 0; c < effects.size() && c < lines.ranges.size(); ++c) {
            if (lines.ranges[c].minimum < lines.ranges[c].maximum) {
                found.push_back(c);
            }
        }
        std::ranges::stable_sort(found, {},
                                 [this](std::size_t c) { return effects[c].slope.value_or(0.0); });
        return found;
    }
};

/// All clusters are one series, so that they look alike; gaps stand between their lines.
LinePlot::Series clusterSeries(const LineModel& model, const std::vector<std::size_t>& clusters) {
    LinePlot::Series series{.name = "Clusters of " + model.choice.cluster};
    for (const std::size_t at : spread(clusters.size(), mostLines)) {
        const std::size_t c = clusters[at];
        FittedLine line = model.typical();
        line.level += model.effects[c].middle;
        line.slope += model.effects[c].slope.value_or(0.0);
        line.addTo(series, model.lines.ranges[c]);
        series.x.push_back(series.x.back());
        series.y.push_back(std::numeric_limits<double>::quiet_NaN());
    }
    return series;
}

LinePlot::Series typicalSeries(const LineModel& model) {
    Lines::Range all = model.lines.ranges.front();
    for (const Lines::Range& range : model.lines.ranges) {
        all.minimum = std::min(all.minimum, range.minimum);
        all.maximum = std::max(all.maximum, range.maximum);
    }
    LinePlot::Series series{.name = "Fixed effects alone"};
    model.typical().addTo(series, all);
    return series;
}

std::string scaleName(const MultilevelChoice& choice) {
    switch (choice.family) {
        case MultilevelFamily::binomial:
            return "Probability of " + choice.outcome + " = 1";
        case MultilevelFamily::poisson:
            return "Expected " + choice.outcome;
        default:
            return choice.outcome;
    }
}

Chart lineChart(const LineModel& model, const std::vector<std::size_t>& clusters) {
    const MultilevelChoice& choice = model.choice;
    LinePlot plot{.series = {clusterSeries(model, clusters), typicalSeries(model)},
                  .markers = false};
    if (choice.family == MultilevelFamily::binomial) {
        plot.yRange = ValueRange{0.0, 1.0};
    }
    Chart chart;
    chart.title = "Fitted lines by cluster";
    chart.subtitle = "Each over the cluster's own values of " + choice.slope +
                     (choice.predictors.size() > 1 ? "; other predictors at their means." : ".") +
                     partWords(clusters.size(), mostLines);
    chart.xLabel = choice.slope;
    chart.yLabel = scaleName(choice);
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace

std::vector<Chart> of(const MultilevelChoice& choice,
                      const MultilevelResult& result,
                      const Departures& departures) {
    std::vector<Chart> charts;
    if (departures.lines) {
        const LineModel model{.choice = choice,
                              .result = result,
                              .effects = departures.clusters,
                              .lines = *departures.lines};
        const std::vector<std::size_t> clusters = model.clusters();
        if (!clusters.empty()) {
            charts.push_back(lineChart(model, clusters));
        }
    }
    if (!departures.clusters.empty() && !MultilevelReport::isNearZero(choice, result, 0)) {
        charts.push_back(caterpillar(choice, departures.clusters, choice.cluster));
    }
    if (!departures.second.empty() && !MultilevelReport::isNearZero(choice, result, 1)) {
        charts.push_back(caterpillar(choice, departures.second, choice.secondLabel()));
    }
    return charts;
}

}  // namespace sorvane::MultilevelCharts
