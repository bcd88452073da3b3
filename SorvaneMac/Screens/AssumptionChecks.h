#pragma once

#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// Findings about assumptions as a screen shows them.
namespace sorvane::AssumptionChecks {

/// A card with a line per finding: its severity, statistic, explanation and remedies.
Card card(const std::vector<AssumptionFinding>& findings);

/// Whether a remedy of these findings points at the procedure.
bool hints(const std::vector<AssumptionFinding>& findings, std::string_view procedure);

}  // namespace sorvane::AssumptionChecks
