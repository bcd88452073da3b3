#pragma once

#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/State/StudioState.h"

/// What imputation does to the workspace. Each says in `impMessage` what it did.
namespace sorvane::ImputationRuns {

/// Imputes by the method chosen: several copies in the background, or new columns at once.
///
/// Input      selections without a gate
void run(StudioState& state, ImputationFields& fields);

/// Adds for each target a column with the mean of its copies.
///
/// Input      a result that fits the table
void addExploratoryCompletedColumns(StudioState& state, const ImputationFields& fields);

/// Whether the last result is still one of this table: it has the rows, and the targets with the
/// cells that were read.
bool fits(const ImputationRun& run, const ImportedDataset& dataset);

}  // namespace sorvane::ImputationRuns
