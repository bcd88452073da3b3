#pragma once

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"
#include "SorvaneMac/Screens/TestReport.h"

/// A table of two variables under a sampling design as tables, text and a chart.
namespace sorvane::SurveyCrosstabReport {

/// Input      a result that is not blocked
TestReport report(const SurveyCrosstabRun& run);
/// What stands in place of a result that is blocked.
Gate refusal(const SurveyCrosstabRun& run);

}  // namespace sorvane::SurveyCrosstabReport
