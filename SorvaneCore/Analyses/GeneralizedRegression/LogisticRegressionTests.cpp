#include "SorvaneCore/Analyses/GeneralizedRegression/LogisticRegressionTests.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/GeneralizedRegression/GeneralizedRegressionWording.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/StandardizedDesign.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/WaldTest.h"
#include "SorvaneCore/Dataset/LabelOrder.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/NormalCritical.h"

namespace sorvane::LogisticRegressionTests {

namespace {

namespace wording = GeneralizedRegressionWording;
using Issues = std::vector<AnalysisReadinessIssue>;

constexpr double enoughEventsPerPredictor = 10.0;

AnalysisReadiness readiness(const StandardizedDesign& design, Issues issues) {
    return AnalysisReadiness::of(wording::logisticMinimum,
                                 static_cast<std::int64_t>(design.totalRows),
                                 static_cast<std::int64_t>(design.rows()), std::move(issues));
}

/// Why no fit is tried.
std::optional<std::string> obstacle(const StandardizedDesign& design, std::int64_t events) {
    const auto n = static_cast<std::int64_t>(design.rows());
    if (design.rows() <= design.cols) {
        return wording::tooFewCases(n, static_cast<std::int64_t>(design.cols));
    }
    if (events == 0 || events == n) {
        return wording::oneLevelOnly(events);
    }
    if (!design.isFinite()) {
        return wording::logisticNonFinite();
    }
    return design.hasFullRank ? std::nullopt : std::optional(wording::logisticSingular());
}

std::string failure(OptimizerStop stop) {
    switch (stop) {
        case OptimizerStop::diverged:
            return wording::separated();
        case OptimizerStop::nonFinite:
            return wording::logisticNonFinite();
        case OptimizerStop::iterationLimit:
            return wording::logisticBudget();
        default:
            return wording::logisticSingular();
    }
}

Issues cautions(const LogisticRegressionResult& result, std::size_t totalRows) {
    Issues issues;
    const std::int64_t rarer = std::min(result.events, result.n - result.events);
    if (static_cast<double>(rarer) / static_cast<double>(result.predictorCount) <
        enoughEventsPerPredictor) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::fewEvents(rarer, result.predictorCount)));
    }
    const std::int64_t dropped = static_cast<std::int64_t>(totalRows) - result.n;
    if (dropped >= 1) {
        issues.push_back(AnalysisReadinessIssue::caution(wording::rowsDropped(dropped)));
    }
    return issues;
}

LogisticCoefficient coefficient(std::string name, double estimate, double error, double critical) {
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
            .oddsRatio = std::exp(estimate),
            .oddsRatioLowerBound = std::exp(lower),
            .oddsRatioUpperBound = std::exp(upper)};
}

void fillLikelihoods(LogisticRegressionResult& result, double logLikelihood) {
    const auto n = static_cast<double>(result.n);
    const auto events = static_cast<double>(result.events);
    result.logLikelihood = logLikelihood;
    result.nullLogLikelihood =
        events * std::log(events / n) + (n - events) * std::log1p(-events / n);
    result.residualDeviance = -2.0 * result.logLikelihood;
    result.nullDeviance = -2.0 * result.nullLogLikelihood;
    result.mcFaddenR2 = 1.0 - result.logLikelihood / result.nullLogLikelihood;
}

void fillCoefficients(LogisticRegressionResult& result,
                      const EstimatesWithErrors& fit,
                      const LogisticRegressionOptions& options) {
    const double critical =
        normalCritical(1.0 - options.confidenceLevel, NormalCriticalSetting::wide);
    for (std::size_t j = 0; j < fit.estimates.size(); ++j) {
        result.coefficients.push_back(
            coefficient(j == 0 ? "Intercept" : options.predictorNames[j - 1], fit.estimates[j],
                        fit.standardErrors[j], critical));
    }
}

