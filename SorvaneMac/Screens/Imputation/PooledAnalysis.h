#pragma once

#include <optional>

#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// An analysis of every imputed copy, pooled by Rubin's rules.
namespace sorvane::PooledAnalysis {

/// Its selections and its button.
void addControls(SetupForm& form, StudioState& state, ImputationFields& fields);
/// What keeps it from running.
std::optional<Gate> gate(const ImputationFields& fields);
/// Runs it on the copies that there are; called only without a gate. Says in `impMessage` where
/// there is no result.
void run(StudioState& state, ImputationFields& fields);
/// Adds the last result as a card and a finding, where there is one.
void show(const ImputationFields& fields, ScreenContent& content);

}  // namespace sorvane::PooledAnalysis
