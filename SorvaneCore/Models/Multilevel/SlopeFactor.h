#pragma once

#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/RandomCovariance.h"

/// Covariances of an intercept and a slope by the entries of their factor (a, 0; b, c): a, b and c,
/// or a and c where the two do not correlate. An entry of 0 is no boundary.
namespace sorvane::SlopeFactor {

SlopeSpread full(std::span<const double> entries);

RandomCovariance covariance(std::span<const double> entries);
std::vector<double> entries(const RandomCovariance& g, bool correlated);

/// Whether the two random effects vary along one line at most.
///
/// Input      in units of the slope, relative to the residual deviation or on the scale of a link
/// Method     a or c below 1e-4, the usual package's limit, or next to b no more than rounding
bool isSingular(std::span<const double> entries);

}  // namespace sorvane::SlopeFactor
