#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

/// What models, correlations and tables under a design ask for beside it, and what they still lack.
namespace sorvane::SurveyModelSelection {

/// The chosen predictors that are offered, less the outcome, in column order.
std::vector<std::string> predictors(const ImportedDataset& dataset, const SurveyFields& fields);
/// The chosen variables of a matrix of correlations, in column order.
std::vector<std::string> correlated(const ImportedDataset& dataset, const SurveyFields& fields);

void addModel(SetupForm& form,
              const ImportedDataset& dataset,
              SurveyFields& fields,
              SurveyModelKind model);
void addCorrelation(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields);
void addCrosstab(SetupForm& form, const ImportedDataset& dataset, SurveyFields& fields);

/// What keeps each from running, the design aside.
std::optional<Gate> modelGate(const ImportedDataset& dataset,
                              const SurveyFields& fields,
                              SurveyModelKind model);
std::optional<Gate> correlationGate(const ImportedDataset& dataset, const SurveyFields& fields);
std::optional<Gate> crosstabGate(const ImportedDataset& dataset, const SurveyFields& fields);

/// Fills what is blank of these selections.
void seed(const ImportedDataset& dataset, SurveyFields& fields);

}  // namespace sorvane::SurveyModelSelection
