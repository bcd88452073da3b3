#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <utility>

#include "SorvaneCore/Models/Structural/ReticularModel.h"
#include "SorvaneCore/Models/Structural/SEMEstimation.h"
#include "SorvaneCore/Models/Structural/SEMFitMeasures.h"
#include "SorvaneCore/Models/Structural/SEMModelSpecParser.h"
#include "SorvaneCore/Models/Structural/SEMWording.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::StructuralEquationModel {

namespace {

constexpr std::int64_t fewestCases = 3;
constexpr std::int64_t fewCasesBelow = 100;
constexpr std::int64_t casesPerParameter = 5;
constexpr double leastVariance = -1e-8;

using Issues = std::vector<AnalysisReadinessIssue>;

/// What is known of a result before anything is estimated.
SEMResult outlineOf(const SEMModel& model, std::int64_t n) {
    const auto p = static_cast<std::int64_t>(model.observed.size());
    SEMResult result{.n = n,
                     .freeParameters = model.freeCount,
                     .observed = model.observed,
                     .latent = model.latent};
    result.fit.degreesOfFreedom = p * (p + 1) / 2 - model.freeCount;
    return result;
}

SEMResult blocked(SEMResult outline, std::int64_t totalRows, std::string why) {
    outline.readiness = AnalysisReadiness::of(SEMWording::blockedMinimum(), totalRows, outline.n,
                                              {AnalysisReadinessIssue::blocked(std::move(why))});
    return outline;
}

SEMParameter parameterOf(const SEMParameterSlot& slot,
                         double estimate,
                         std::optional<double> standardError,
                         std::optional<double> standardized) {
    SEMParameter parameter{.lhs = slot.lhs,
                           .op = slot.op,
                           .rhs = slot.rhs,
                           .label = slot.lhs + " " + slot.op + " " + slot.rhs,
                           .estimate = estimate,
                           .standardError = standardError,
                           .standardized = standardized,
                           .isFixed = !slot.isFree};
    if (standardError) {
        parameter.z = estimate / *standardError;
        parameter.pValue = std::clamp(
            2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(*parameter.z))), 0.0, 1.0);
    }
    return parameter;
}

void setParameters(SEMResult& result,
                   const SEMModel& model,
                   const SEMEstimates& estimates,
                   std::span<const std::optional<double>> standardized) {
    for (std::size_t slot = 0; slot < model.parameters.size(); ++slot) {
        result.parameters.push_back(
            parameterOf(model.parameters[slot], estimates.coefficients[slot],
                        estimates.standardErrors[slot], standardized[slot]));
    }
}

/// Of the variables whose variance came out negative.
std::vector<std::string> negativeVariances(const SEMResult& result) {
    std::vector<std::string> names;
    for (const SEMParameter& parameter : result.parameters) {
        if (parameter.op == "~~" && parameter.lhs == parameter.rhs &&
            parameter.estimate < leastVariance) {
            names.push_back(parameter.lhs);
        }
    }
    return names;
}

Issues issuesOf(const SEMResult& result) {
    Issues issues;
    if (!result.converged) {
        issues.push_back(AnalysisReadinessIssue::blocked(SEMWording::notConverged()));
    }
    if (result.n < fewCasesBelow) {
        issues.push_back(AnalysisReadinessIssue::caution(SEMWording::fewCases()));
    }
    if (result.n < casesPerParameter * result.freeParameters) {
        issues.push_back(AnalysisReadinessIssue::caution(SEMWording::fewCasesPerParameter()));
    }
    const std::vector<std::string> negative = negativeVariances(result);
    if (!negative.empty()) {
        issues.push_back(AnalysisReadinessIssue::caution(SEMWording::negativeVariances(negative)));
    }
    return issues;
}

/// Independent variables of the observed variances: only ln|S| is left of F.
double baselineDiscrepancy(const SEMUnitSample& sample) {
    return -sample.logDeterminant;
}

