#include <cmath>
#include <limits>
#include <vector>

#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"
#include "SorvaneCore/Prepare/Imputation/PooledT.h"

namespace sorvane::MultipleImputation {

namespace {

double mean(std::span<const double> values) {
    double sum = 0.0;
    for (const double value : values) {
        sum += value;
    }
    return sum / static_cast<double>(values.size());
}

/// The estimates as departures from the first, so that equal ones have no variance to the last bit.
std::vector<double> departures(std::span<const double> estimates) {
    std::vector<double> found(estimates.begin(), estimates.end());
    for (double& each : found) {
        each -= estimates.front();
    }
    return found;
}

double variance(std::span<const double> values) {
    const double center = mean(values);
    double squares = 0.0;
    for (const double value : values) {
        squares += (value - center) * (value - center);
    }
    return values.size() < 2 ? 0.0 : squares / static_cast<double>(values.size() - 1);
}

}  // namespace

PooledEstimate pool(std::span<const double> estimates,
                    std::span<const double> variances,
                    double confidenceLevel) {
    PooledEstimate pooled{.m = static_cast<std::int64_t>(estimates.size())};
    if (estimates.empty() || estimates.size() != variances.size()) {
        return pooled;
    }
    const auto m = static_cast<double>(estimates.size());
    const std::vector<double> apart = departures(estimates);
    pooled.estimate = estimates.front() + mean(apart);
    pooled.withinVariance = mean(variances);
    pooled.betweenVariance = variance(apart);
    const double added = (1.0 + 1.0 / m) * pooled.betweenVariance;
    pooled.totalVariance = pooled.withinVariance + added;
    pooled.standardError = std::sqrt(pooled.totalVariance);
    pooled.fractionMissingInfo = pooled.totalVariance == 0.0 ? 0.0 : added / pooled.totalVariance;
    if (added != 0.0) {
        const double ratio = 1.0 + pooled.withinVariance / added;
        pooled.degreesOfFreedom = (m - 1.0) * ratio * ratio;
    }
    const double critical = PooledT::critical(1.0 - confidenceLevel, pooled.degreesOfFreedom);
    const double margin = std::isfinite(critical) ? critical * pooled.standardError
                                                  : std::numeric_limits<double>::quiet_NaN();
    pooled.confidenceIntervalLower = pooled.estimate - margin;
    pooled.confidenceIntervalUpper = pooled.estimate + margin;
    return pooled;
}

}  // namespace sorvane::MultipleImputation
