#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"

/// The analyses of Multivariate, each in the source file of its name.
namespace sorvane::MultivariateAnalyses {

/// The comparison of groups on several outcomes at once.
std::unique_ptr<Analysis> manova(StudioState& state, MultivariateFields& fields);

/// Linear functions of several variables that tell known groups apart.
std::unique_ptr<Analysis> discriminant(StudioState& state, MultivariateFields& fields);

/// How two sets of variables hang together.
std::unique_ptr<Analysis> canonicalCorrelation(StudioState& state, MultivariateFields& fields);

}  // namespace sorvane::MultivariateAnalyses
