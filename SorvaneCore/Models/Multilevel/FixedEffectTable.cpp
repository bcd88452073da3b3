#include "SorvaneCore/Models/Multilevel/FixedEffectTable.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <map>
#include <numbers>

#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NormalCritical.h"

namespace sorvane::FixedEffectTable {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

double normalPValue(double z) {
    if (!std::isfinite(z)) {
        return nan;
    }
    // 2 (1 - Phi(|z|)), without the cancellation far out.
    return std::clamp(std::erfc(std::abs(z) / std::numbers::sqrt2), 0.0, 1.0);
}

/// Critical values by df, which rows of a table often share.
class CriticalValues {
public:
    explicit CriticalValues(double confidenceLevel)
        : alpha_(std::clamp(1.0 - confidenceLevel, 0.001, 0.999)) {}

    double normal() const { return normalCritical(alpha_, NormalCriticalSetting::narrow); }
    double student(double df) {
        const auto [entry, isNew] = byDf_.try_emplace(df, 0.0);
        if (isNew) {
            entry->second = MathDistributions::studentTCritical(alpha_, df);
        }
        return entry->second;
    }

private:
    double alpha_;
    std::map<double, double> byDf_;
};

}  // namespace

std::vector<std::string> names(std::span<const std::string> predictors) {
    std::vector<std::string> result = {"(Intercept)"};
    result.insert(result.end(), predictors.begin(), predictors.end());
    return result;
}

std::vector<MultilevelFixedEffect> of(std::span<const std::string> predictors,
                                      const Estimates& estimates,
                                      double confidenceLevel) {
    CriticalValues critical(confidenceLevel);
    std::vector<MultilevelFixedEffect> rows = blank(predictors);
    for (std::size_t j = 0; j < rows.size(); ++j) {
        MultilevelFixedEffect& row = rows[j];
        const double variance = std::max(estimates.variances[j], 0.0);
        row.estimate = estimates.values[j];
        row.standardError = std::sqrt(variance);
        row.z = variance > 0.0 ? row.estimate / row.standardError : nan;
        double reach = 0.0;
        if (estimates.degrees) {
            row.df = (*estimates.degrees)[j];
            row.pValue = MathDistributions::studentTPValue(row.z, *row.df);
            reach = critical.student(*row.df) * row.standardError;
        } else {
            row.pValue = normalPValue(row.z);
            reach = critical.normal() * row.standardError;
        }
        row.lowerBound = row.estimate - reach;
        row.upperBound = row.estimate + reach;
    }
    return rows;
}

std::vector<MultilevelFixedEffect> blank(std::span<const std::string> predictors) {
    std::vector<MultilevelFixedEffect> rows;
    for (std::string& name : names(predictors)) {
        rows.push_back({.name = std::move(name),
                        .estimate = nan,
                        .standardError = nan,
                        .z = nan,
                        .pValue = nan,
                        .lowerBound = nan,
                        .upperBound = nan});
    }
    return rows;
}

}  // namespace sorvane::FixedEffectTable
