#include "SorvaneCore/Models/Structural/SEMEstimation.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numeric>
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

/// A loading with the observed variables that stand for its indicator and for its factor.
struct StandIns {
    const SEMParameterSlot* slot;
    std::size_t factor;
    std::size_t indicator;
    std::size_t marker;
};

std::vector<StandIns> loadings(const SEMModel& model, const ReticularModel& form) {
    const std::vector<std::optional<std::size_t>> markers = form.markers(model);
    std::vector<StandIns> result;
    for (std::size_t at = 0; at < model.parameters.size(); ++at) {
        const SEMParameterSlot& slot = model.parameters[at];
        const std::size_t factor = form.entries()[at].column;
        const auto indicator = markers[form.entries()[at].row];
        if (slot.kind == SEMParameterKind::loading && indicator && markers[factor]) {
            result.push_back({&slot, factor, *indicator, *markers[factor]});
        }
    }
    return result;
}

/// The start with each free loading of the sign that is given for it.
std::vector<double> turned(std::vector<double> start,
                           std::span<const StandIns> loadings,
                           std::span<const double> signs) {
    for (std::size_t at = 0; at < loadings.size(); ++at) {
        if (loadings[at].slot->isFree) {
            double& value = start[static_cast<std::size_t>(loadings[at].slot->freeIndex)];
            value = std::copysign(value, signs[at]);
        }
    }
    return start;
}

/// By the correlation that the indicator has with the marker of the factor.
std::vector<double> signsByMarker(std::span<const StandIns> loadings,
                                  std::span<const double> correlations,
                                  std::size_t variables) {
    std::vector<double> signs;
    for (const StandIns& each : loadings) {
        signs.push_back(correlations[each.indicator * variables + each.marker]);
    }
    return signs;
}

/// The loadings of some variables; all 1 where there is no component.
std::vector<double> firstComponent(std::span<const std::size_t> some,
                                   std::span<const double> correlations,
                                   std::size_t variables) {
    const std::size_t k = some.size();
    std::vector<double> matrix(k * k);
    for (std::size_t i = 0; i < k; ++i) {
        for (std::size_t j = 0; j < k; ++j) {
            matrix[i * k + j] = correlations[some[i] * variables + some[j]];
        }
    }
    const auto eigen = LinearAlgebra::symmetricEigen(matrix, k);
    if (!eigen) {
        return std::vector<double>(k, 1.0);
    }
    const auto largest = std::ranges::max_element(eigen->values) - eigen->values.begin();
    const auto place = static_cast<std::size_t>(largest);
    std::vector<double> result = eigen->vectors[place];
    for (double& entry : result) {
        entry *= std::sqrt(eigen->values[place]);
    }
    return result;
}

/// What the first component of each factor's indicators tells.
struct ComponentTurns {
    /// Of the loadings, beside that of the marker.
    std::vector<double> signs;
    /// For each factor whose marker hardly hangs together with the others, so that its own sign is
    /// chance: the places of its loadings.
    std::vector<std::vector<std::size_t>> doubtful{};
    /// For each variable; those of a factor in which it has a variance near 1, whatever its marker.
    std::vector<double> units;
};

