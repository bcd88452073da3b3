#pragma once

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// Numbers that a file's format left in doubt.
namespace sorvane::ImplausibleCells {

/// Sets every implausible number of the columns that an import warned of to missing, and takes the
/// warning back. Other columns, and whatever else the import had to tell, stay as they are; so does
/// what the user has settled.
///
/// Method     a number of a magnitude above 1e300, or 2 to the power 127 as single-precision columns
///            print it. The column is classified anew: a role that was the inferred one follows, and
///            so does a scale range that was inferred or that such a number spoiled
void setToMissing(ImportedDataset& dataset);

}  // namespace sorvane::ImplausibleCells
