#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// The outcome and the predictors, which all models of Regression share.
namespace sorvane::RegressionSelection {

/// The chosen predictors that are numeric columns, less the outcome, in column order.
std::vector<std::string> predictors(const StudioState& state, const RegressionFields& fields);

/// Their cells as numbers.
std::vector<NumericColumn> predictorColumns(const StudioState& state,
                                            const std::vector<std::string>& predictors);

void addControls(SetupForm& form,
                 const StudioState& state,
                 RegressionFields& fields,
                 RegressionModel model);

/// "score on age and hours"
std::string selection(const StudioState& state, const RegressionFields& fields);

/// What is missing before the model can run.
std::optional<Gate> gate(const StudioState& state,
                         const RegressionFields& fields,
                         RegressionModel model);

}  // namespace sorvane::RegressionSelection
