#pragma once

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/Screens/TestReport.h"

/// An estimate under a sampling design as tables, text and a chart.
namespace sorvane::SurveyReport {

TestReport report(const SurveyRun& run);
/// What stands in place of a result that is blocked.
Gate refusal(const SurveyRun& run);

}  // namespace sorvane::SurveyReport
