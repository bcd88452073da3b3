#pragma once

#include <vector>

#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// What sets clusters apart, as figures.
namespace sorvane::MultilevelCharts {

/// The lines of the clusters where there is a slope, then the clusters' intercepts, and those of
/// the second factor; none where the clusters do not differ.
std::vector<Chart> of(const MultilevelRun& run);

/// Of the first of them.
std::string figureCaption(const MultilevelRun& run);

}  // namespace sorvane::MultilevelCharts
