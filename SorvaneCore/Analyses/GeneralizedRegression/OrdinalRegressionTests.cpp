#include "SorvaneCore/Analyses/GeneralizedRegression/OrdinalRegressionTests.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "SorvaneCore/Analyses/GeneralizedRegression/GeneralizedRegressionWording.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/StandardizedDesign.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/WaldTest.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/OrdinalLikelihood.h"

namespace sorvane::OrdinalRegressionTests {

namespace {

namespace wording = GeneralizedRegressionWording;
using Issues = std::vector<AnalysisReadinessIssue>;

constexpr std::size_t fewestLevels = 3;
constexpr std::int64_t enoughCasesPerLevel = 10;
constexpr double enoughCasesPerParameter = 10.0;
/// Cumulative shares from which the thresholds start are held within these.
constexpr double smallestShare = 0.001;
constexpr double largestShare = 0.999;
constexpr double smallestStartingGap = 0.01;

/// An outcome as positions in its levels.
struct OrderedOutcome {
    std::vector<std::string> labels{};
    /// One per row of the design, counted from 0.
    std::vector<std::uint32_t> codes{};

    std::vector<std::int64_t> counts() const {
        std::vector<std::int64_t> result(labels.size(), 0);
        for (const std::uint32_t code : codes) {
            ++result[code];
        }
        return result;
    }
};

std::vector<double> startingThresholds(const std::vector<std::int64_t>& counts, std::size_t n) {
    std::vector<double> thresholds;
    std::int64_t upTo = 0;
    for (std::size_t j = 0; j + 1 < counts.size(); ++j) {
        upTo += counts[j];
        const double share = std::clamp(static_cast<double>(upTo) / static_cast<double>(n),
                                        smallestShare, largestShare);
        const double logit = std::log(share / (1.0 - share));
        thresholds.push_back(
            thresholds.empty() ? logit : std::max(logit, thresholds.back() + smallestStartingGap));
    }
    return thresholds;
}

OptimizerResult maximize(const StandardizedDesign& design,
                         const OrderedOutcome& outcome,
                         const OrdinalRegressionOptions& options) {
    const OrdinalLikelihood likelihood(design.matrix, design.cols, outcome.codes,
                                       outcome.labels.size());
    std::vector<double> start = startingThresholds(outcome.counts(), design.rows());
    start.resize(likelihood.parameterCount(), 0.0);
    return IRLS::dampedNewton(
        start, {.maxIterations = options.maxIterations, .tolerance = options.tolerance},
        [&likelihood](std::span<const double> parameters) { return likelihood.at(parameters); },
        [](std::span<const double> /*step*/) { return false; });
}

AnalysisReadiness readiness(const StandardizedDesign& design, Issues issues) {
    return AnalysisReadiness::of(wording::ordinalMinimum,
                                 static_cast<std::int64_t>(design.totalRows),
                                 static_cast<std::int64_t>(design.rows()), std::move(issues));
}

std::int64_t parameterCount(const OrdinalRegressionResult& result) {
    return result.levelCount - 1 + result.predictorCount;
}

/// Why no fit is tried.
std::optional<std::string> obstacle(const StandardizedDesign& design,
                                    const OrderedOutcome& outcome,
                                    const OrdinalRegressionResult& result) {
    if (result.n <= parameterCount(result)) {
        return wording::tooFewCases(result.n, parameterCount(result));
    }
    if (outcome.labels.size() < fewestLevels) {
        return wording::tooFewLevels(result.levelCount);
    }
    if (!design.isFinite()) {
        return wording::ordinalNonFinite();
    }
    if (!design.hasFullRank) {
        return wording::ordinalSingular();
    }
    // The likelihood of a level without cases grows until the thresholds beside it have crossed.
    return std::ranges::count(outcome.counts(), 0) > 0
               ? std::optional(wording::thresholdsDisordered())
               : std::nullopt;
}

std::string failure(OptimizerStop stop) {
    switch (stop) {
        case OptimizerStop::nonFinite:
            return wording::ordinalNonFinite();
        case OptimizerStop::iterationLimit:
            return wording::ordinalBudget();
        default:
            return wording::ordinalSingular();
    }
}

Issues cautions(const OrdinalRegressionResult& result,
                std::int64_t smallestLevel,
                std::size_t totalRows) {
    Issues issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (smallestLevel < enoughCasesPerLevel) {
        caution(wording::sparseLevel(smallestLevel));
    }
    const std::int64_t parameters = parameterCount(result);
    if (static_cast<double>(result.n) / static_cast<double>(parameters) < enoughCasesPerParameter) {
        caution(wording::fewCasesPerParameter(result.n, parameters));
    }
    caution(wording::proportionalOddsAssumed());
    const std::int64_t dropped = static_cast<std::int64_t>(totalRows) - result.n;
    if (dropped >= 1) {
        caution(wording::rowsDropped(dropped));
    }
    return issues;
}

void fillEstimates(OrdinalRegressionResult& result,
                   const EstimatesWithErrors& fit,
                   const std::vector<std::string>& labels,
                   const std::vector<std::string>& names) {
    const std::size_t thresholds = labels.size() - 1;
    for (std::size_t j = 0; j < thresholds; ++j) {
        result.thresholds.push_back({.name = labels[j] + "|" + labels[j + 1],
                                     .estimate = fit.estimates[j],
                                     .standardError = fit.standardErrors[j]});
    }
    for (std::size_t j = 0; j < names.size(); ++j) {
        const double estimate = fit.estimates[thresholds + j];
        const double error = fit.standardErrors[thresholds + j];
        const WaldTest test = WaldTest::of(estimate, error);
        result.predictorEffects.push_back({.name = names[j],
                                           .estimate = estimate,
                                           .standardError = error,
                                           .z = test.z,
                                           .pValue = test.pValue,
                                           .oddsRatio = std::exp(estimate)});
    }
}

OrdinalRegressionResult fitted(const StandardizedDesign& design,
                               const OrderedOutcome& outcome,
                               const OrdinalRegressionOptions& options) {
    OrdinalRegressionResult result{.n = static_cast<std::int64_t>(design.rows()),
                                   .predictorCount = static_cast<std::int64_t>(design.means.size()),
                                   .levelCount = static_cast<std::int64_t>(outcome.labels.size())};
    const auto blocked = [&design](std::string message) {
        return readiness(design, {AnalysisReadinessIssue::blocked(std::move(message))});
    };
    if (std::optional<std::string> message = obstacle(design, outcome, result)) {
        result.readiness = blocked(std::move(*message));
        return result;
    }
    const OptimizerResult fit = maximize(design, outcome, options);
    result.converged = fit.converged;
    result.iterations = fit.iterations;
    if (!fit.converged) {
        result.readiness = blocked(failure(fit.stop));
        return result;
    }
    result.logLikelihood = fit.objective;
    fillEstimates(result,
                  design.inOwnUnits(fit.parameters, fit.inverseNegativeHessian,
                                    outcome.labels.size() - 1, 1.0),
                  outcome.labels, options.predictorNames);
    result.readiness =
        readiness(design, cautions(result, std::ranges::min(outcome.counts()), design.totalRows));
    return result;
}

/// The distinct values of the outcome as levels, ascending.
OrderedOutcome byValue(const std::vector<double>& outcome) {
    std::map<double, std::uint32_t> codes;
    for (const double value : outcome) {
        codes.emplace(value, 0);
    }
    OrderedOutcome result;
    for (auto& [value, code] : codes) {
        code = static_cast<std::uint32_t>(result.labels.size());
        result.labels.push_back(NumberText::shortest(value));
    }
    for (const double value : outcome) {
        result.codes.push_back(codes.at(value));
    }
    return result;
}

/// The position of each label in the order; absent when one is missing from it or stands twice.
std::optional<NumericColumn> positions(const TextColumn& labels,
                                       std::span<const std::string> order) {
    std::map<std::string_view, double> positionOf;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (!positionOf.emplace(UnicodeText::trimmed(order[i]), static_cast<double>(i)).second) {
            return std::nullopt;
        }
    }
    std::vector<std::optional<double>> rows(labels.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (MissingValue::isMissing(labels[row])) {
            continue;
        }
        const auto found = positionOf.find(UnicodeText::trimmed(labels[row]));
        if (found == positionOf.end()) {
            return std::nullopt;
        }
        rows[row] = found->second;
    }
    return NumericColumn(std::move(rows));
}

}  // namespace

