#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"

/// Every sentence of an assumption audit.
namespace sorvane::AssumptionWording {

/// Whose normality is in question.
enum class NormalityContext { group, differences, variable, residuals };

std::string normality(const AssumptionFinding& finding, std::int64_t n, NormalityContext context);
std::vector<AssumptionRemedy> normalityRemedies(NormalityContext context);

/// Of whole degrees of freedom.
std::string leveneLabel(double df1, double df2);
std::string equalVariances(double pValue, bool isViolated);
std::vector<AssumptionRemedy> equalVariancesRemedies();

std::string breuschPaganLabel(std::int64_t df);
std::string constantErrorVariance(double pValue, bool isViolated);
std::vector<AssumptionRemedy> constantErrorVarianceRemedies();

std::string multicollinearity(double vif, std::string_view name, AssumptionSeverity severity);
std::vector<AssumptionRemedy> multicollinearityRemedies();

}  // namespace sorvane::AssumptionWording
