#include "SorvaneCore/Survey/SurveyVariance.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::SurveyVariance {

namespace {

/// Score sums of the primary sampling units that have an active row.
struct UnitSums {
    /// Units by p.
    std::vector<double> sums;
    std::vector<bool> isActive;
    /// Per stratum: the number of active units, and the population's count.
    std::vector<double> activeUnits;
    std::vector<double> populationUnits;
};

UnitSums unitSums(std::span<const double> u,
                  const SampledDesign& sampled,
                  std::size_t p,
                  std::span<const std::size_t> activeRows) {
    const SampledUnits& units = sampled.units;
    const auto& fpc = sampled.design.fpc;
    UnitSums result{.sums = std::vector<double>(units.stratumOfUnit.size() * p, 0.0),
                    .isActive = std::vector<bool>(units.stratumOfUnit.size(), false),
                    .activeUnits = std::vector<double>(units.stratumCount, 0.0),
                    .populationUnits = std::vector<double>(units.stratumCount, 0.0)};
    for (const std::size_t row : activeRows) {
        const std::size_t unit = units.unitOfRow[row];
        const std::size_t stratum = units.stratumOfRow[row];
        if (!result.isActive[unit]) {
            result.isActive[unit] = true;
            result.activeUnits[stratum] += 1.0;
        }
        if (fpc && result.populationUnits[stratum] == 0.0) {
            result.populationUnits[stratum] = (*fpc)[row];
        }
        for (std::size_t j = 0; j < p; ++j) {
            result.sums[unit * p + j] += u[row * p + j];
        }
    }
    return result;
}

/// What each stratum multiplies its sum of squares by; 0 for a stratum of one unit.
std::vector<double> stratumFactors(const UnitSums& units) {
    std::vector<double> factors(units.activeUnits.size(), 0.0);
    for (std::size_t h = 0; h < factors.size(); ++h) {
        const double n = units.activeUnits[h];
        const double population = units.populationUnits[h];
        if (n >= 2.0) {
            factors[h] = n / (n - 1.0);
            factors[h] *= population > 0.0 ? std::max(1.0 - n / population, 0.0) : 1.0;
        }
    }
    return factors;
}

/// What the sum of squares over R replicates is multiplied by.
double replicateFactor(const ReplicateWeights& replicates, double count) {
    const double kept = 1.0 - replicates.fayRho;
    switch (replicates.type) {
        case ReplicateType::jackknife:
            return (count - 1.0) / count;
        case ReplicateType::fayBRR:
            return 1.0 / (count * kept * kept);
        case ReplicateType::balancedRepeatedReplication:
            break;
    }
    return 1.0 / count;
}

}  // namespace

std::vector<double> scoreCovariance(std::span<const double> u,
                                    const SurveyDesign& design,
                                    std::size_t p) {
    std::vector<std::size_t> rows(design.weights.size());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    return scoreCovariance(u, SampledDesign::of(design), p, rows);
}

std::vector<double> scoreCovariance(std::span<const double> u,
                                    const SampledDesign& sampled,
                                    std::size_t p,
                                    std::span<const std::size_t> activeRows) {
    const UnitSums units = unitSums(u, sampled, p, activeRows);
    std::vector<double> means(sampled.units.stratumCount * p, 0.0);
    for (std::size_t unit = 0; unit < units.isActive.size(); ++unit) {
        const std::size_t stratum = sampled.units.stratumOfUnit[unit];
        for (std::size_t j = 0; units.isActive[unit] && j < p; ++j) {
            means[stratum * p + j] += units.sums[unit * p + j] / units.activeUnits[stratum];
        }
    }
    const std::vector<double> factors = stratumFactors(units);
    std::vector<double> covariance(p * p, 0.0);
    std::vector<double> deviation(p);
    for (std::size_t unit = 0; unit < units.isActive.size(); ++unit) {
        const std::size_t stratum = sampled.units.stratumOfUnit[unit];
        if (!units.isActive[unit] || factors[stratum] == 0.0) {
            continue;
        }
        for (std::size_t j = 0; j < p; ++j) {
            deviation[j] = units.sums[unit * p + j] - means[stratum * p + j];
        }
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t j = 0; j < p; ++j) {
                covariance[i * p + j] += factors[stratum] * deviation[i] * deviation[j];
            }
        }
    }
    return covariance;
}

std::int64_t comparedUnits(const SampledDesign& sampled, std::span<const std::size_t> activeRows) {
    const UnitSums units = unitSums({}, sampled, 0, activeRows);
    const std::vector<double> factors = stratumFactors(units);
    std::int64_t compared = 0;
    for (std::size_t h = 0; h < factors.size(); ++h) {
        compared += factors[h] > 0.0 ? static_cast<std::int64_t>(units.activeUnits[h]) - 1 : 0;
    }
    return compared;
}

std::optional<DesignCovariance> replicateCovariance(
    std::span<const std::optional<std::vector<double>>> estimates,
    const ReplicateWeights& replicates,
    std::span<const double> full) {
    const std::size_t p = full.size();
    const double factor = replicateFactor(replicates, static_cast<double>(estimates.size()));
    DesignCovariance result{.values = std::vector<double>(p * p, 0.0), .scales = 0.0};
    for (std::size_t r = 0; r < estimates.size(); ++r) {
        if (!estimates[r]) {
            ++result.replicatesWithoutEstimates;
            continue;
        }
        const double scale = replicates.replicateScale ? (*replicates.replicateScale)[r] : factor;
        result.scales += scale;
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t j = 0; j < p; ++j) {
                result.values[i * p + j] +=
                    scale * ((*estimates[r])[i] - full[i]) * ((*estimates[r])[j] - full[j]);
            }
        }
    }
    const bool isAny = result.replicatesWithoutEstimates < std::ssize(estimates);
    return isAny ? std::optional(std::move(result)) : std::nullopt;
}

std::vector<double> sandwich(std::span<const double> bread,
                             std::span<const double> meat,
                             std::size_t p) {
    return multiply(multiply(bread, meat, p), bread, p);
}

std::vector<double> multiply(std::span<const double> a, std::span<const double> b, std::size_t p) {
    return LinearAlgebra::multiply(a, p, p, b, p);
}

}  // namespace sorvane::SurveyVariance
