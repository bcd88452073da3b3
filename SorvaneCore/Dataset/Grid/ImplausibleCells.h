#pragma once

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// Numbers that a file's format left in doubt.
namespace sorvane::ImplausibleCells {

/// Sets every implausible number of the columns that an import warned of to missing, and takes the
/// warning back. What the user has settled about the variables stays.
///
/// Method     a number of a magnitude above 1e300, or 2 to the power 127 as single-precision columns
///            print it; a scale range that such a number spoiled is inferred anew, and so is a role
///            that nobody has changed
void setToMissing(ImportedDataset& dataset);

}  // namespace sorvane::ImplausibleCells
