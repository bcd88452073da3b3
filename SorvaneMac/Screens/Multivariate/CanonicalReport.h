#pragma once

#include <vector>

#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

/// A canonical correlation analysis as tables and charts.
namespace sorvane::CanonicalReport {

/// The functions, their tests, and for each set the coefficients and loadings.
std::vector<ReportTable> tables(const CanonicalCorrelationResult& result);

/// The cases on the first pair of variates.
Chart scores(const CanonicalCorrelationResult& result);

}  // namespace sorvane::CanonicalReport
