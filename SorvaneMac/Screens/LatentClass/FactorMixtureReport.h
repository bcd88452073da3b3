#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Models/FactorMixtureModel.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// A factor mixture as figures, tables and a chart; `names` are those of the indicators, one each.
namespace sorvane::FactorMixtureReport {

std::string sentence(const FactorMixtureResult& result);

std::vector<Tile> tiles(const FactorMixtureResult& result);

/// The classes with their sizes, their means on the indicators, the factor, and the fit.
std::vector<ReportTable> tables(const FactorMixtureResult& result,
                                const std::vector<std::string>& names);

/// The means of each class, in standard deviations within the classes about their mean.
Chart interceptPlot(const FactorMixtureResult& result, const std::vector<std::string>& names);

}  // namespace sorvane::FactorMixtureReport
