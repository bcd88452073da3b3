#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Mediation/MediationFields.h"

/// The analyses of Mediation & Moderation, each in the source file of its name.
namespace sorvane::MediationAnalyses {

/// The effect of X on Y by way of M.
std::unique_ptr<Analysis> simpleMediation(StudioState& state, MediationFields& fields);

/// The effect of X on Y at the levels of W.
std::unique_ptr<Analysis> moderation(StudioState& state, MediationFields& fields);

}  // namespace sorvane::MediationAnalyses