SEMResult fitted(const SEMModel& model,
                 const SEMSampleCovariance& covariance,
                 const SEMUnitSample& sample) {
    const std::size_t p = model.observed.size();
    const ReticularModel form(model);
    const SEMEstimates estimates = SEMEstimation::estimate(model, form, sample, covariance.n);
    SEMResult result = outlineOf(model, covariance.n);
    if (!estimates.covariance) {
        return blocked(std::move(result), covariance.totalRows, SEMWording::noImpliedCovariance());
    }
    result.discrepancy = estimates.discrepancy;
    result.converged = estimates.converged;
    result.iterations = estimates.iterations;
    setParameters(
        result, model, estimates,
        SEMEstimation::standardizedSolution(form, estimates.coefficients, *estimates.covariance));
    result.fit = SEMFitMeasures::indices({.discrepancy = estimates.discrepancy,
                                          .baselineDiscrepancy = baselineDiscrepancy(sample),
                                          .degreesOfFreedom = result.fit.degreesOfFreedom,
                                          .observedCount = static_cast<std::int64_t>(p),
                                          .n = covariance.n});
    result.fit.srmr =
        SEMFitMeasures::computeSRMR(form.observedPart(*estimates.covariance), covariance.matrix, p);
    result.readiness = AnalysisReadiness::of(SEMWording::fittedMinimum(), covariance.totalRows,
                                             covariance.n, issuesOf(result));
    return result;
}

/// The standard deviation that a fitted model gives each variable, from its variance in either unit;
/// 1 where that does not say.
std::vector<double> deviations(const ReticularModel& form, const SEMResult& result) {
    std::vector<double> deviation(form.size(), 1.0);
    for (std::size_t slot = 0; slot < result.parameters.size(); ++slot) {
        const ReticularModel::Entry& entry = form.entries()[slot];
        const SEMParameter& parameter = result.parameters[slot];
        if (entry.isDirected || entry.row != entry.column || !parameter.standardized) {
            continue;
        }
        const double variance = parameter.estimate / *parameter.standardized;
        if (variance > 0.0 && std::isfinite(variance)) {
            deviation[entry.row] = std::sqrt(variance);
        }
    }
    return deviation;
}

}  // namespace

std::optional<SEMResult> fit(std::string_view model,
                             std::span<const NumericColumn> columns,
                             std::span<const std::string> variableNames) {
    const SEMModel built = SEMModel::build(SEMModelSpecParser::parse(model), variableNames);
    const auto covariance = sampleCovariance(built.observed, columns, variableNames);
    if (!covariance) {
        return std::nullopt;
    }
    SEMResult outline = outlineOf(built, covariance->n);
    const auto sample = covariance->n < fewestCases
                            ? std::nullopt
                            : SEMUnitSample::of(covariance->matrix, built.observed.size());
    if (!sample) {
        return blocked(std::move(outline), covariance->totalRows,
                       SEMWording::notPositiveDefinite());
    }
    if (outline.fit.degreesOfFreedom < 0) {
        return blocked(std::move(outline), covariance->totalRows, SEMWording::notIdentified());
    }
    return fitted(built, *covariance, *sample);
}

std::optional<std::vector<double>> impliedCovariance(std::string_view model,
                                                     const SEMResult& result,
                                                     std::span<const std::string> variableNames) {
    const SEMModel built = SEMModel::build(SEMModelSpecParser::parse(model), variableNames);
    if (result.parameters.size() != built.parameters.size()) {
        return std::nullopt;
    }
    std::vector<double> coefficients;
    for (const SEMParameter& parameter : result.parameters) {
        const SEMParameterSlot& slot = built.parameters[coefficients.size()];
        if (slot.lhs != parameter.lhs || slot.op != parameter.op || slot.rhs != parameter.rhs ||
            !std::isfinite(parameter.estimate)) {
            return std::nullopt;
        }
        coefficients.push_back(parameter.estimate);
    }
    const ReticularModel form(built);
    const std::vector<double> variableUnits = deviations(form, result);
    const std::vector<double> units = form.units(variableUnits);
    std::ranges::transform(coefficients, units, coefficients.begin(), std::divides<>());
    const auto moments = form.moments(coefficients);
    return moments ? std::optional(form.observedPart(
                         ReticularModel::inUnits(moments->covariance, variableUnits)))
                   : std::nullopt;
}

std::optional<double> logDeterminantSPD(std::span<const double> covariance, std::size_t p) {
    const std::optional<SEMUnitSample> sample = SEMUnitSample::of(covariance, p);
    if (!sample) {
        return std::nullopt;
    }
    double sum = sample->logDeterminant;
    for (const double deviation : sample->standardDeviations) {
        sum += 2.0 * std::log(deviation);
    }
    return sum;
}

}  // namespace sorvane::StructuralEquationModel
