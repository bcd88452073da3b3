#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Screens/Chart.h"

/// The coefficients of a model as a figure.
namespace sorvane::RegressionCharts {

/// One row per predictor on the scale of the log odds or log rates, where 0 is no effect.
Chart coefficients(std::vector<IntervalPlot::Row> rows, const std::string& scale);

}  // namespace sorvane::RegressionCharts
