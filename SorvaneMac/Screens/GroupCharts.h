#pragma once

#include <span>
#include <string>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneMac/Screens/Chart.h"

/// Groups of values drawn side by side.
namespace sorvane::GroupCharts {

/// What the two axes are called.
struct Names {
    std::string outcome;
    std::string grouping;
};

/// The mean of each group with its 95 % interval.
Chart means(std::span<const NamedNumericGroup> groups, const Names& names);
/// A box plot of each group.
Chart boxes(std::span<const NamedNumericGroup> groups, const Names& names);
/// A box plot of each repeated measurement.
Chart measurementBoxes(std::span<const NamedNumericGroup> measurements);
/// The means of repeated measurements in their order, joined by a line, with 95 % intervals.
Chart profile(std::span<const NamedNumericGroup> conditions);

}  // namespace sorvane::GroupCharts
