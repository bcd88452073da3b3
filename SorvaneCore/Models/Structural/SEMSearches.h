#pragma once

#include <span>
#include <vector>

#include "SorvaneCore/Models/Structural/ReticularModel.h"
#include "SorvaneCore/Models/Structural/SEMModel.h"

namespace sorvane {

/// Where a search for the minimum begins, and the units in which its steps are taken.
struct SEMSearch {
    /// Of the free coefficients, as are the units.
    std::vector<double> start{};
    std::vector<double> units{};

    bool operator==(const SEMSearch&) const = default;
};

/// Where else a minimum may lie that a first search did not find.
namespace SEMSearches {

/// Those of the free coefficients among the units of all slots.
std::vector<double> freeUnits(const SEMModel& model, std::span<const double> units);

/// What is left to be searched, the likeliest first: by the signs that correlations with the markers
/// have; then, in units in which a factor has a variance near 1 though its marker hardly loads, by
/// the signs of the components, by these with all doubtful factors turned against their markers, and
/// with each of them alone. None is the first search or stands twice.
///
/// Input      a first search in units of 1; the correlations of the observed variables
std::vector<SEMSearch> further(const SEMSearch& first,
                               const SEMModel& model,
                               const ReticularModel& form,
                               std::span<const double> correlations);

}  // namespace SEMSearches

}  // namespace sorvane
