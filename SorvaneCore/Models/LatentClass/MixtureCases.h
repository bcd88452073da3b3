#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Numerics/SplitMix64.h"

/// What mixtures of numbers share about their cases.
namespace sorvane::MixtureCases {

/// Half of ln(2 pi).
inline constexpr double logNormalConstant = 0.9189385332046727;

/// The columns in the rows in which all of them have a finite number.
std::vector<std::vector<double>> finiteRows(std::span<const NumericColumn> indicators);

/// Rows for the classes of one start; a row is drawn again, up to 20 times, where it has been chosen
/// already.
std::vector<std::size_t> drawRows(SplitMix64& random, std::size_t classes, std::size_t rows);

/// 1 minus the entropy of the posteriors relative to that of knowing nothing, within [0, 1].
///
/// Input      two or more classes
double relativeEntropy(const std::vector<std::vector<double>>& posteriors, std::int64_t classes);

}  // namespace sorvane::MixtureCases
