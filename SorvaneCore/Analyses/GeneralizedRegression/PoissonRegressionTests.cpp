#include "SorvaneCore/Analyses/GeneralizedRegression/PoissonRegressionTests.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/GeneralizedRegression/GeneralizedRegressionWording.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/StandardizedDesign.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/WaldTest.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/NormalCritical.h"

namespace sorvane::PoissonRegressionTests {

namespace {

namespace wording = GeneralizedRegressionWording;
using Issues = std::vector<AnalysisReadinessIssue>;

constexpr double enoughCasesPerPredictor = 10.0;
constexpr double strongDispersion = 1.5;

AnalysisReadiness readiness(const StandardizedDesign& design, Issues issues) {
    return AnalysisReadiness::of(wording::poissonMinimum,
                                 static_cast<std::int64_t>(design.totalRows),
                                 static_cast<std::int64_t>(design.rows()), std::move(issues));
}

/// Why no fit is tried.
std::optional<std::string> obstacle(const StandardizedDesign& design) {
    if (design.rows() <= design.cols) {
        return wording::tooFewCases(static_cast<std::int64_t>(design.rows()),
                                    static_cast<std::int64_t>(design.cols));
    }
    if (!design.isFinite()) {
        return wording::poissonNonFinite();
    }
    return design.hasFullRank ? std::nullopt : std::optional(wording::poissonSingular());
}

std::string failure(OptimizerStop stop) {
    switch (stop) {
        case OptimizerStop::diverged:
            return wording::poissonDiverged();
        case OptimizerStop::nonFinite:
            return wording::poissonNonFinite();
        case OptimizerStop::iterationLimit:
            return wording::poissonBudget();
        default:
            return wording::poissonSingular();
    }
}

Issues cautions(const PoissonRegressionResult& result, std::size_t totalRows) {
    Issues issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (static_cast<double>(result.n) / static_cast<double>(result.predictorCount) <
        enoughCasesPerPredictor) {
        caution(wording::fewCasesPerPredictor(result.n, result.predictorCount));
    }
    if (result.dispersion > strongDispersion) {
        caution(wording::overdispersed(result.dispersion));
    }
    const std::int64_t dropped = static_cast<std::int64_t>(totalRows) - result.n;
    if (dropped >= 1) {
        caution(wording::rowsDropped(dropped));
    }
    return issues;
}

PoissonCoefficient coefficient(std::string name, double estimate, double error, double critical) {
    const WaldTest test = WaldTest::of(estimate, error);
    const double lower = estimate - critical * error;
    const double upper = estimate + critical * error;
    return {.name = std::move(name),
            .estimate = estimate,
            .standardError = error,
            .z = test.z,
            .pValue = test.pValue,
            .lowerBound = lower,
            .upperBound = upper,
            .rateRatio = std::exp(estimate),
            .rateRatioLowerBound = std::exp(lower),
            .rateRatioUpperBound = std::exp(upper)};
}

void fillLikelihoods(PoissonRegressionResult& result,
                     const StandardizedDesign& design,
                     const OptimizerResult& fit) {
    const std::vector<double> logRates =
        LinearAlgebra::multiply(design.matrix, design.rows(), design.cols, fit.parameters, 1);
    double logLikelihood = 0.0;
    double halfDeviance = 0.0;
    for (std::size_t row = 0; row < design.rows(); ++row) {
        const double y = design.outcome[row];
        const double logRate = std::max(logRates[row], IRLS::smallestLogRate);
        const double rate = std::exp(logRate);
        logLikelihood += y * logRate - rate - std::lgamma(y + 1.0);
        halfDeviance += (y > 0.0 ? y * (std::log(y) - logRate) : 0.0) - (y - rate);
    }
    result.logLikelihood = logLikelihood;
    result.residualDeviance = 2.0 * halfDeviance;
    result.dispersion =
        result.residualDeviance / static_cast<double>(result.residualDegreesOfFreedom);
}

void fillCoefficients(PoissonRegressionResult& result,
                      const EstimatesWithErrors& fit,
                      const PoissonRegressionOptions& options) {
    const double critical =
        normalCritical(1.0 - options.confidenceLevel, NormalCriticalSetting::wide);
    for (std::size_t j = 0; j < fit.estimates.size(); ++j) {
        result.coefficients.push_back(
            coefficient(j == 0 ? "Intercept" : options.predictorNames[j - 1], fit.estimates[j],
                        fit.standardErrors[j], critical));
    }
}

PoissonRegressionResult fitted(const StandardizedDesign& design,
                               const PoissonRegressionOptions& options) {
    const auto n = static_cast<std::int64_t>(design.rows());
    PoissonRegressionResult result{.n = n,
                                   .predictorCount = static_cast<std::int64_t>(design.means.size()),
                                   .residualDegreesOfFreedom = std::max<std::int64_t>(
                                       0, n - static_cast<std::int64_t>(design.cols))};
    const auto blocked = [&design](std::string message) {
        return readiness(design, {AnalysisReadinessIssue::blocked(std::move(message))});
    };
    if (std::optional<std::string> message = obstacle(design)) {
        result.readiness = blocked(std::move(*message));
        return result;
    }
    const OptimizerResult fit = IRLS::fit(
        {.designMatrix = design.matrix,
         .rows = design.rows(),
         .cols = design.cols,
         .response = design.outcome},
        IRLS::Link::log, {.maxIterations = options.maxIterations, .tolerance = options.tolerance});
    result.converged = fit.converged;
    result.iterations = fit.iterations;
    if (!fit.converged) {
        result.readiness = blocked(failure(fit.stop));
        return result;
    }
    fillLikelihoods(result, design, fit);
    fillCoefficients(result, design.inOwnUnits(fit.parameters, fit.inverseNegativeHessian, 1, -1.0),
                     options);
    result.readiness = readiness(design, cautions(result, design.totalRows));
    return result;
}

}  // namespace

std::optional<PoissonRegressionResult> poisson(std::span<const NumericColumn> predictors,
                                               const NumericColumn& outcome,
                                               const PoissonRegressionOptions& options) {
    const std::optional<StandardizedDesign> design =
        StandardizedDesign::of(predictors, outcome, options.predictorNames);
    const auto isCount = [](double y) {
        return std::isfinite(y) && y >= 0.0 && y == std::floor(y);
    };
    return design && std::ranges::all_of(design->outcome, isCount)
               ? std::optional(fitted(*design, options))
               : std::nullopt;
}

}  // namespace sorvane::PoissonRegressionTests
