#include <cmath>
#include <limits>

#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NormalCritical.h"
#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"

namespace sorvane::MultipleImputation {

namespace {

double mean(std::span<const double> values) {
    double sum = 0.0;
    for (const double value : values) {
        sum += value;
    }
    return sum / static_cast<double>(values.size());
}

double betweenVariance(std::span<const double> estimates, double center) {
    double squares = 0.0;
    for (const double estimate : estimates) {
        squares += (estimate - center) * (estimate - center);
    }
    return estimates.size() < 2 ? 0.0 : squares / static_cast<double>(estimates.size() - 1);
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
    pooled.estimate = mean(estimates);
    pooled.withinVariance = mean(variances);
    pooled.betweenVariance = betweenVariance(estimates, pooled.estimate);
    const double added = (1.0 + 1.0 / m) * pooled.betweenVariance;
    pooled.totalVariance = pooled.withinVariance + added;
    if (pooled.totalVariance > 0.0) {
        pooled.standardError = std::sqrt(pooled.totalVariance);
        pooled.fractionMissingInfo = added / pooled.totalVariance;
    }
    const double alpha = 1.0 - confidenceLevel;
    double critical = 0.0;
    if (added == 0.0) {
        critical = normalCritical(alpha, NormalCriticalSetting::wide);
    } else {
        const double ratio = 1.0 + pooled.withinVariance / added;
        pooled.degreesOfFreedom = (m - 1.0) * ratio * ratio;
        critical = MathDistributions::studentTCritical(alpha, pooled.degreesOfFreedom);
    }
    const double margin = std::isfinite(critical) ? critical * pooled.standardError
                                                  : std::numeric_limits<double>::quiet_NaN();
    pooled.confidenceIntervalLower = pooled.estimate - margin;
    pooled.confidenceIntervalUpper = pooled.estimate + margin;
    return pooled;
}

}  // namespace sorvane::MultipleImputation
