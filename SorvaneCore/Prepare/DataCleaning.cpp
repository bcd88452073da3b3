#include "SorvaneCore/Prepare/DataCleaning.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/ValueOrder.h"
#include "SorvaneCore/Prepare/MappedNumbers.h"

namespace sorvane::DataCleaning {

namespace {

constexpr double outlyingDeviations = 3.0;
constexpr double outlyingQuartileRanges = 1.5;

struct Fences {
    double lower = 0.0;
    double upper = 0.0;
};

std::optional<Fences> quartileFences(const std::vector<double>& values) {
    const std::vector<double> sorted = ValueOrder::sorted(values);
    const std::optional<double> q1 = percentile(sorted, 0.25);
    const std::optional<double> q3 = percentile(sorted, 0.75);
    if (!q1 || !q3) {
        return std::nullopt;
    }
    const double reach = outlyingQuartileRanges * (*q3 - *q1);
    return Fences{.lower = *q1 - reach, .upper = *q3 + reach};
}

template <typename IsOutlying>
std::vector<std::int64_t> rowsWhere(const NumericColumn& values, IsOutlying isOutlying) {
    std::vector<std::int64_t> rows;
    for (std::size_t row = 0; row < values.size(); ++row) {
        const std::optional<double> value = values[row];
        if (value && isOutlying(*value)) {
            rows.push_back(static_cast<std::int64_t>(row));
        }
    }
    return rows;
}

OutlierReport byQuartiles(const NumericColumn& values) {
    OutlierReport report{.method = OutlierMethod::iqr};
    if (const std::optional<Fences> fences = quartileFences(values.present())) {
        report.lowerFence = fences->lower;
        report.upperFence = fences->upper;
        report.flaggedIndices = rowsWhere(values, [&fences](double value) {
            return value < fences->lower || value > fences->upper;
        });
    }
    return report;
}

OutlierReport byDeviation(const NumericColumn& values) {
    OutlierReport report{.method = OutlierMethod::zScore};
    const std::vector<double> present = values.present();
    const std::optional<double> mean = DescriptiveStatistics::mean(present);
    const std::optional<double> deviation = DescriptiveStatistics::standardDeviation(present);
    if (mean && deviation && *deviation > 0.0) {
        report.lowerFence = *mean - outlyingDeviations * *deviation;
        report.upperFence = *mean + outlyingDeviations * *deviation;
        report.flaggedIndices = rowsWhere(values, [&](double value) {
            return std::abs(value - *mean) / *deviation > outlyingDeviations;
        });
    }
    return report;
}

}  // namespace

OutOfRangeReport outOfRange(const NumericColumn& values,
                            std::optional<double> lower,
                            std::optional<double> upper) {
    OutOfRangeReport report;
    for (const std::optional<double>& value : values.levels()) {
        if (value) {
            report.observedMin = std::min(report.observedMin.value_or(*value), *value);
            report.observedMax = std::max(report.observedMax.value_or(*value), *value);
        }
    }
    if (lower) {
        report.belowIndices = rowsWhere(values, [&lower](double value) { return value < *lower; });
    }
    if (upper) {
        report.aboveIndices = rowsWhere(values, [&upper](double value) { return value > *upper; });
    }
    report.belowCount = static_cast<std::int64_t>(report.belowIndices.size());
    report.aboveCount = static_cast<std::int64_t>(report.aboveIndices.size());
    report.flaggedCount = report.belowCount + report.aboveCount;
    return report;
}

std::vector<std::optional<double>> clampToMissing(const NumericColumn& values,
                                                  std::optional<double> lower,
                                                  std::optional<double> upper) {
    return mappedNumbers(values, [&](double value) -> std::optional<double> {
        const bool isOut = (lower && value < *lower) || (upper && value > *upper);
        return isOut ? std::nullopt : std::optional<double>(value);
    });
}

OutlierReport outliers(const NumericColumn& values, OutlierMethod method) {
    OutlierReport report = method == OutlierMethod::iqr ? byQuartiles(values) : byDeviation(values);
    report.flaggedCount = static_cast<std::int64_t>(report.flaggedIndices.size());
    return report;
}

std::optional<double> percentile(std::span<const double> sorted, double p) {
    if (sorted.empty() || !(p >= 0.0 && p <= 1.0)) {
        return std::nullopt;
    }
    const double h = p * static_cast<double>(sorted.size() - 1);
    const double floor = std::floor(h);
    const double below = sorted[static_cast<std::size_t>(floor)];
    const double above = sorted[static_cast<std::size_t>(std::ceil(h))];
    // Else an infinite value would have no distance from itself.
    return below == above ? below : below + (h - floor) * (above - below);
}

}  // namespace sorvane::DataCleaning
