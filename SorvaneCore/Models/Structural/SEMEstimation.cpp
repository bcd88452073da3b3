#include "SorvaneCore/Models/Structural/SEMEstimation.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

#include "SorvaneCore/Models/Structural/SEMDiscrepancy.h"
#include "SorvaneCore/Models/Structural/SEMSearches.h"
#include "SorvaneCore/Numerics/BFGSMinimizer.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

std::optional<SEMUnitSample> SEMUnitSample::of(std::span<const double> covariance, std::size_t p) {
    if (p == 0) {
        return std::nullopt;
    }
    SEMUnitSample sample{.correlations = {covariance.begin(), covariance.end()}};
    for (std::size_t i = 0; i < p; ++i) {
        sample.standardDeviations.push_back(std::sqrt(covariance[i * p + i]));
        if (!(sample.standardDeviations.back() > 0.0)) {
            return std::nullopt;
        }
    }
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < p; ++j) {
            sample.correlations[i * p + j] /=
                sample.standardDeviations[i] * sample.standardDeviations[j];
        }
    }
    const auto logDeterminant = LinearAlgebra::logAbsDeterminant(sample.correlations, p);
    // Among correlations the test of the inverse tells collinear variables from rounding.
    if (!logDeterminant || !LinearAlgebra::invert(sample.correlations, p)) {
        return std::nullopt;
    }
    sample.logDeterminant = *logDeterminant;
    return sample;
}

std::vector<double> SEMUnitSample::covariance() const {
    const std::size_t p = standardDeviations.size();
    std::vector<double> result = correlations;
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < p; ++j) {
            result[i * p + j] *= standardDeviations[i] * standardDeviations[j];
        }
    }
    return result;
}

