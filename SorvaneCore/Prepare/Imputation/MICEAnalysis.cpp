#include "SorvaneCore/Prepare/Imputation/MICEAnalysis.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/GroupMoments.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Prepare/Imputation/PooledT.h"

namespace sorvane::MICEAnalysis {

namespace {

constexpr double largestCorrelation = 0.999999;

std::optional<std::size_t> positionOf(const std::vector<std::string>& names,
                                      const std::string& name) {
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<std::size_t>(found - names.begin()));
}

/// The positions of the names, all of which every copy has; absent otherwise.
std::optional<std::vector<std::size_t>> positionsOf(std::span<const CompletedColumns> copies,
                                                    const std::vector<std::string>& names,
                                                    const std::vector<std::string>& wanted) {
    std::vector<std::size_t> positions;
    for (const std::string& name : wanted) {
        const std::optional<std::size_t> position = positionOf(names, name);
        if (!position || std::ranges::any_of(copies, [&position](const CompletedColumns& copy) {
                return *position >= copy.size();
            })) {
            return std::nullopt;
        }
        positions.push_back(*position);
    }
    return copies.empty() ? std::nullopt : std::optional(std::move(positions));
}

PooledCoefficient pooledCoefficient(std::string name,
                                    std::span<const double> estimates,
                                    std::span<const double> variances) {
    const PooledEstimate pooled = MultipleImputation::pool(estimates, variances);
    const double t = pooled.estimate / pooled.standardError;
    return {.name = std::move(name),
            .estimate = pooled.estimate,
            .standardError = pooled.standardError,
            .t = t,
            .pValue = PooledT::pValue(t, pooled.degreesOfFreedom),
            .ciLower = pooled.confidenceIntervalLower,
            .ciUpper = pooled.confidenceIntervalUpper,
            .fractionMissingInfo = pooled.fractionMissingInfo,
            .degreesOfFreedom = pooled.degreesOfFreedom};
}

}  // namespace

std::optional<PooledEstimate> pooledMean(std::span<const CompletedColumns> imputedDatasets,
                                         const std::vector<std::string>& variableNames,
                                         const std::string& target,
                                         double confidenceLevel) {
    const auto positions = positionsOf(imputedDatasets, variableNames, {target});
    if (!positions || imputedDatasets.front()[positions->front()].size() < 2) {
        return std::nullopt;
    }
    std::vector<double> means;
    std::vector<double> variances;
    for (const CompletedColumns& copy : imputedDatasets) {
        std::vector<double> values;
        for (const std::optional<double>& value : copy[positions->front()]) {
            values.push_back(value.value_or(std::nan("")));
        }
        const GroupMoments moments = GroupMoments::of(values);
        means.push_back(moments.mean);
        variances.push_back(moments.squaredError());
    }
    return MultipleImputation::pool(means, variances, confidenceLevel);
}

std::optional<std::vector<PooledCoefficient>> pooledRegression(
    std::span<const CompletedColumns> imputedDatasets,
    const std::vector<std::string>& variableNames,
    const std::string& outcome,
    const std::vector<std::string>& predictors) {
    std::vector<std::string> wanted = predictors;
    wanted.push_back(outcome);
    const auto positions = positionsOf(imputedDatasets, variableNames, wanted);
    if (!positions) {
        return std::nullopt;
    }
    std::vector<std::vector<double>> estimates(wanted.size());
    std::vector<std::vector<double>> variances(wanted.size());
    for (const CompletedColumns& copy : imputedDatasets) {
        std::vector<NumericColumn> columns;
        for (const std::size_t position : *positions) {
            columns.emplace_back(copy[position]);
        }
        const auto fit =
            RegressionTests::ordinaryLeastSquares(std::span(columns).first(predictors.size()),
                                                  columns.back(), {.predictorNames = predictors});
        if (!fit || fit->coefficients.size() != wanted.size()) {
            return std::nullopt;
        }
        for (std::size_t j = 0; j < wanted.size(); ++j) {
            const double error = fit->coefficients[j].standardError;
            estimates[j].push_back(fit->coefficients[j].estimate);
            variances[j].push_back(error * error);
        }
    }
    std::vector<PooledCoefficient> coefficients;
    for (std::size_t j = 0; j < wanted.size(); ++j) {
        coefficients.push_back(pooledCoefficient(j == 0 ? "(Intercept)" : predictors[j - 1],
                                                 estimates[j], variances[j]));
    }
    return coefficients;
}

std::optional<PooledCorrelation> pooledCorrelation(
    std::span<const CompletedColumns> imputedDatasets,
    const std::vector<std::string>& variableNames,
    const std::string& x,
    const std::string& y,
    double confidenceLevel) {
    const auto positions = positionsOf(imputedDatasets, variableNames, {x, y});
    if (!positions) {
        return std::nullopt;
    }
    std::vector<double> correlations;
    std::int64_t n = 0;
    for (const CompletedColumns& copy : imputedDatasets) {
        const auto correlation =
            RelationshipTests::pearson(copy[(*positions)[0]], copy[(*positions)[1]]);
        if (!correlation) {
            return std::nullopt;
        }
        correlations.push_back(correlation->r);
        n = correlation->n;
    }
    return pooledCorrelation(correlations, n, confidenceLevel);
}

std::optional<PooledCorrelation> pooledCorrelation(std::span<const double> correlations,
                                                   std::int64_t n,
                                                   double confidenceLevel) {
    if (correlations.empty() || n < 4) {
        return std::nullopt;
    }
    std::vector<double> z;
    for (const double r : correlations) {
        z.push_back(std::atanh(std::clamp(r, -largestCorrelation, largestCorrelation)));
    }
    const std::vector<double> variances(z.size(), 1.0 / static_cast<double>(n - 3));
    const PooledEstimate pooled = MultipleImputation::pool(z, variances, confidenceLevel);
    return PooledCorrelation{.r = std::tanh(pooled.estimate),
                             .ciLower = std::tanh(pooled.confidenceIntervalLower),
                             .ciUpper = std::tanh(pooled.confidenceIntervalUpper),
                             .fractionMissingInfo = pooled.fractionMissingInfo,
                             .m = pooled.m};
}

}  // namespace sorvane::MICEAnalysis
