#pragma once

#include <string>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Structural/StructuralFields.h"

/// What a fitted structural model says, on its screen and as a finding.
namespace sorvane::StructuralReport {

/// Adds tiles, cards and the finding. A fit that did not converge keeps its numbers; its finding says
/// so in its sentence, its caution and its diagram.
///
/// Input      a run whose result has estimates
void show(const StructuralRun& run, ScreenContent& content);

/// "chi-square(24) = 85.02, p < .001, CFI = .931, …": the fit in one line.
std::string fitText(const SEMResult& result);

/// The coefficients with the standardized solution.
ReportTable parameterTable(const SEMResult& result);

ReportTable fitTable(const SEMResult& result);

/// The share of each variable's variance that those acting on it explain; no rows where nothing acts.
ReportTable explainedVariance(const SEMResult& result);

/// The pairs whose correlation the model misses by .10 or more; no rows where there are none.
ReportTable residualCorrelations(const StructuralRun& run);

/// Whether an arrow of the model ends at the variable, so that its variance is that of a residual.
bool isActedOn(const SEMResult& result, const std::string& name);

/// The engine's cautions, and those that the solution as a whole asks for.
std::vector<std::string> cautions(const SEMResult& result);

}  // namespace sorvane::StructuralReport
