#include "SorvaneMac/Screens/Multilevel/MultilevelCharts.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

bool differ(const Effects& effects) {
    return std::ranges::any_of(
        effects, [](const MultilevelClusterEffect& effect) { return effect.interceptError > 0.0; });
}

std::string scaleOf(MultilevelFamily family) {
    return family == MultilevelFamily::binomial  ? " (log odds)"
           : family == MultilevelFamily::poisson ? " (log rate)"
                                                 : "";
}

Chart caterpillar(const MultilevelRun& run, Effects effects, const std::string& factor) {
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
                     (run.choice.slope.empty() ? "." : ", where " + run.choice.slope + " is 0.") +
                     partWords(effects.size(), mostRows);
    chart.xLabel = "Departure of the intercept" + scaleOf(run.choice.family);
    chart.plot = std::move(plot);
    return chart;
}

/// A line on the scale of the outcome.
struct FittedLine {
    double intercept = 0.0;
    double slope = 0.0;
    MultilevelFamily family = MultilevelFamily::gaussian;

    double at(double x) const {
        const double predictor = intercept + slope * x;
        switch (family) {
            case MultilevelFamily::binomial:
                return 1.0 / (1.0 + std::exp(-predictor));
            case MultilevelFamily::poisson:
                return std::exp(predictor);
            default:
                return predictor;
        }
    }
    void addTo(LinePlot::Series& series, const ClusterLines::Range& range) const {
        const int steps = family == MultilevelFamily::gaussian ? 1 : 24;
        for (int step = 0; step <= steps; ++step) {
            const double share = static_cast<double>(step) / steps;
            const double x = range.minimum + share * (range.maximum - range.minimum);
            series.x.push_back(x);
            series.y.push_back(at(x));
        }
    }
};

/// The line of a cluster without departures.
FittedLine typicalLine(const MultilevelRun& run) {
    FittedLine line{.intercept = run.result->fixedEffects[0].estimate + run.lines->others,
                    .family = run.choice.family};
    for (const MultilevelFixedEffect& effect : run.result->fixedEffects) {
        if (effect.name == run.choice.slope) {
            line.slope = effect.estimate;
        }
    }
    return line;
}

/// The clusters by their slope, those whose predictor varies.
std::vector<std::size_t> clustersWithLines(const MultilevelRun& run) {
    std::vector<std::size_t> clusters;
    for (std::size_t c = 0; c < run.effects.size(); ++c) {
        const ClusterLines::Range& range = run.lines->ranges[c];
        if (range.minimum < range.maximum) {
            clusters.push_back(c);
        }
    }
    std::ranges::stable_sort(clusters, {},
                             [&run](std::size_t c) { return run.effects[c].slope.value_or(0.0); });
    return clusters;
}

/// All clusters are one series, so that they look alike; gaps stand between their lines.
LinePlot::Series clusterSeries(const MultilevelRun& run,
                               const FittedLine& typical,
                               const std::vector<std::size_t>& clusters) {
    LinePlot::Series series{.name = "Clusters of " + run.choice.cluster};
    for (const std::size_t at : spread(clusters.size(), mostLines)) {
        const std::size_t c = clusters[at];
        FittedLine line = typical;
        line.intercept += run.effects[c].intercept;
        line.slope += run.effects[c].slope.value_or(0.0);
        line.addTo(series, run.lines->ranges[c]);
        series.x.push_back(series.x.back());
        series.y.push_back(std::numeric_limits<double>::quiet_NaN());
    }
    return series;
}

Chart lineChart(const MultilevelRun& run) {
    const FittedLine typical = typicalLine(run);
    const std::vector<std::size_t> clusters = clustersWithLines(run);
    ClusterLines::Range all = run.lines->ranges.front();
    for (const ClusterLines::Range& range : run.lines->ranges) {
        all.minimum = std::min(all.minimum, range.minimum);
        all.maximum = std::max(all.maximum, range.maximum);
    }
    LinePlot plot{.series = {clusterSeries(run, typical, clusters)}, .markers = false};
    plot.series.push_back({.name = "Fixed effects alone"});
    typical.addTo(plot.series.back(), all);
    Chart chart;
    chart.title = "Fitted lines by cluster";
    chart.subtitle =
        "Each over the cluster's own values of " + run.choice.slope +
        (run.choice.predictors.size() > 1 ? "; other predictors at their means." : ".") +
        partWords(clusters.size(), mostLines);
    chart.xLabel = run.choice.slope;
    chart.yLabel = run.choice.family == MultilevelFamily::binomial
                       ? "Probability of " + run.choice.outcome + " = 1"
                   : run.choice.family == MultilevelFamily::poisson
                       ? "Expected " + run.choice.outcome
                       : run.choice.outcome;
    if (run.choice.family == MultilevelFamily::binomial) {
        plot.yRange = ValueRange{0.0, 1.0};
    }
    chart.plot = std::move(plot);
    return chart;
}

bool hasLines(const MultilevelRun& run) {
    return run.lines && run.lines->ranges.size() == run.effects.size() &&
           !clustersWithLines(run).empty();
}

}  // namespace

std::vector<Chart> of(const MultilevelRun& run) {
    std::vector<Chart> charts;
    if (hasLines(run)) {
        charts.push_back(lineChart(run));
    }
    if (differ(run.effects)) {
        charts.push_back(caterpillar(run, run.effects, run.choice.cluster));
    }
    if (differ(run.secondEffects)) {
        charts.push_back(caterpillar(run, run.secondEffects, run.choice.secondLabel()));
    }
    return charts;
}

std::string figureCaption(const MultilevelRun& run) {
    if (hasLines(run)) {
        return "Fitted lines of " + run.choice.outcome + " over " + run.choice.slope +
               " by cluster (" + run.choice.cluster + "), with that of the fixed effects.";
    }
    return "Departures of the intercept of " + run.choice.outcome + " by " +
           (differ(run.effects) ? run.choice.cluster : run.choice.secondLabel()) +
           ", with 95% intervals.";
}

}  // namespace sorvane::MultilevelCharts
