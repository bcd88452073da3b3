#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"

/// The models of Regression, each in the source file of its name.
namespace sorvane::RegressionAnalyses {

/// Linear regression of a numeric outcome on numeric predictors.
std::unique_ptr<Analysis> linear(StudioState& state, RegressionFields& fields);

/// Logistic regression of an outcome with two values.
std::unique_ptr<Analysis> logistic(StudioState& state, RegressionFields& fields);

/// Poisson regression of a count.
std::unique_ptr<Analysis> poisson(StudioState& state, RegressionFields& fields);

/// Proportional-odds regression of an outcome of ordered levels.
std::unique_ptr<Analysis> ordinal(StudioState& state, RegressionFields& fields);

}  // namespace sorvane::RegressionAnalyses
