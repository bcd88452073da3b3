#pragma once

#include <cstdint>
#include <memory>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

/// A number cut into bands, each row with the label of its band.
///
/// Input      a number of bands below 1 counts as 1
/// Returns    the empty text for what is missing or not finite. Bounds have four decimals, so that
///            narrow bands can share a label
namespace sorvane::BinnedVariableBuilder {

/// Bands of one width from the smallest value to the largest.
///
/// Method     a value on an inner edge belongs to the upper band; equal values throughout make one
///            band, named by the value
/// Cost       O(rows + levels)
std::shared_ptr<const TextColumn> equalWidth(const NumericColumn& values, std::int64_t binCount);

/// Bands of about equally many rows, "1: 10.4 to 16.4" and so on.
///
/// Method     stable sort; the value at position p of n goes to band floor(p k / n) of k, at most
///            one a value. Tied values may fall into different bands
/// Cost       O(n log n)
std::shared_ptr<const TextColumn> quantile(const NumericColumn& values, std::int64_t binCount);

}  // namespace sorvane::BinnedVariableBuilder
