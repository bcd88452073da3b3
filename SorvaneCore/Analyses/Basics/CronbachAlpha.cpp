#include "SorvaneCore/Analyses/Basics/CronbachAlpha.h"

#include <cmath>
#include <vector>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"

namespace sorvane::CronbachAlpha {

std::optional<double> of(std::span<const NumericColumn* const> items) {
    const std::vector<std::uint32_t> rows = CompleteCases::rows(items);
    if (items.size() < 2 || rows.size() < 2) {
        return std::nullopt;
    }
    double sumOfItemVariances = 0.0;
    std::vector<double> totals(rows.size(), 0.0);
    for (const NumericColumn* item : items) {
        const std::vector<double> values = CompleteCases::gathered(*item, rows);
        sumOfItemVariances += *DescriptiveStatistics::variance(values);
        for (std::size_t i = 0; i < totals.size(); ++i) {
            totals[i] += values[i];
        }
    }
    return fromVariances(items.size(), sumOfItemVariances,
                         *DescriptiveStatistics::variance(totals));
}

std::optional<double> of(std::span<const NumericColumn> items) {
    std::vector<const NumericColumn*> pointers;
    for (const NumericColumn& item : items) {
        pointers.push_back(&item);
    }
    return of(pointers);
}

std::optional<double> fromVariances(std::size_t itemCount,
                                    double sumOfItemVariances,
                                    double totalVariance) {
    if (itemCount < 2 || !(totalVariance > 0.0)) {
        return std::nullopt;
    }
    const auto k = static_cast<double>(itemCount);
    const double alpha = k / (k - 1.0) * (1.0 - sumOfItemVariances / totalVariance);
    // Squares beyond the range of a double leave nothing to compare.
    return std::isfinite(alpha) ? std::optional(alpha) : std::nullopt;
}

}  // namespace sorvane::CronbachAlpha