LogisticRegressionResult fitted(const StandardizedDesign& design,
                                const LogisticRegressionOptions& options) {
    LogisticRegressionResult result{
        .n = static_cast<std::int64_t>(design.rows()),
        .predictorCount = static_cast<std::int64_t>(design.means.size()),
        .events = std::ranges::count(design.outcome, 1.0)};
    const auto blocked = [&design](std::string message) {
        return readiness(design, {AnalysisReadinessIssue::blocked(std::move(message))});
    };
    if (std::optional<std::string> message = obstacle(design, result.events)) {
        result.readiness = blocked(std::move(*message));
        return result;
    }
    const OptimizerResult fit =
        IRLS::fit({.designMatrix = design.matrix,
                   .rows = design.rows(),
                   .cols = design.cols,
                   .response = design.outcome},
                  IRLS::Link::logit,
                  {.maxIterations = options.maxIterations, .tolerance = options.tolerance});
    result.converged = fit.converged;
    result.iterations = fit.iterations;
    if (!fit.converged) {
        result.readiness = blocked(failure(fit.stop));
        return result;
    }
    fillLikelihoods(result, fit.objective);
    fillCoefficients(result, design.inOwnUnits(fit.parameters, fit.inverseNegativeHessian, 1, -1.0),
                     options);
    result.readiness = readiness(design, cautions(result, design.totalRows));
    return result;
}

/// The labels of cells that are not missing, trimmed, each once.
std::vector<std::string> presentLabels(const TextColumn& column) {
    std::vector<std::string> labels;
    for (std::size_t code = 0; code < column.levelCount(); ++code) {
        if (!MissingValue::isMissing(column.level(code))) {
            labels.emplace_back(UnicodeText::trimmed(column.level(code)));
        }
    }
    std::ranges::sort(labels);
    labels.erase(std::unique(labels.begin(), labels.end()), labels.end());
    return labels;
}

}  // namespace

std::optional<LogisticRegressionResult> binaryLogistic(std::span<const NumericColumn> predictors,
                                                       const NumericColumn& outcome,
                                                       const LogisticRegressionOptions& options) {
    const std::optional<StandardizedDesign> design =
        StandardizedDesign::of(predictors, outcome, options.predictorNames);
    const auto isBinary = [](double y) {
        return y == 0.0 || y == 1.0;
    };
    return design && std::ranges::all_of(design->outcome, isBinary)
               ? std::optional(fitted(*design, options))
               : std::nullopt;
}

std::optional<LogisticRegressionResult> binaryLogistic(std::span<const NumericColumn> predictors,
                                                       const TextColumn& outcomeLabels,
                                                       const LogisticRegressionOptions& options) {
    if (presentLabels(outcomeLabels).empty()) {
        return binaryLogistic(
            predictors,
            NumericColumn(std::vector<std::optional<double>>(outcomeLabels.size(), std::nullopt)),
            options);
    }
    const std::optional<std::string> event = eventLabel(outcomeLabels);
    if (!event) {
        return std::nullopt;
    }
    std::vector<std::optional<double>> outcome(outcomeLabels.size());
    for (std::size_t row = 0; row < outcome.size(); ++row) {
        const std::string_view label = outcomeLabels[row];
        if (!MissingValue::isMissing(label)) {
            outcome[row] = UnicodeText::trimmed(label) == *event ? 1.0 : 0.0;
        }
    }
    return binaryLogistic(predictors, NumericColumn(std::move(outcome)), options);
}

std::optional<std::string> eventLabel(const TextColumn& outcomeLabels) {
    const std::vector<std::string> labels = presentLabels(outcomeLabels);
    if (labels.empty() || labels.size() > 2) {
        return std::nullopt;
    }
    const std::optional<double> first = numericCell(labels.front());
    const std::optional<double> last = numericCell(labels.back());
    if (first && last) {
        // A text that no cell has, where all of them are 0.
        return labels.size() == 1 && *first == 0.0
                   ? std::string()
                   : (*first > *last ? labels.front() : labels.back());
    }
    return labels[LabelOrder::caseInsensitive(labels).back()];
}

}  // namespace sorvane::LogisticRegressionTests
