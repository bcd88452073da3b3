#include <algorithm>
#include <cmath>

#include "SorvaneCore/Models/Multilevel/ClusterSums.h"
#include "SorvaneCore/Models/Multilevel/CrossedLikelihood.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/NestedLikelihood.h"
#include "SorvaneCore/Models/Multilevel/VarianceMinimizers.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::MultilevelModel {

namespace {

RandomCovariance withCorrelation(const RandomCovariance& g, double correlation) {
    const double cross = correlation * std::sqrt(g[0] * g[3]);
    return {g[0], cross, cross, g[3]};
}

/// The covariance of a fit relative to its residual variance; absent where the components are not
/// those of nested clusters.
std::optional<RandomCovariance> relativeCovariance(const MultilevelResult& result, bool hasSlope) {
    const std::vector<MultilevelVarianceComponent>& components = result.varianceComponents;
    if (components.size() != (hasSlope ? 3 : 2) || !(components.back().variance > 0.0)) {
        return std::nullopt;
    }
    const double sigma2 = components.back().variance;
    const double intercept = components[0].variance / sigma2;
    const double slope = hasSlope ? components[1].variance / sigma2 : 0.0;
    return withCorrelation({intercept, 0.0, 0.0, slope},
                           result.randomEffectCorrelation.value_or(0.0));
}

/// The likeliest covariance with these variances: a result does not tell the correlation of
/// variances that are small in the unit of the outcome.
RandomCovariance likeliest(const RandomCovariance& g, const NestedLikelihood& likelihood) {
    const double correlation = VarianceMinimizers::brent(-1.0, 1.0, [&](double r) {
        const auto profile = likelihood.at(withCorrelation(g, r));
        return profile ? profile->criterion : VarianceMinimizers::failedValue;
    });
    return withCorrelation(g, correlation);
}

MultilevelCriterion criterionOf(const MultilevelRows& rows, const MultilevelResult& result) {
    return {.estimator = result.estimator, .n = rows.count(), .p = rows.fixedCount()};
}

/// Q' times what the fixed effects leave of the outcome.
std::array<double, 2> projectedResidual(const ClusterSums& sums,
                                        std::size_t cluster,
                                        const std::vector<double>& beta) {
    const std::span<const double> projection = sums.projection(cluster);
    std::array<double, 2> result{};
    for (std::size_t e = 0; e < sums.effects(); ++e) {
        const double* row = &projection[e * sums.width()];
        result[e] = row[beta.size()];
        for (std::size_t j = 0; j < beta.size(); ++j) {
            result[e] -= row[j] * beta[j];
        }
    }
    return result;
}

/// Of one cluster: G R' L'^-1 of the factor L of I + R G R', whose rows are intercept and slope.
std::array<double, 4> loadings(const ClusterSums& sums,
                               std::size_t cluster,
                               const RandomCovariance& g,
                               const SmallFactor& factor) {
    const auto& [r00, r01, r11] = sums.triangle(cluster);
    std::array<double, 4> result{};
    for (std::size_t row = 0; row < 2; ++row) {
        const double first = g[2 * row] * r00 + g[2 * row + 1] * r01;
        const double second = g[2 * row + 1] * r11;
        result[2 * row] = first / factor.l00;
        result[2 * row + 1] = (second - factor.l10 * result[2 * row]) / factor.l11;
    }
    return result;
}

std::vector<MultilevelClusterEffect> nestedEffects(const MultilevelRows& rows,
                                                   const MultilevelOptions& options,
                                                   const MultilevelResult& result) {
    auto g = relativeCovariance(result, rows.slope.has_value());
    if (!g) {
        return {};
    }
    const ScaledDesign design(rows);
    const std::span<const double> slope =
        rows.slope ? std::span<const double>(rows.predictors[*rows.slope])
                   : std::span<const double>();
    const ClusterSums sums(design, rows.cluster, slope);
    const NestedLikelihood likelihood(sums, design, criterionOf(rows, result));
    if (options.correlateRandomEffects && !result.randomEffectCorrelation &&
        (*g)[0] * (*g)[3] > 0) {
        g = likeliest(*g, likelihood);
    }
    const auto profile = likelihood.at(*g);
    if (!profile) {
        return {};
    }
    std::vector<MultilevelClusterEffect> effects;
    for (std::size_t c = 0; c < sums.clusterCount(); ++c) {
        const SmallFactor factor = sums.factor(c, *g);
        const std::array<double, 4> load = loadings(sums, c, *g, factor);
        const std::array<double, 2> residual = projectedResidual(sums, c, profile->beta);
        const double first = residual[0] / factor.l00;
        const double second = (residual[1] - factor.l10 * first) / factor.l11;
        const double variance = (*g)[0] - load[0] * load[0] - load[1] * load[1];
        MultilevelClusterEffect effect{
            .cluster = rows.cluster.labels[c],
            .n = static_cast<std::int64_t>(sums.clusterSize(c)),
            .intercept = load[0] * first + load[1] * second,
            .interceptError = std::sqrt(std::max(profile->sigma2 * variance, 0.0))};
        if (rows.slope) {
            effect.slope = load[2] * first + load[3] * second;
        }
        effects.push_back(std::move(effect));
    }
    return effects;
}

std::vector<MultilevelClusterEffect> crossedEffects(const MultilevelRows& rows,
                                                    const MultilevelResult& result) {
    const std::vector<MultilevelVarianceComponent>& components = result.varianceComponents;
    if (components.size() != 3 || !(components[2].variance > 0.0)) {
        return {};
    }
    const double lambdaA = components[0].variance / components[2].variance;
    const double lambdaB = components[1].variance / components[2].variance;
    const ScaledDesign design(rows);
    const CrossedLikelihood likelihood(design, rows, criterionOf(rows, result));
    const auto profile = likelihood.at(lambdaA, lambdaB, hardwareThreads());
    if (!profile) {
        return {};
    }
    const std::vector<std::size_t> sizes = rows.cluster.sizes();
    std::vector<MultilevelClusterEffect> effects;
    for (const auto& departure : likelihood.departures(lambdaA, lambdaB, profile->beta)) {
        const std::size_t level = effects.size();
        effects.push_back({.cluster = rows.cluster.labels[level],
                           .n = static_cast<std::int64_t>(sizes[level]),
                           .intercept = departure.mean,
                           .interceptError = std::sqrt(profile->sigma2 * departure.variance)});
    }
    return effects;
}

}  // namespace

std::vector<MultilevelClusterEffect> clusterEffects(const MultilevelData& data,
                                                    const MultilevelOptions& options,
                                                    const MultilevelResult& result) {
    const std::optional<MultilevelRows> rows = MultilevelRows::of(data, options);
    if (!rows) {
        return {};
    }
    return data.cluster2 ? crossedEffects(*rows, result) : nestedEffects(*rows, options, result);
}

}  // namespace sorvane::MultilevelModel
