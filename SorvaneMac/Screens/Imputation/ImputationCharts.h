#pragma once

#include <vector>

#include "SorvaneMac/Screens/Imputation/ImputationFields.h"

/// What a look at an imputation takes: are the values filled in like those observed, and have the
/// chains settled?
namespace sorvane::ImputationCharts {

/// The values of one variable of an imputation.
struct Values {
    std::string name;
    std::vector<double> observed;
    /// Of each copy, the cells filled in.
    std::vector<std::vector<double>> imputed;
    double observedMean = 0.0;
    double observedDeviation = 0.0;
};

/// Densities of the observed values and of the first copies; bars where there are few distinct
/// values.
Chart distribution(const Values& values);
/// The mean, and the deviation, of the values filled in after each sweep, a line a copy.
///
/// Input      `column`: its position among the columns of the trace
Chart traceOfMean(const Values& values, const ImputationTrace& trace, std::size_t column);
Chart traceOfDeviation(const Values& values, const ImputationTrace& trace, std::size_t column);

}  // namespace sorvane::ImputationCharts
