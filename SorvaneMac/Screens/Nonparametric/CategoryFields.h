#pragma once

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/Screens/SetupForm.h"

/// The two categorical columns of a table.
namespace sorvane::CategoryFields {

void addControls(SetupForm& form, const ImportedDataset& dataset, NonparametricFields& fields);

/// The column that the field names, which must be there.
const TextColumn& column(const ImportedDataset& dataset, const Field<VariableName>& field);

}  // namespace sorvane::CategoryFields
