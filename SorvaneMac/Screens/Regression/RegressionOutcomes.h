#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/VariableLists.h"

/// What each model of Regression asks of its outcome.
namespace sorvane::RegressionOutcomes {

/// The variables that can be the model's outcome: numeric ones for a linear model, two-valued ones
/// for a logistic one, whole numbers from 0 for a Poisson one, numbers of a few levels for an
/// ordinal one.
VariableLists::List candidates(const ImportedDataset& dataset, RegressionModel model);

/// What the model asks of its outcome, in a sentence; empty for the linear model.
std::string_view requirement(RegressionModel model);

/// The gate of a chosen outcome that the model cannot take; absent for a candidate.
std::optional<Gate> unsuitable(const ImportedDataset& dataset,
                               RegressionModel model,
                               const std::string& outcome);

/// The coaching text of one model.
Guide guideOf(RegressionModel model);

}  // namespace sorvane::RegressionOutcomes
