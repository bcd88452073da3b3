#pragma once

#include <optional>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"
#include "SorvaneMac/Screens/TestReport.h"

/// Correlations under a sampling design as tables, text and a chart.
namespace sorvane::SurveyCorrelationReport {

/// Input      a run with at least one pair that is not blocked
TestReport report(const SurveyCorrelationRun& run);
/// What stands in place of a result of which every pair is blocked; absent where one is not.
std::optional<Gate> refusal(const SurveyCorrelationRun& run);

}  // namespace sorvane::SurveyCorrelationReport
