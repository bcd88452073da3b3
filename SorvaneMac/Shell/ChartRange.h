#pragma once

#include <vector>

#include "SorvaneMac/Screens/Chart.h"

/// The span of what is to be drawn.
namespace sorvane::ChartRange {

/// Whether a value has a place in a plot: finite, and small enough to reckon with.
bool hasPlace(double value);

/// Holds no value until one is included.
ValueRange nothing();
void include(ValueRange& range, double value);
void include(ValueRange& range, const std::vector<double>& values);

/// From 0 to 1 where there was nothing to include; wider around a single value.
ValueRange drawable(ValueRange range);

/// A little air, so that no mark lies on the frame; none below a zero that nothing passes.
ValueRange padded(ValueRange range);

}  // namespace sorvane::ChartRange
