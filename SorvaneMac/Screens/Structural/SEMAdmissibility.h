#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"

/// Covariances that no data could have.
namespace sorvane::SEMAdmissibility {

/// A sentence for each correlation, of variables or residuals, beyond 1, and one for each group of
/// variables that covary whose covariances cannot occur together though none is beyond 1 by itself.
/// Groups with a variance of 0 or less are left out; of negative ones the engine tells.
std::vector<std::string> cautions(const SEMResult& result);

}  // namespace sorvane::SEMAdmissibility
