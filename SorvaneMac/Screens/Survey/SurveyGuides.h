#pragma once

#include "SorvaneCore/Survey/SurveyModel.h"
#include "SorvaneMac/Screens/Screen.h"

/// The coaching texts of models and tests under a sampling design.
namespace sorvane::SurveyGuides {

Guide ofModel(SurveyModelKind model);
Guide ofCorrelation();
Guide ofCrosstab();

}  // namespace sorvane::SurveyGuides
