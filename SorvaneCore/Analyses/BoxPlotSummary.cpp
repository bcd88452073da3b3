#include "SorvaneCore/Analyses/BoxPlotSummary.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"

namespace sorvane {

namespace {

constexpr double fenceDistance = 1.5;

}  // namespace

std::optional<BoxPlotSummary> BoxPlotSummary::of(std::span<const double> values) {
    std::vector<double> sorted;
    std::copy_if(values.begin(), values.end(), std::back_inserter(sorted),
                 [](double value) { return std::isfinite(value); });
    if (sorted.empty()) {
        return std::nullopt;
    }
    std::sort(sorted.begin(), sorted.end());
    const double median = *DescriptiveStatistics::median(sorted);
    const Quartiles quartiles =
        DescriptiveStatistics::quartiles(sorted).value_or(Quartiles{.q1 = median, .q3 = median});
    const double reach = fenceDistance * (quartiles.q3 - quartiles.q1);
    const auto first = std::lower_bound(sorted.begin(), sorted.end(), quartiles.q1 - reach);
    const auto last = std::upper_bound(sorted.begin(), sorted.end(), quartiles.q3 + reach);
    BoxPlotSummary summary{.lowerWhisker = *first,
                           .firstQuartile = quartiles.q1,
                           .median = median,
                           .thirdQuartile = quartiles.q3,
                           .upperWhisker = *(last - 1)};
    summary.outliers.assign(sorted.begin(), first);
    summary.outliers.insert(summary.outliers.end(), last, sorted.end());
    return summary;
}

}  // namespace sorvane
