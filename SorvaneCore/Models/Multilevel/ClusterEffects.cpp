#include <array>
#include <cmath>

#include "SorvaneCore/Models/Multilevel/ClusterDepartures.h"
#include "SorvaneCore/Models/Multilevel/ClusterSums.h"
#include "SorvaneCore/Models/Multilevel/CrossedLikelihood.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/NestedLikelihood.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::MultilevelModel {

namespace {

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

ClusterPosterior posteriorOf(const ClusterSums& sums,
                             std::size_t cluster,
                             const SlopeSpread& spread,
                             const std::array<double, 2>& residual) {
    const auto& [r00, r01, r11] = sums.triangle(cluster);
    // Of A, R times the factor, the precision is I + A'A, whose determinant 1 + |A|^2 + det(A)^2 adds
    // positive terms alone.
    const double a00 = r00 * spread.intercept + r01 * spread.along;
    const double a01 = r01 * spread.alone;
    const double a10 = r11 * spread.along;
    const double a11 = r11 * spread.alone;
    const double first = 1.0 + a00 * a00 + a10 * a10;
    const double volume = r00 * r11 * spread.intercept * spread.alone;
    const SmallFactor precision = SmallFactor::of(first, a00 * a01 + a10 * a11,
                                                  first + a01 * a01 + a11 * a11 + volume * volume);
    const std::array<double, 2> projected = {a00 * residual[0] + a10 * residual[1],
                                             a01 * residual[0] + a11 * residual[1]};
    return {.mean = precision.backward(precision.forward(projected)), .precision = precision};
}

std::vector<MultilevelClusterEffect> nestedEffects(const MultilevelRows& rows,
                                                   const MultilevelResult& result) {
    if (!result.spread || result.varianceComponents.size() != (rows.slope ? 3 : 2)) {
        return {};
    }
    const ClusterSpread& spread = *result.spread;
    const ScaledDesign design(rows);
    const ClusterSums sums(
        design, rows.cluster,
        rows.slope ? spread.scale.scaled(rows.predictors[*rows.slope]) : std::vector<double>{});
    const NestedLikelihood likelihood(sums, design, criterionOf(rows, result));
    const auto profile = likelihood.at(spread.factor.covariance());
    if (!profile) {
        return {};
    }
    std::vector<ClusterPosterior> posteriors;
    for (std::size_t c = 0; c < sums.clusterCount(); ++c) {
        posteriors.push_back(
            posteriorOf(sums, c, spread.factor, projectedResidual(sums, c, profile->beta)));
    }
    return ClusterDepartures::of(rows, spread, posteriors, std::sqrt(profile->sigma2));
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
    const auto departures = likelihood.departures(lambdaA, lambdaB, profile->beta);
    std::vector<MultilevelClusterEffect> effects = ClusterDepartures::named(rows);
    for (std::size_t level = 0; level < effects.size(); ++level) {
        effects[level].intercept = departures[level].mean;
        effects[level].interceptError = std::sqrt(profile->sigma2 * departures[level].variance);
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
    return data.cluster2 ? crossedEffects(*rows, result) : nestedEffects(*rows, result);
}

}  // namespace sorvane::MultilevelModel
