#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"

/// What sets clusters apart, as figures.
namespace sorvane::MultilevelCharts {

/// What the lines of clusters stand on.
struct Lines {
    struct Range {
        double minimum = 0.0;
        double maximum = 0.0;
    };
    /// Of the slope's predictor, one per cluster.
    std::vector<Range> ranges;
    /// Of the slope's predictor, over all rows.
    double mean = 0.0;
    /// The linear predictor of the fixed effects where all predictors have their means.
    double level = 0.0;
};

/// The departures of a fitted model.
struct Departures {
    std::vector<MultilevelClusterEffect> clusters;
    /// Of the second factor's levels.
    std::vector<MultilevelClusterEffect> second;
    /// With a slope.
    std::optional<Lines> lines;
};

/// The lines of the clusters where there is a slope, then the clusters' intercepts, and those of
/// the second factor; none where the clusters do not differ.
std::vector<Chart> of(const MultilevelChoice& choice,
                      const MultilevelResult& result,
                      const Departures& departures);

}  // namespace sorvane::MultilevelCharts