std::optional<OrdinalRegressionResult> proportionalOdds(std::span<const NumericColumn> predictors,
                                                        const NumericColumn& outcomeLevels,
                                                        const OrdinalRegressionOptions& options) {
    const std::optional<StandardizedDesign> design =
        StandardizedDesign::of(predictors, outcomeLevels, options.predictorNames);
    return design ? std::optional(fitted(*design, byValue(design->outcome), options))
                  : std::nullopt;
}

std::optional<OrdinalRegressionResult> proportionalOdds(std::span<const NumericColumn> predictors,
                                                        const TextColumn& outcomeLabels,
                                                        std::span<const std::string> order,
                                                        const OrdinalRegressionOptions& options) {
    const std::optional<NumericColumn> levels = positions(outcomeLabels, order);
    const std::optional<StandardizedDesign> design =
        levels ? StandardizedDesign::of(predictors, *levels, options.predictorNames) : std::nullopt;
    if (!design) {
        return std::nullopt;
    }
    OrderedOutcome outcome;
    for (const std::string& label : order) {
        outcome.labels.emplace_back(UnicodeText::trimmed(label));
    }
    for (const double position : design->outcome) {
        outcome.codes.push_back(static_cast<std::uint32_t>(position));
    }
    return fitted(*design, outcome, options);
}

}  // namespace sorvane::OrdinalRegressionTests
