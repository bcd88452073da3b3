#pragma once

#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"
#include "SorvaneMac/Screens/Chart.h"

/// Structural models as path diagrams: latent variables as ellipses, observed ones as boxes.
/// Variances are not drawn.
namespace sorvane::StructuralDiagram {

/// Before it is fitted; fixed coefficients are written on their paths.
Chart ofModel(const SEMModel& model);

/// With the standardized solution on the paths.
Chart ofResult(const SEMResult& result);

}  // namespace sorvane::StructuralDiagram
