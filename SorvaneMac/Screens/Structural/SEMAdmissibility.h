#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"

/// Covariances that no data could have.
namespace sorvane::SEMAdmissibility {

/// A sentence for each correlation, of variables or residuals, beyond 1, and one where those that are
/// not cannot occur together. Negative variances are told by the engine.
std::vector<std::string> cautions(const SEMResult& result);

}  // namespace sorvane::SEMAdmissibility
