#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/DataReduction/DataReductionFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// The variables that all methods of Data Reduction take.
namespace sorvane::ReducedVariables {

/// What components, factors and omega need at the least.
inline constexpr std::int64_t fewestCases = 3;

/// The chosen ones that are numeric columns, in column order.
std::vector<std::string> names(const ImportedDataset& dataset, const DataReductionFields& fields);

std::vector<NumericColumn> columns(const ImportedDataset& dataset,
                                   const std::vector<std::string>& names);

/// Input      `label`: what the variables are called, such as "Items"
void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 DataReductionFields& fields,
                 std::string label);

/// The number of clusters under `countLabel`, and whether variables are standardized.
void addClusterControls(SetupForm& form, DataReductionFields& fields, std::string countLabel);

/// The gate of a chosen column that has gone.
std::optional<Gate> gone(const ImportedDataset& dataset, const DataReductionFields& fields);

/// Whether there are so many variables, all of which vary, and so many cases with all of them.
bool vary(const ImportedDataset& dataset,
          const DataReductionFields& fields,
          std::size_t fewestVariables);

/// Whether there are variables, and as many complete cases as clusters.
bool canCluster(const ImportedDataset& dataset, const DataReductionFields& fields);

/// "Cannot run clustering"
Gate cannotCluster();

/// "45.3%"
std::string percent(double share);

}  // namespace sorvane::ReducedVariables
