#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "SorvaneCore/Dataset/NumericColumn.h"

/// Cronbach's raw-score alpha: k/(k-1) (1 - sum of item variances / variance of the total), with
/// variances of n - 1 denominator. It is not clipped.
namespace sorvane::CronbachAlpha {

/// Input      items as columns; rows in which any of them is absent are left out
/// Failure    fewer than two items, fewer than two complete rows, a total whose variance is not
///            above 0 -> absent
/// Cost       O(n k)
std::optional<double> of(std::span<const NumericColumn* const> items);
std::optional<double> of(std::span<const NumericColumn> items);

/// The formula, from its parts.
std::optional<double> fromVariances(std::size_t itemCount,
                                    double sumOfItemVariances,
                                    double totalVariance);

}  // namespace sorvane::CronbachAlpha
