#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

/// A discriminant analysis as tables and charts.
namespace sorvane::DiscriminantReport {

/// The functions, their tests, coefficients and centroids, and where the cases are placed.
std::vector<ReportTable> tables(const DiscriminantResult& result);

/// The cases of each group on the first two functions, or on the only one.
Chart scores(const DiscriminantResult& result);

}  // namespace sorvane::DiscriminantReport
