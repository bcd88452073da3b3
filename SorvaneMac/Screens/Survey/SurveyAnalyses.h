#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

/// What can be asked under a sampling design.
namespace sorvane::SurveyAnalyses {

/// A mean, total, proportion or ratio.
std::unique_ptr<Analysis> estimates(StudioState& state, SurveyFields& fields);
/// A regression of the kind, for the population.
std::unique_ptr<Analysis> model(SurveyModelKind kind, StudioState& state, SurveyFields& fields);
std::unique_ptr<Analysis> correlation(StudioState& state, SurveyFields& fields);
std::unique_ptr<Analysis> crosstab(StudioState& state, SurveyFields& fields);

}  // namespace sorvane::SurveyAnalyses
