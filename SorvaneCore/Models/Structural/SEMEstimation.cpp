#include "SorvaneCore/Models/Structural/SEMEstimation.h"

#include <cmath>
#include <utility>

#include "SorvaneCore/Models/Structural/SEMDiscrepancy.h"
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

/// The start with each loading turned to the sign of the correlation that its indicator has with
/// the marker of the factor.
std::vector<double> turnedStart(const SEMModel& model,
                                const ReticularModel& form,
                                std::span<const double> correlations,
                                std::vector<double> start) {
    const std::vector<std::optional<std::size_t>> markers = form.markers(model);
    for (std::size_t slot = 0; slot < model.parameters.size(); ++slot) {
        const SEMParameterSlot& each = model.parameters[slot];
        const auto indicator = markers[form.entries()[slot].row];
        const auto marker = markers[form.entries()[slot].column];
        if (each.kind != SEMParameterKind::loading || !each.isFree || !indicator || !marker) {
            continue;
        }
        double& value = start[static_cast<std::size_t>(each.freeIndex)];
        value = std::copysign(value, correlations[*indicator * form.observedCount() + *marker]);
    }
    return start;
}

/// Whether a search ended in a minimum; one that can hardly move any more may be elsewhere.
bool isMinimum(const BFGSMinimizer::Result& found) {
    constexpr double flat = 1e-3;
    return found.converged && found.gradientNorm < flat;
}

BFGSMinimizer::Result minimum(const SEMModel& model,
                              const ReticularModel& form,
                              std::span<const double> correlations,
                              SEMDiscrepancy& discrepancy) {
    const auto searchFrom = [&](const std::vector<double>& start) {
        constexpr BFGSMinimizer::Limits limits{.maxIterations = 300, .gradientTolerance = 1e-7};
        return BFGSMinimizer::minimize(
            start, [&](std::span<const double> point) { return discrepancy.value(point); },
            [&](std::span<const double> point) { return discrepancy.gradient(point); }, limits);
    };
    const std::vector<double> start = initialParameters(model, form, correlations);
    BFGSMinimizer::Result first = searchFrom(start);
    const std::vector<double> turned = turnedStart(model, form, correlations, start);
    if (isMinimum(first) || turned == start) {
        return first;
    }
    BFGSMinimizer::Result second = searchFrom(turned);
    return isMinimum(second) && second.objective < first.objective ? second : first;
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
    const std::vector<double> units = form.units(model, sample.standardDeviations);
    SEMDiscrepancy discrepancy(form, fixedValues(model, units), freeSlots(model),
                               sample.correlations, sample.logDeterminant);
    const BFGSMinimizer::Result found = minimum(model, form, sample.correlations, discrepancy);
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
    if (auto moments = form.moments(result.coefficients)) {
        result.covariance = std::move(moments->covariance);
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