namespace SEMEstimation {

namespace {

constexpr double leastDiscrepancy = -1e-6;

/// The value that a free coefficient starts from.
double startOf(SEMParameterKind kind, double meanVariance, double ownVariance) {
    constexpr double loadingShare = 0.7;
    switch (kind) {
        case SEMParameterKind::loading:
            return loadingShare * std::sqrt(meanVariance);
        case SEMParameterKind::latentVariance:
        case SEMParameterKind::structuralResidualVariance:
            return 0.5 * meanVariance;
        case SEMParameterKind::residualVariance:
            return 0.5 * ownVariance;
        default:
            return 0.0;
    }
}

std::vector<bool> freeSlots(const SEMModel& model) {
    std::vector<bool> result;
    for (const SEMParameterSlot& slot : model.parameters) {
        result.push_back(slot.isFree);
    }
    return result;
}

/// The values of fixed slots, in units of the sample.
std::vector<double> fixedValues(const SEMModel& model, std::span<const double> units) {
    std::vector<double> result;
    for (const SEMParameterSlot& slot : model.parameters) {
        result.push_back(slot.fixedValue / units[result.size()]);
    }
    return result;
}

/// Whether a search ended in a minimum; one that can hardly move any more may be elsewhere.
bool isMinimum(const BFGSMinimizer::Result& found) {
    constexpr double flat = 1e-3;
    return found.converged && found.gradientNorm < flat;
}

/// Whether a free variance came out negative.
bool hasNegativeVariance(const SEMModel& model, std::span<const double> parameters) {
    return std::ranges::any_of(model.parameters, [parameters](const SEMParameterSlot& slot) {
        const bool isVariance =
            slot.op == rawValue(SEMSyntaxOperator::covariance) && slot.lhs == slot.rhs;
        return isVariance && slot.isFree &&
               parameters[static_cast<std::size_t>(slot.freeIndex)] < 0.0;
    });
}

/// Each of a list times that of another.
std::vector<double> product(std::span<const double> a, std::span<const double> b) {
    std::vector<double> result(a.size());
    std::ranges::transform(a, b, result.begin(), std::multiplies<>());
    return result;
}

std::vector<double> quotient(std::span<const double> a, std::span<const double> b) {
    std::vector<double> result(a.size());
    std::ranges::transform(a, b, result.begin(), std::divides<>());
    return result;
}

/// A search whose steps are taken in other units; the start and what is found are in those of the
/// sample.
BFGSMinimizer::Result searchIn(std::span<const double> units,
                               std::span<const double> start,
                               SEMDiscrepancy& discrepancy) {
    constexpr BFGSMinimizer::Limits limits{.maxIterations = 300, .gradientTolerance = 1e-7};
    const auto value = [&](std::span<const double> point) {
        return discrepancy.value(quotient(point, units));
    };
    const auto gradient = [&](std::span<const double> point) {
        return quotient(discrepancy.gradient(quotient(point, units)), units);
    };
    BFGSMinimizer::Result found =
        BFGSMinimizer::minimize(product(start, units), value, gradient, limits);
    found.parameters = quotient(found.parameters, units);
    const std::vector<double> slope = discrepancy.gradient(found.parameters);
    found.gradientNorm =
        std::sqrt(std::inner_product(slope.begin(), slope.end(), slope.begin(), 0.0));
    return found;
}

BFGSMinimizer::Result minimum(const SEMModel& model,
                              const ReticularModel& form,
                              const SEMUnitSample& sample,
                              std::span<const double> units,
                              SEMDiscrepancy& discrepancy) {
    SEMSearch first{.start = initialParameters(model, form, sample.correlations)};
    first.units.assign(first.start.size(), 1.0);
    BFGSMinimizer::Result best = searchIn(first.units, first.start, discrepancy);
    const auto isSound = [&] {
        return isMinimum(best) && !hasNegativeVariance(model, best.parameters);
    };
    if (isSound()) {
        return best;
    }
    const auto searchFurther = [&](const SEMSearch& search) {
        BFGSMinimizer::Result found = searchIn(search.units, search.start, discrepancy);
        if (isMinimum(found) && found.objective < best.objective) {
            best = std::move(found);
        }
    };
    for (const SEMSearch& search : SEMSearches::further(first, model, form, sample.correlations)) {
        searchFurther(search);
        if (isSound()) {
            break;
        }
    }
    if (!isMinimum(best)) {
        const std::vector<double> inData = SEMSearches::freeUnits(model, units);
        searchFurther(
            {quotient(initialParameters(model, form, sample.covariance()), inData), inData});
    }
    return best;
}

/// In units of the data.
std::vector<std::optional<double>> standardErrors(const SEMModel& model,
                                                  std::span<const double> units,
                                                  const std::optional<std::vector<double>>& inverse,
                                                  std::int64_t n) {
    std::vector<std::optional<double>> result(model.parameters.size());
    const auto count = static_cast<std::size_t>(model.freeCount);
    for (std::size_t slot = 0; inverse && slot < result.size(); ++slot) {
        if (!model.parameters[slot].isFree) {
            continue;
        }
        const auto k = static_cast<std::size_t>(model.parameters[slot].freeIndex);
        const double variance = (*inverse)[k * count + k] / static_cast<double>(n);
        if (variance > 0.0) {
            result[slot] = std::sqrt(variance) * units[slot];
        }
    }
    return result;
}

}  // namespace

std::vector<double> initialParameters(const SEMModel& model,
                                      const ReticularModel& form,
                                      std::span<const double> covariance) {
    const std::size_t p = form.observedCount();
    double meanVariance = 0.0;
    for (std::size_t i = 0; i < p; ++i) {
        meanVariance += covariance[i * p + i] / static_cast<double>(p);
    }
    std::vector<double> start;
    for (std::size_t slot = 0; slot < model.parameters.size(); ++slot) {
        const std::size_t row = form.entries()[slot].row;
        const double ownVariance = row < p ? covariance[row * p + row] : meanVariance;
        if (model.parameters[slot].isFree) {
            start.push_back(startOf(model.parameters[slot].kind, meanVariance, ownVariance));
        }
    }
    return start;
}

SEMEstimates estimate(const SEMModel& model,
                      const ReticularModel& form,
                      const SEMUnitSample& sample,
                      std::int64_t n) {
    const std::vector<double> variableUnits = form.variableUnits(model, sample.standardDeviations);
    const std::vector<double> units = form.units(variableUnits);
    SEMDiscrepancy discrepancy(form, fixedValues(model, units), freeSlots(model),
                               sample.correlations, sample.logDeterminant);
    const BFGSMinimizer::Result found = minimum(model, form, sample, units, discrepancy);
    SEMEstimates result{.coefficients = discrepancy.coefficientsAt(found.parameters),
                        .discrepancy = found.objective,
                        .converged = found.converged && found.objective >= leastDiscrepancy &&
                                     found.objective < SEMDiscrepancy::unusable,
                        .iterations = found.iterations};
    for (std::size_t slot = 0; slot < units.size(); ++slot) {
        result.coefficients[slot] *= units[slot];
    }
    auto information = discrepancy.information(found.parameters);
    if (information) {
        information =
            LinearAlgebra::invert(*information, static_cast<std::size_t>(model.freeCount));
    }
    result.standardErrors = standardErrors(model, units, information, n);
    const auto moments = form.moments(discrepancy.coefficientsAt(found.parameters));
    if (moments && found.objective < SEMDiscrepancy::unusable) {
        result.covariance = ReticularModel::inUnits(moments->covariance, variableUnits);
    }
    return result;
}

std::vector<std::optional<double>> standardizedSolution(const ReticularModel& form,
                                                        std::span<const double> coefficients,
                                                        std::span<const double> covariance) {
    const auto deviation = [&](std::size_t variable) {
        return std::sqrt(covariance[variable * form.size() + variable]);
    };
    std::vector<std::optional<double>> result;
    for (const ReticularModel::Entry& entry : form.entries()) {
        const double row = deviation(entry.row);
        const double column = deviation(entry.column);
        const double factor = entry.isDirected ? column / row : 1.0 / (row * column);
        const double value = coefficients[result.size()] * factor;
        result.push_back(std::isfinite(value) ? std::optional(value) : std::nullopt);
    }
    return result;
}

}  // namespace SEMEstimation

}  // namespace sorvane
