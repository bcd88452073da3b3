#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Survival/SurvivalFields.h"

/// The analyses of Survival, each in the source file of its name.
namespace sorvane::SurvivalAnalyses {

/// Survival curves, of all cases or of each stratum.
std::unique_ptr<Analysis> kaplanMeier(StudioState& state, SurvivalFields& fields);

/// Effects of predictors on the hazard.
std::unique_ptr<Analysis> coxRegression(StudioState& state, SurvivalFields& fields);

}  // namespace sorvane::SurvivalAnalyses
