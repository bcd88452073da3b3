#include "SorvaneMac/Screens/GroupCharts.h"

#include <limits>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/BoxPlotSummary.h"

namespace sorvane::GroupCharts {

namespace {

constexpr double level = 0.95;
constexpr double none = std::numeric_limits<double>::quiet_NaN();

struct MeanWithInterval {
    double mean = none;
    double lower = none;
    double upper = none;
};

MeanWithInterval meanOf(const NamedNumericGroup& group) {
    MeanWithInterval result;
    result.mean = DescriptiveStatistics::mean(group.values).value_or(none);
    if (const auto interval =
            DescriptiveStatistics::confidenceIntervalForMean(group.values, level)) {
        result.lower = interval->lower;
        result.upper = interval->upper;
    }
    return result;
}

}  // namespace

Chart means(std::span<const NamedNumericGroup> groups, const Names& names) {
    IntervalPlot plot;
    for (const NamedNumericGroup& group : groups) {
        const MeanWithInterval mean = meanOf(group);
        plot.rows.push_back(
            {.label = group.name, .estimate = mean.mean, .lower = mean.lower, .upper = mean.upper});
    }
    Chart chart;
    chart.title = "Group means";
    chart.subtitle = "With 95% confidence intervals";
    chart.xLabel = names.outcome;
    chart.yLabel = names.grouping;
    chart.plot = std::move(plot);
    return chart;
}

Chart boxes(std::span<const NamedNumericGroup> groups, const Names& names) {
    BoxPlot plot;
    for (const NamedNumericGroup& group : groups) {
        if (const std::optional<BoxPlotSummary> box = BoxPlotSummary::of(group.values)) {
            plot.boxes.push_back({.label = group.name,
                                  .lowerWhisker = box->lowerWhisker,
                                  .firstQuartile = box->firstQuartile,
                                  .median = box->median,
                                  .thirdQuartile = box->thirdQuartile,
                                  .upperWhisker = box->upperWhisker,
                                  .outliers = box->outliers});
        }
    }
    Chart chart;
    chart.title = "Box plots by group";
    chart.xLabel = names.grouping;
    chart.yLabel = names.outcome;
    chart.plot = std::move(plot);
    return chart;
}

Chart measurementBoxes(std::span<const NamedNumericGroup> measurements) {
    Chart chart = boxes(measurements, {.outcome = "Value"});
    chart.title = "Box plots by measurement";
    return chart;
}

Chart profile(std::span<const NamedNumericGroup> conditions) {
    LinePlot plot;
    LinePlot::Series series{.name = "Mean"};
    for (const NamedNumericGroup& condition : conditions) {
        const MeanWithInterval mean = meanOf(condition);
        series.x.push_back(static_cast<double>(plot.categories.size()));
        plot.categories.push_back(condition.name);
        series.y.push_back(mean.mean);
        series.lower.push_back(mean.lower);
        series.upper.push_back(mean.upper);
    }
    plot.series.push_back(std::move(series));
    Chart chart;
    chart.title = "Means by measurement";
    chart.subtitle = "With 95% confidence intervals";
    chart.yLabel = "Mean";
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace sorvane::GroupCharts