ComponentTurns componentTurns(std::span<const StandIns> loadings,
                              std::span<const double> correlations,
                              const ReticularModel& form) {
    constexpr double doubtfulShare = 0.5;
    constexpr double smallestUnit = 0.03;
    std::map<std::size_t, std::vector<std::size_t>> ofFactor;
    for (std::size_t at = 0; at < loadings.size(); ++at) {
        ofFactor[loadings[at].factor].push_back(at);
    }
    ComponentTurns result{.signs = std::vector<double>(loadings.size(), 1.0),
                          .units = std::vector<double>(form.size(), 1.0)};
    for (const auto& [factor, own] : ofFactor) {
        std::vector<std::size_t> indicators;
        for (const std::size_t at : own) {
            indicators.push_back(loadings[at].indicator);
        }
        const std::vector<double> component =
            firstComponent(indicators, correlations, form.observedCount());
        const auto place = std::ranges::find(indicators, loadings[own.front()].marker);
        if (place == indicators.end()) {
            continue;
        }
        const double marker = component[static_cast<std::size_t>(place - indicators.begin())];
        double largest = 0.0;
        for (std::size_t i = 0; i < own.size(); ++i) {
            result.signs[own[i]] = marker < 0.0 ? -component[i] : component[i];
            largest = std::max(largest, std::abs(component[i]));
        }
        if (std::abs(marker) < doubtfulShare * largest) {
            result.doubtful.push_back(own);
        }
        result.units[factor] = std::max(std::abs(marker), smallestUnit);
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

/// Of the free coefficients.
std::vector<double> freeUnits(const SEMModel& model, std::span<const double> units) {
    std::vector<double> result;
    for (std::size_t slot = 0; slot < units.size(); ++slot) {
        if (model.parameters[slot].isFree) {
            result.push_back(units[slot]);
        }
    }
    return result;
}

/// Where a search begins, and the units in which its steps are taken.
struct Search {
    std::vector<double> start{};
    std::vector<double> units{};

    bool operator==(const Search&) const = default;
};

/// What is left to be searched, the likeliest first: by the signs that correlations with the markers
/// have; then, in units in which a factor has a variance near 1 though its marker hardly loads, by
/// the signs of the components, by these with all doubtful factors turned against their markers, and
/// with each of them alone. None is the first search or stands twice.
std::vector<Search> furtherSearches(const Search& first,
                                    const SEMModel& model,
                                    const ReticularModel& form,
                                    std::span<const double> correlations) {
    const std::vector<StandIns> standIns = loadings(model, form);
    const ComponentTurns component = componentTurns(standIns, correlations, form);
    const std::vector<double> inFactors =
        quotient(first.units, freeUnits(model, form.units(component.units)));
    std::vector<Search> searches = {first};
    const auto add = [&](std::span<const double> signs, const std::vector<double>& units) {
        Search search{.start = quotient(turned(first.start, standIns, signs), units),
                      .units = units};
        if (std::ranges::find(searches, search) == searches.end()) {
            searches.push_back(std::move(search));
        }
    };
    add(signsByMarker(standIns, correlations, form.observedCount()), first.units);
    add(component.signs, inFactors);
    const auto addTurned = [&](std::span<const std::vector<std::size_t>> factors) {
        std::vector<double> signs = component.signs;
        for (const std::vector<std::size_t>& factor : factors) {
            for (const std::size_t place : factor) {
                signs[place] = -signs[place];
            }
        }
        add(signs, inFactors);
    };
    addTurned(component.doubtful);
    for (const std::vector<std::size_t>& factor : component.doubtful) {
        addTurned({&factor, 1});
    }
    searches.erase(searches.begin());
    return searches;
}

BFGSMinimizer::Result minimum(const SEMModel& model,
                              const ReticularModel& form,
                              const SEMUnitSample& sample,
                              std::span<const double> units,
                              SEMDiscrepancy& discrepancy) {
    Search first{.start = initialParameters(model, form, sample.correlations)};
    first.units.assign(first.start.size(), 1.0);
    BFGSMinimizer::Result best = searchIn(first.units, first.start, discrepancy);
    const auto isSound = [&] {
        return isMinimum(best) && !hasNegativeVariance(model, best.parameters);
    };
    if (isSound()) {
        return best;
    }
    const auto searchFurther = [&](const Search& search) {
        BFGSMinimizer::Result found = searchIn(search.units, search.start, discrepancy);
        if (isMinimum(found) && found.objective < best.objective) {
            best = std::move(found);
        }
    };
    for (const Search& search : furtherSearches(first, model, form, sample.correlations)) {
        searchFurther(search);
        if (isSound()) {
            break;
        }
    }
    if (!isMinimum(best)) {
        const std::vector<double> inData = freeUnits(model, units);
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
