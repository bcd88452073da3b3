#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// Findings about assumptions as a screen shows them.
namespace sorvane::AssumptionChecks {

/// A card with a line per finding: its severity, statistic, explanation and remedies.
Card card(const std::vector<AssumptionFinding>& findings);

/// The hints of remedies that point at a procedure.
inline constexpr std::string_view welchHint = "welch";
inline constexpr std::string_view wilcoxonHint = "wilcoxonSignedRank";
inline constexpr std::string_view rankHint = "nonparametric";

/// The way to a rank test of the same outcome and groups.
ScreenLink rankTestLink(const std::string& test,
                        const std::string& outcome,
                        const std::string& grouping);

/// Whether a remedy of these findings points at the procedure.
bool hints(const std::vector<AssumptionFinding>& findings, std::string_view procedure);

}  // namespace sorvane::AssumptionChecks
