#pragma once

#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

/// Whether the assumptions of a model look met, each with its statistic, what it says, and what
/// could be done.
///
/// Returns    violations first, then cautions, then what is met, otherwise in the order in which
///            they are checked; a check that cannot be made is left out
namespace sorvane::AssumptionAudit {

/// Normality within each group, then equal variances by Levene's test about the median.
std::vector<AssumptionFinding> groupComparisonAudit(std::span<const NamedNumericGroup> groups);

/// Normality of paired differences.
std::vector<AssumptionFinding> pairedAudit(std::span<const double> differences);

/// Normality of each variable.
///
/// Input      the present values of each
/// Failure    not as many names as variables -> no findings
std::vector<AssumptionFinding> correlationAudit(std::span<const std::vector<double>> variables,
                                                std::span<const std::string> names);

/// Normality and constant variance of the residuals, and the collinearity of the predictors.
///
/// Input      columns of one length; rows with an absent entry are left out
/// Failure    no predictor, names or lengths that do not match -> no findings
std::vector<AssumptionFinding> regressionAudit(std::span<const NumericColumn> predictors,
                                               std::span<const std::string> predictorNames,
                                               const NumericColumn& outcome);

}  // namespace sorvane::AssumptionAudit
