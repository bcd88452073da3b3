#pragma once

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"
#include "SorvaneMac/Screens/TestReport.h"

/// A regression under a sampling design as tables, text and a chart.
namespace sorvane::SurveyModelReport {

/// Input      a result that is not blocked
TestReport report(const SurveyModelRun& run);
/// What stands in place of a result that is blocked or absent.
Gate refusal(const SurveyModelRun& run);

}  // namespace sorvane::SurveyModelReport
