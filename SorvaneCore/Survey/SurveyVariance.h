#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Survey/SurveyDesign.h"

/// How totals over a sample vary from one sample of the design to the next.
namespace sorvane::SurveyVariance {

/// Below, tests and intervals say little, and the reader is told.
inline constexpr std::int64_t fewDegreesOfFreedom = 15;
/// A variance that is a smaller part of the squared estimate comes of the sums' last digits.
inline constexpr double roundingOfSums = 1e-24;

/// The covariance of the summed score vectors.
///
/// Input      `u` of rows by p, row-major, one row per row of the design; a design without
///            structural errors
/// Method     linearization: sums of each primary sampling unit about their mean in the stratum,
///            times n / (n - 1) and, with population counts, max(1 - n / N, 0). A stratum of one
///            unit adds nothing
/// Returns    p by p, symmetric
/// Cost       O(rows * p + units * p^2)
/// Reference  Binder (1983), On the variances of asymptotically normal estimators from complex
///            surveys
std::vector<double> scoreCovariance(std::span<const double> u,
                                    const SurveyDesign& design,
                                    std::size_t p);

/// The same over some of the rows. Only units with such a row count.
std::vector<double> scoreCovariance(std::span<const double> u,
                                    const SampledDesign& sampled,
                                    std::size_t p,
                                    std::span<const std::size_t> activeRows);

/// By how many the units exceed the strata of some rows: how many estimates at most can vary each
/// in its own way. A stratum of one unit, or of all those of the population, adds nothing.
///
/// Cost       O(rows)
std::int64_t comparedUnits(const SampledDesign& sampled, std::span<const std::size_t> activeRows);

/// How estimates vary under a design.
struct DesignCovariance {
    /// p by p, symmetric.
    std::vector<double> values{};
    /// What an error of 1 in every replicate's estimate would add up to; 1 without replicates.
    double scales = 1.0;
    /// 0 where the design has no replicates.
    std::int64_t replicatesWithoutEstimates = 0;
};

/// The covariance of estimates that have been made again under replicate weights.
///
/// Input      one list per replicate, absent where it has no estimate; the full sample's estimates
/// Method     squares and products of deviations from the full sample's, times the replicate's
///            scale, or as the type says: (R - 1) / R, 1 / R, 1 / (R (1 - rho)^2), R all replicates
/// Failure    no replicate has an estimate -> absent
std::optional<DesignCovariance> replicateCovariance(
    std::span<const std::optional<std::vector<double>>> estimates,
    const ReplicateWeights& replicates,
    std::span<const double> full);

/// B M B of two p by p matrices.
std::vector<double> sandwich(std::span<const double> bread,
                             std::span<const double> meat,
                             std::size_t p);

/// A B of two p by p matrices.
std::vector<double> multiply(std::span<const double> a, std::span<const double> b, std::size_t p);

}  // namespace sorvane::SurveyVariance
