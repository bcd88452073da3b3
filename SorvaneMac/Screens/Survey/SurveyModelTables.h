#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"

/// The tables of a regression under a sampling design.
namespace sorvane::SurveyModelTables {

/// The coefficients without the intercept, in the order of the predictors.
std::vector<SurveyCoefficient> slopes(const SurveyModelResult& result);

ReportTable coefficients(const SurveyModelRun& run);
/// Of ordinal models.
ReportTable thresholds(const SurveyModelRun& run);
ReportTable summary(const SurveyModelRun& run);
/// The predictors again with less and less of the design.
ReportTable comparison(const SurveyModelRun& run);

}  // namespace sorvane::SurveyModelTables
