#pragma once

#include <optional>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/State/StudioState.h"

/// What a sampling design and an estimate ask for, and what they still lack.
namespace sorvane::SurveySelection {

/// The design's columns, and what is estimated under them.
void addDesign(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields);
void addEstimate(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields);

/// What is to be done under the design.
void addAnalysis(SetupForm& form, SurveyFields& fields);

/// Whether other screens take the weights, and the replicate weights.
void addFurther(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields);

/// What keeps the weights, strata and clusters from being a design.
std::optional<Gate> designGate(const ImportedDataset& dataset, const SurveyFields& fields);
/// What keeps the estimate from running, the design aside.
std::optional<Gate> estimateGate(const ImportedDataset& dataset, const SurveyFields& fields);

}  // namespace sorvane::SurveySelection
