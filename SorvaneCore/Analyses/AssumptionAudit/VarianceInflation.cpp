#include "SorvaneCore/Analyses/AssumptionAudit/VarianceInflation.h"

#include <limits>

#include "SorvaneCore/Analyses/AssumptionAudit/DenseColumns.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"

namespace sorvane::VarianceInflation {

namespace {

VIFEntry entry(const std::string& name, double rSquared) {
    if (rSquared >= 1.0) {
        return {.name = name, .vif = std::numeric_limits<double>::infinity(), .tolerance = 0.0};
    }
    const double vif = 1.0 / (1.0 - rSquared);
    return {.name = name, .vif = vif, .tolerance = 1.0 / vif};
}

}  // namespace

std::optional<std::vector<VIFEntry>> factors(std::span<const std::span<const double>> predictors,
                                             std::span<const std::string> names) {
    const std::size_t count = predictors.size();
    if (count < 2 || names.size() != count || !haveOneLength(predictors, predictors[0].size()) ||
        predictors[0].size() < count + 2) {
        return std::nullopt;
    }
    const RegressionOptions options{.predictorNames = std::vector<std::string>(count - 1)};
    std::vector<VIFEntry> entries;
    for (std::size_t j = 0; j < count; ++j) {
        std::vector<std::span<const double>> others(predictors.begin(), predictors.end());
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(j));
        const auto fit = RegressionTests::ordinaryLeastSquares(others, predictors[j], options);
        if (!fit) {
            return std::nullopt;
        }
        entries.push_back(entry(names[j], fit->rSquared));
    }
    return entries;
}

std::optional<std::vector<VIFEntry>> factors(std::span<const NumericColumn> predictors,
                                             std::span<const std::string> names) {
    if (predictors.empty() || !haveOneLength(predictors, predictors[0].size())) {
        return std::nullopt;
    }
    return factors(DenseColumns::of(predictors, nullptr).predictorSpans(), names);
}

}  // namespace sorvane::VarianceInflation
