#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Survey/WeightedEstimators.h"
#include "SorvaneMac/Report/ReportItem.h"

/// Estimates under a sampling design as words, figures and cells of a table.
namespace sorvane::SurveyCells {

bool isBlocked(const WeightedEstimate& estimate);

/// "mean" and so on, and the same with a capital.
std::string_view word(WeightedEstimand estimand);
std::string_view capitalWord(WeightedEstimand estimand);
/// "Taylor linearization", "Replicate weights" or "Weights only (naive)".
std::string_view methodName(DesignVarianceMethod method);
/// "95% CI".
std::string levelText(double confidenceLevel);

/// A value on the scale of the estimate, with as many decimals as its kind takes.
std::string figure(const WeightedEstimate& estimate, double value);
/// Its standard error, with as many decimals as that, and two digits at least.
std::string errorFigure(const WeightedEstimate& estimate);
/// A sum of weights: one decimal, or two digits of a smaller one.
std::string weightSum(double sum);
/// "[1.25, 2.75]".
std::string interval(const WeightedEstimate& estimate);

/// The cells of one estimate: estimate, SE, limits, df, n and design effect; dashes where blocked.
std::vector<std::string> cells(const WeightedEstimate& estimate);
/// The heads of these cells, and above them that of the interval; `first` heads the rows.
void addHeaders(ReportTable& table, std::string first, double confidenceLevel);

}  // namespace sorvane::SurveyCells
