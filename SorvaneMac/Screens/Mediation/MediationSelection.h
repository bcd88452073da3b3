#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneMac/Screens/Mediation/MediationFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// X, the mediator or moderator, Y and the covariates, which both analyses choose alike.
namespace sorvane::MediationSelection {

/// Input      `method`: how the effect is judged
void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 MediationFields& fields,
                 std::string_view method);

/// What keeps the chosen analysis from running.
std::optional<Gate> gate(const ImportedDataset& dataset, const MediationFields& fields);

/// The names as they stand in the fields, the covariates in column order.
MediationVariables variables(const ImportedDataset& dataset, const MediationFields& fields);

/// "dose → trust → use" or "dose × age → use", with the covariates after it.
///
/// Input      `mode`: whether the middle one is a mediator or a moderator
std::string words(const MediationVariables& variables, MediationScreenMode mode);

/// The columns of those names.
struct Columns {
    NumericColumn x;
    NumericColumn middle;
    NumericColumn y;
    std::vector<NumericColumn> covariates;
};
Columns columns(const ImportedDataset& dataset, const MediationVariables& variables);

/// What is shown where a run has no result.
///
/// Input      `mode`: what could not be estimated
Gate noResult(const MediationVariables& variables, MediationScreenMode mode);

/// Whether there are just two different values.
bool areTwoValued(const std::vector<double>& values);

/// Adds what must be said of a column with two values that a linear model explains.
void addTwoValued(std::vector<std::string>& remarks,
                  const std::string& name,
                  const std::vector<double>& values);

/// "B = 0.412, SE = 0.052, t(96) = 7.92, p < .001"
///
/// Input      the residual degrees of freedom
std::string pathText(const MediationPath& path, std::int64_t df);

}  // namespace sorvane::MediationSelection
