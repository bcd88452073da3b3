#include "SorvaneCore/Models/Structural/SEMSearches.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::SEMSearches {

namespace {

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

}  // namespace

std::vector<double> freeUnits(const SEMModel& model, std::span<const double> units) {
    std::vector<double> result;
    for (std::size_t slot = 0; slot < units.size(); ++slot) {
        if (model.parameters[slot].isFree) {
            result.push_back(units[slot]);
        }
    }
    return result;
}

std::vector<SEMSearch> further(const SEMSearch& first,
                               const SEMModel& model,
                               const ReticularModel& form,
                               std::span<const double> correlations) {
    const std::vector<StandIns> standIns = loadings(model, form);
    const ComponentTurns component = componentTurns(standIns, correlations, form);
    std::vector<double> inFactors = freeUnits(model, form.units(component.units));
    for (double& unit : inFactors) {
        unit = 1.0 / unit;
    }
    std::vector<SEMSearch> searches = {first};
    const auto add = [&](std::span<const double> signs, const std::vector<double>& units) {
        SEMSearch search{.start = turned(first.start, standIns, signs), .units = units};
        for (std::size_t i = 0; i < units.size(); ++i) {
            search.start[i] /= units[i];
        }
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

}  // namespace sorvane::SEMSearches
