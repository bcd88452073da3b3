#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// The coefficient of a predictor whose exponential is a ratio: of odds or of rates.
struct RatioEffect {
    std::string name;
    double estimate = 0.0;
    double standardError = 0.0;
    double z = 0.0;
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    double ratio = 1.0;
    double ratioLowerBound = 1.0;
    double ratioUpperBound = 1.0;
};

/// The coefficients of a model, of which the first is the intercept, as a report tells them.
namespace RatioEffects {

/// Input      `symbol` is "OR" or "RR"
ReportTable coefficientTable(const std::vector<RatioEffect>& coefficients,
                             const std::string& symbol);

/// A sentence for each predictor, with a space before each.
std::string sentences(const std::vector<RatioEffect>& coefficients, const std::string& symbol);

/// The predictors with their intervals on the scale of the coefficients.
Chart chart(const std::vector<RatioEffect>& coefficients, const std::string& scale);

}  // namespace RatioEffects

}  // namespace sorvane
