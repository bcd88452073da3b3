#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// A comparison of a factor between groups as figures, tables and charts.
namespace sorvane::InvarianceReport {

/// What the models say together, then each comparison.
std::string sentence(const InvarianceResult& result);

std::vector<Tile> tiles(const InvarianceResult& result);

/// The fit of the models, their comparisons, the loadings and intercepts of each group, which
/// items would fit better freed, and how far the factor means lie apart.
std::vector<ReportTable> tables(const InvarianceResult& result);

/// The loadings of each group side by side.
std::vector<Chart> charts(const InvarianceResult& result);

}  // namespace sorvane::InvarianceReport
