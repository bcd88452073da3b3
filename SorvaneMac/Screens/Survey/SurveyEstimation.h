#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

namespace sorvane {

/// A mean, total, proportion or ratio under the sampling design.
std::unique_ptr<Analysis> surveyEstimation(StudioState& state, SurveyFields& fields);

}  // namespace sorvane
