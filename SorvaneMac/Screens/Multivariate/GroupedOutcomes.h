#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

/// Several numeric variables and the column of their groups, as MANOVA and discriminant analysis
/// take them.
namespace sorvane::GroupedOutcomes {

/// The numeric variables less the grouping factor.
VariableLists::List candidates(const ImportedDataset& dataset, const MultivariateFields& fields);

/// The chosen ones among them, in column order.
std::vector<std::string> chosen(const ImportedDataset& dataset, const MultivariateFields& fields);

/// Input      `label`: what the variables are called, such as "Outcomes"
void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 MultivariateFields& fields,
                 std::string label);

/// A factor and variables that are there, two groups, two variables, and more complete cases than
/// both together; else `unsuitable`.
std::optional<Gate> gate(const ImportedDataset& dataset,
                         const MultivariateFields& fields,
                         const Gate& unsuitable);

}  // namespace sorvane::GroupedOutcomes
