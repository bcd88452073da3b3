#include "SorvaneMac/Screens/Imputation/ImputationCharts.h"

#include <algorithm>
#include <map>
#include <set>

#include "SorvaneCore/Analyses/KernelDensity.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::ImputationCharts {

namespace {

/// More lines than this cannot be told apart.
constexpr std::size_t mostLines = 5;
/// Up to so many distinct values, each gets a bar.
constexpr std::size_t mostBars = 12;

std::string copyName(std::size_t copy) {
    return "Copy " + ResultText::count(static_cast<std::int64_t>(copy + 1));
}

std::string copiesShown(std::size_t copies) {
    return copies <= mostLines
               ? "All " + ResultText::count(static_cast<std::int64_t>(copies)) + " copies"
               : "Copies 1 to " + ResultText::count(mostLines) + " of " +
                     ResultText::count(static_cast<std::int64_t>(copies));
}

void addDistinct(std::set<double>& distinct, const std::vector<double>& values) {
    for (const double value : values) {
        if (distinct.size() > mostBars) {
            return;
        }
        distinct.insert(value);
    }
}

/// Of those filled in too: cells that were not predicted hold a mean that nobody answered.
std::set<double> distinctValues(const Values& values) {
    std::set<double> distinct;
    addDistinct(distinct, values.observed);
    for (const std::vector<double>& copy : values.imputed) {
        addDistinct(distinct, copy);
    }
    return distinct;
}

GroupedBarPlot::Series shares(std::string name,
                              const std::set<double>& categories,
                              const std::vector<double>& values) {
    std::map<double, double> counts;
    for (const double value : values) {
        counts[value] += 1.0;
    }
    GroupedBarPlot::Series series{.name = std::move(name), .values = {}};
    for (const double category : categories) {
        series.values.push_back(
            values.empty() ? 0.0 : counts[category] / static_cast<double>(values.size()));
    }
    return series;
}

Chart bars(const Values& values, const std::set<double>& categories) {
    std::vector<double> all;
    for (const std::vector<double>& copy : values.imputed) {
        all.insert(all.end(), copy.begin(), copy.end());
    }
    GroupedBarPlot plot{.scale = GroupedBarPlot::Scale::share};
    for (const double category : categories) {
        plot.categories.push_back(NumberText::derivedValue(category));
    }
    plot.series = {shares("Observed", categories, values.observed),
                   shares("Imputed", categories, all)};
    Chart chart;
    chart.subtitle = "Shares of the values observed and of those filled in, over all copies";
    chart.yLabel = "Share";
    chart.plot = std::move(plot);
    return chart;
}

LinePlot::Series curve(std::string name,
                       std::span<const double> values,
                       double width,
                       const KernelDensity::Grid& grid) {
    DensityCurve density = KernelDensity::estimate(values, width, grid);
    return {.name = std::move(name), .x = std::move(density.x), .y = std::move(density.y)};
}

Chart densities(const Values& values) {
    const double width = KernelDensity::bandwidth(values.observed);
    const auto [least, most] = std::ranges::minmax(values.observed);
    const KernelDensity::Grid grid{.lower = least - 3.0 * width, .upper = most + 3.0 * width};
    LinePlot plot{.markers = false};
    plot.series.push_back(curve("Observed", values.observed, width, grid));
    const std::size_t shown = std::min(values.imputed.size(), mostLines);
    for (std::size_t copy = 0; copy < shown; ++copy) {
        // Fewer values need a wider kernel, or every one of them is seen as a hump.
        const std::vector<double>& imputed = values.imputed[copy];
        plot.series.push_back(curve(copyName(copy), imputed,
                                    std::max(width, KernelDensity::bandwidth(imputed)), grid));
    }
    Chart chart;
    chart.subtitle = "Densities of the values observed and of those filled in. " +
                     copiesShown(values.imputed.size());
    chart.yLabel = "Density";
    chart.plot = std::move(plot);
    return chart;
}

Chart trace(const ImputationTrace& trace, std::size_t column, double ImputedMoments::*figure) {
    LinePlot plot{.markers = false};
    const std::size_t shown = std::min(trace.moments.size(), mostLines);
    for (std::size_t copy = 0; copy < shown; ++copy) {
        LinePlot::Series series{.name = copyName(copy)};
        for (std::size_t sweep = 0; sweep < trace.moments[copy].size(); ++sweep) {
            series.x.push_back(static_cast<double>(sweep + 1));
            series.y.push_back(trace.moments[copy][sweep][column].*figure);
        }
        plot.series.push_back(std::move(series));
    }
    Chart chart;
    chart.subtitle = copiesShown(trace.moments.size()) + ". The lines should mix and show no trend";
    chart.xLabel = "Sweep";
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace

Chart distribution(const Values& values) {
    const std::set<double> categories = distinctValues(values);
    Chart chart = categories.size() <= mostBars ? bars(values, categories) : densities(values);
    chart.title = "Observed and imputed values: " + values.name;
    chart.xLabel = values.name;
    return chart;
}

Chart traceOfMean(const Values& values, const ImputationTrace& moments, std::size_t column) {
    Chart chart = trace(moments, column, &ImputedMoments::mean);
    chart.title = "Trace of the imputed mean: " + values.name;
    chart.yLabel = "Mean of the imputed values";
    auto& plot = std::get<LinePlot>(chart.plot);
    plot.reference = values.observedMean;
    plot.referenceName = "observed";
    return chart;
}

Chart traceOfDeviation(const Values& values, const ImputationTrace& moments, std::size_t column) {
    Chart chart = trace(moments, column, &ImputedMoments::standardDeviation);
    chart.title = "Trace of the imputed SD: " + values.name;
    chart.yLabel = "SD of the imputed values";
    auto& plot = std::get<LinePlot>(chart.plot);
    plot.reference = values.observedDeviation;
    plot.referenceName = "observed";
    return chart;
}

}  // namespace sorvane::ImputationCharts
