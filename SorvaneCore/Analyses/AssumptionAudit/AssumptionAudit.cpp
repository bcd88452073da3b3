#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionWording.h"
#include "SorvaneCore/Analyses/AssumptionAudit/BreuschPagan.h"
#include "SorvaneCore/Analyses/AssumptionAudit/DenseColumns.h"
#include "SorvaneCore/Analyses/AssumptionAudit/ModelResiduals.h"
#include "SorvaneCore/Analyses/AssumptionAudit/VarianceInflation.h"
#include "SorvaneCore/Analyses/Basics/HomogeneityTests.h"
#include "SorvaneCore/Analyses/Basics/NormalityTests.h"

namespace sorvane::AssumptionAudit {

namespace {

using AssumptionWording::NormalityContext;
using Findings = std::vector<AssumptionFinding>;

constexpr double cautionBelow = 0.05;
constexpr double violationBelow = 0.01;
constexpr double cautionVIF = 5.0;
constexpr double violationVIF = 10.0;

AssumptionSeverity normalitySeverity(double pValue) {
    if (pValue < violationBelow) {
        return AssumptionSeverity::violation;
    }
    return pValue < cautionBelow ? AssumptionSeverity::caution : AssumptionSeverity::pass;
}

void addNormality(Findings& findings,
                  std::span<const double> values,
                  std::string target,
                  NormalityContext context) {
    const auto test = NormalityTests::shapiroWilk(values);
    if (!test) {
        return;
    }
    AssumptionFinding finding{.check = "Normality",
                              .target = std::move(target),
                              .statisticLabel = "Shapiro-Wilk W",
                              .statistic = test->statistic,
                              .pValue = test->pValue,
                              .severity = normalitySeverity(test->pValue)};
    finding.explanation = AssumptionWording::normality(finding, test->n, context);
    if (finding.severity != AssumptionSeverity::pass) {
        finding.remedies = AssumptionWording::normalityRemedies(context);
    }
    findings.push_back(std::move(finding));
}

void addEqualVariances(Findings& findings, std::span<const NamedNumericGroup> groups) {
    const auto test = HomogeneityTests::leveneTest(groups, LeveneCenter::median);
    if (!test) {
        return;
    }
    const bool isViolated = test->pValue < cautionBelow;
    AssumptionFinding finding{
        .check = "Equal variances",
        .target = "All groups",
        .statisticLabel = AssumptionWording::leveneLabel(test->df1, test->df2),
        .statistic = test->statistic,
        .pValue = test->pValue,
        .severity = isViolated ? AssumptionSeverity::violation : AssumptionSeverity::pass,
        .explanation = AssumptionWording::equalVariances(test->pValue, isViolated)};
    if (isViolated) {
        finding.remedies = AssumptionWording::equalVariancesRemedies();
    }
    findings.push_back(std::move(finding));
}

void addConstantErrorVariance(Findings& findings,
                              std::span<const std::span<const double>> predictors,
                              std::span<const double> outcome) {
    const auto test = BreuschPagan::test(predictors, outcome);
    if (!test) {
        return;
    }
    const bool isViolated = test->koenkerPValue < cautionBelow;
    AssumptionFinding finding{
        .check = "Constant error variance",
        .target = "Model residuals",
        .statisticLabel = AssumptionWording::breuschPaganLabel(test->df),
        .statistic = test->koenkerStatistic,
        .pValue = test->koenkerPValue,
        .severity = isViolated ? AssumptionSeverity::violation : AssumptionSeverity::pass,
        .explanation = AssumptionWording::constantErrorVariance(test->koenkerPValue, isViolated)};
    if (isViolated) {
        finding.remedies = AssumptionWording::constantErrorVarianceRemedies();
    }
    findings.push_back(std::move(finding));
}

AssumptionSeverity collinearitySeverity(double vif) {
    if (vif >= violationVIF) {
        return AssumptionSeverity::violation;
    }
    return vif >= cautionVIF ? AssumptionSeverity::caution : AssumptionSeverity::pass;
}

void addMulticollinearity(Findings& findings,
                          std::span<const std::span<const double>> predictors,
                          std::span<const std::string> names) {
    const auto factors = VarianceInflation::factors(predictors, names);
    if (!factors) {
        return;
    }
    for (const VIFEntry& entry : *factors) {
        const AssumptionSeverity severity = collinearitySeverity(entry.vif);
        AssumptionFinding finding{
            .check = "Multicollinearity",
            .target = entry.name,
            .statisticLabel = "VIF",
            .statistic = entry.vif,
            .severity = severity,
            .explanation = AssumptionWording::multicollinearity(entry.vif, entry.name, severity)};
        if (severity != AssumptionSeverity::pass) {
            finding.remedies = AssumptionWording::multicollinearityRemedies();
        }
        findings.push_back(std::move(finding));
    }
}

Findings ordered(Findings findings) {
    std::ranges::stable_sort(findings, std::greater(), &AssumptionFinding::severity);
    return findings;
}

}  // namespace

Findings groupComparisonAudit(std::span<const NamedNumericGroup> groups) {
    Findings findings;
    for (const NamedNumericGroup& group : groups) {
        addNormality(findings, group.values, "Group " + group.name, NormalityContext::group);
    }
    addEqualVariances(findings, groups);
    return ordered(std::move(findings));
}

Findings pairedAudit(std::span<const double> differences) {
    Findings findings;
    addNormality(findings, differences, "Paired differences", NormalityContext::differences);
    return findings;
}

Findings correlationAudit(std::span<const std::vector<double>> variables,
                          std::span<const std::string> names) {
    Findings findings;
    if (variables.size() != names.size()) {
        return findings;
    }
    for (std::size_t i = 0; i < variables.size(); ++i) {
        addNormality(findings, variables[i], names[i], NormalityContext::variable);
    }
    return ordered(std::move(findings));
}

Findings regressionAudit(std::span<const NumericColumn> predictors,
                         std::span<const std::string> predictorNames,
                         const NumericColumn& outcome) {
    Findings findings;
    if (predictors.empty() || predictorNames.size() != predictors.size() ||
        !haveOneLength(predictors, outcome.size())) {
        return findings;
    }
    const DenseColumns columns = DenseColumns::of(predictors, &outcome);
    const std::vector<std::span<const double>> dense = columns.predictorSpans();
    if (const auto residuals = ModelResiduals::of(dense, columns.outcome)) {
        addNormality(findings, *residuals, "Model residuals", NormalityContext::residuals);
    }
    addConstantErrorVariance(findings, dense, columns.outcome);
    addMulticollinearity(findings, dense, predictorNames);
    return ordered(std::move(findings));
}

}  // namespace sorvane::AssumptionAudit
