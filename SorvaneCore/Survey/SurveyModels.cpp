#include "SorvaneCore/Survey/SurveyModels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Survey/SurveyReadiness.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWaldTest.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane {

namespace {

namespace wording = SurveyWording;
using Numbers = std::vector<double>;
using Issues = std::vector<AnalysisReadinessIssue>;
using SurveyVariance::DesignCovariance;

/// Estimates, their covariance and the inverse of the information.
struct Estimated {
    Numbers parameters{};
    Numbers covariance{};
    Numbers bread{};

    /// Those of the slopes alone, which follow `leading` other parameters.
    Estimated slopes(std::size_t leading) const;
};

Estimated Estimated::slopes(std::size_t leading) const {
    const std::size_t p = parameters.size();
    Estimated part;
    for (std::size_t i = leading; i < p; ++i) {
        part.parameters.push_back(parameters[i]);
        for (std::size_t j = leading; j < p; ++j) {
            part.covariance.push_back(covariance[i * p + j]);
            part.bread.push_back(bread[i * p + j]);
        }
    }
    return part;
}

/// In the units of the predictors: T b, T V T' and T B T'.
Estimated inOwnUnits(const Estimated& fitted,
                     const SurveyModelFrame& frame,
                     const SurveyModelMethod& method) {
    const std::size_t p = fitted.parameters.size();
    const std::size_t slopes = frame.slopes();
    Numbers turn(p * p, 0.0);
    for (std::size_t k = 0; k < method.leading; ++k) {
        turn[k * p + k] = 1.0;
    }
    for (std::size_t i = 0; i < slopes; ++i) {
        for (std::size_t j = 0; j < slopes; ++j) {
            const double unit = frame.slopeUnits[i * slopes + j];
            turn[(method.leading + i) * p + method.leading + j] = unit;
            for (std::size_t k = 0; k < method.leading; ++k) {
                turn[k * p + method.leading + j] += method.meanSign * frame.means[i] * unit;
            }
        }
    }
    Numbers transposed(p * p);
    for (std::size_t i = 0; i < p * p; ++i) {
        transposed[i % p * p + i / p] = turn[i];
    }
    const auto turned = [&](const Numbers& matrix) {
        return LinearAlgebra::multiply(LinearAlgebra::multiply(turn, p, p, matrix, p), p, p,
                                       transposed, p);
    };
    return {.parameters = LinearAlgebra::multiply(turn, p, p, fitted.parameters, 1),
            .covariance = turned(fitted.covariance),
            .bread = turned(fitted.bread)};
}

/// What the last digits of the outcome could give the variance of an estimate, were they off alike
/// in all rows; by its entry in the bread.
double varianceOfRounding(const SurveyModelFrame& frame, double bread) {
    const double unit = std::sqrt(static_cast<double>(frame.rows()) * bread);
    return SampleMoments::squaresOfRounding(1,
                                            SampleMoments::largestMagnitude(frame.outcome) * unit);
}

/// Sets the variances to 0 that are no more than rounding, of the outcome or of the estimates, as of
/// a fit without scatter.
void dropRounding(Estimated& all, const SurveyModelFrame& frame, double scales) {
    const std::size_t p = all.parameters.size();
    for (std::size_t k = 0; k < p; ++k) {
        const double rounding =
            std::max(varianceOfRounding(frame, all.bread[k * p + k]),
                     SampleMoments::squaresOfRounding(1, std::abs(all.parameters[k])));
        double& variance = all.covariance[k * p + k];
        variance = variance > scales * rounding ? variance : 0.0;
    }
}

Numbers linearizedCovariance(const SurveyModelFrame& frame,
                             const SampledDesign& sampled,
                             const SurveyModelMethod& method,
                             const SurveyModelEstimates& fit) {
    const std::size_t p = fit.parameters.size();
    const Numbers weights = frame.scaledWeights(frame.design.weights);
    Numbers scores(frame.design.weights.size() * p, 0.0);
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        const std::span<double> row = std::span(scores).subspan(frame.activeRows[i] * p, p);
        method.scores(i, fit.parameters, row);
        for (double& score : row) {
            score *= weights[i];
        }
    }
    return SurveyVariance::sandwich(
        fit.bread, SurveyVariance::scoreCovariance(scores, sampled, p, frame.activeRows), p);
}

/// The estimates under each replicate weight; absent where a fit has none.
std::vector<std::optional<Numbers>> replicateEstimates(const SurveyModelFrame& frame,
                                                       const SurveyModelMethod& method) {
    const ReplicateWeights& replicates = *frame.design.replicateWeights;
    std::vector<std::optional<Numbers>> estimates(replicates.weights.size());
    parallelFor(estimates.size(), hardwareThreads(), [&](std::size_t r) {
        if (auto fit = method.fit(frame.scaledWeights(replicates.weights[r]))) {
            estimates[r] = std::move(fit->parameters);
        }
    });
    return estimates;
}

bool areFinite(const Numbers& values) {
    return std::ranges::all_of(values, [](double each) { return std::isfinite(each); });
}

bool areFinite(const ReplicateWeights& replicates, std::span<const std::size_t> rows) {
    return std::ranges::all_of(replicates.weights, [rows](const Numbers& weights) {
        return std::ranges::all_of(
            rows, [&weights](std::size_t row) { return std::isfinite(weights[row]); });
    });
}

SurveyCoefficient coefficientOf(const SurveyModelResult& result,
                                std::string name,
                                double estimate,
                                double variance) {
    SurveyCoefficient row{
        .name = std::move(name), .estimate = estimate, .standardError = std::sqrt(variance)};
    const auto df = static_cast<double>(result.degreesOfFreedom);
    const bool isTestable = df >= 1.0 && row.standardError > 0.0;
    row.t = isTestable ? row.estimate / row.standardError : std::nan("");
    row.pValue = isTestable ? MathDistributions::studentTPValue(row.t, df) : std::nan("");
    const double reach =
        isTestable ? MathDistributions::studentTCritical(1.0 - result.confidenceLevel, df) *
                         row.standardError
                   : std::nan("");
    row.lowerBound = row.estimate - reach;
    row.upperBound = row.estimate + reach;
    return row;
}

/// Whether none has a variance of rounding alone.
bool haveErrors(const Estimated& estimated) {
    const std::size_t p = estimated.parameters.size();
    for (std::size_t k = 0; k < p; ++k) {
        if (!(estimated.covariance[k * p + k] > 0.0)) {
            return false;
        }
    }
    return true;
}

/// Tests the slopes together, as they were fitted: in the predictors' own units those of all but
/// the same predictors have variances of which rounding leaves nothing.
void addWaldTest(SurveyModelResult& result, const Estimated& slopes, double rounding) {
    const std::optional<double> statistic =
        SurveyWaldTest::statistic(slopes.parameters, slopes.covariance, slopes.bread, rounding);
    if (!statistic) {
        return;
    }
    result.waldDFNumerator = static_cast<double>(slopes.parameters.size());
    result.waldDFDenominator = static_cast<double>(result.degreesOfFreedom);
    result.waldF = *statistic;
    result.waldPValue = MathDistributions::fRightTailPValue(result.waldF, result.waldDFNumerator,
                                                            result.waldDFDenominator);
}

void addCoefficients(SurveyModelResult& result,
                     const Estimated& all,
                     const SurveyModelMethod& method,
                     const SurveyModelOptions& options) {
    const std::size_t p = all.parameters.size();
    for (std::size_t k = 0; k < p; ++k) {
        const bool isLeading = k < method.leading;
        SurveyCoefficient row = coefficientOf(
            result, isLeading ? method.leadingNames[k] : options.predictorNames[k - method.leading],
            all.parameters[k], all.covariance[k * p + k]);
        const bool isThreshold = isLeading && method.kind == SurveyModelKind::ordinal;
        if (method.kind != SurveyModelKind::linear && !isThreshold) {
            row.ratio = std::exp(row.estimate);
            row.ratioLowerBound = std::exp(row.lowerBound);
            row.ratioUpperBound = std::exp(row.upperBound);
        }
        (isThreshold ? result.thresholds : result.coefficients).push_back(std::move(row));
    }
}

/// Why the slopes, each of which has an error, are not tested together.
std::string noWaldTest(const SurveyModelResult& result,
                       const SampledDesign& sampled,
                       const SurveyModelFrame& frame,
                       std::int64_t replicatesWithoutEstimates) {
    const auto& replicates = sampled.design.replicateWeights;
    const std::int64_t compared = replicates
                                      ? std::ssize(replicates->weights) - replicatesWithoutEstimates
                                      : SurveyVariance::comparedUnits(sampled, frame.activeRows);
    return compared < result.predictorCount ? wording::tooFewUnitsForWaldTest()
                                            : wording::noErrorForWaldTest();
}

Issues cautions(const SurveyModelResult& result,
                const SampledDesign& sampled,
                const SurveyModelFrame& frame,
                std::int64_t replicatesWithoutEstimates) {
    constexpr std::int64_t enoughEventsPerPredictor = 10;
    std::optional<std::string> ofDegrees;
    if (result.degreesOfFreedom < 1) {
        ofDegrees =
            wording::noDegreesOfFreedom(result.predictorCount, result.designDegreesOfFreedom);
    } else if (result.degreesOfFreedom < SurveyVariance::fewDegreesOfFreedom) {
        ofDegrees = wording::fewTestDegreesOfFreedom(result.degreesOfFreedom);
    }
    Issues issues = SurveyReadiness::cautions(sampled.countsAmong(frame.activeRows),
                                              std::move(ofDegrees), replicatesWithoutEstimates);
    const bool hasNoVariance = std::ranges::any_of(
        result.coefficients,
        [](const SurveyCoefficient& each) { return each.standardError == 0.0; });
    if (hasNoVariance) {
        issues.push_back(AnalysisReadinessIssue::caution(wording::zeroErrors()));
    } else if (result.degreesOfFreedom >= 1 && result.predictorCount > 0 &&
               std::isnan(result.waldF)) {
        issues.push_back(AnalysisReadinessIssue::caution(
            noWaldTest(result, sampled, frame, replicatesWithoutEstimates)));
    }
    const std::int64_t rarer =
        std::min(result.events.value_or(0), result.validN - result.events.value_or(0));
    if (result.events && rarer < enoughEventsPerPredictor * result.predictorCount) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::fewEvents(rarer, result.predictorCount)));
    }
    if (result.totalN > result.validN) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::rowsDropped(result.totalN - result.validN)));
    }
    return issues;
}

AnalysisReadiness readiness(const SurveyModelResult& result, Issues issues) {
    return AnalysisReadiness::of(std::string(wording::modelMinimumRequired), result.totalN,
                                 result.validN, std::move(issues));
}

}  // namespace

namespace SurveyModels {

std::optional<SurveyModelResult> start(SurveyModelKind kind,
                                       const NumericColumn& outcome,
                                       std::span<const NumericColumn> predictors,
                                       const SurveyDesign& design,
                                       const SurveyModelOptions& options) {
    if (options.predictorNames.size() != predictors.size()) {
        return std::nullopt;
    }
    SurveyModelResult result{.model = kind,
                             .outcomeName = options.outcomeName,
                             .confidenceLevel = design.confidenceLevel,
                             .varianceMethod = WeightedEstimators::varianceMethod(design),
                             .totalN = design.observationCount(),
                             .predictorCount = static_cast<std::int64_t>(predictors.size())};
    std::vector<std::size_t> lengths = {outcome.size()};
    for (const NumericColumn& predictor : predictors) {
        lengths.push_back(predictor.size());
    }
    result.readiness = readiness(result, SurveyReadiness::obstacles(design, lengths));
    return result;
}

bool isBlocked(const SurveyModelResult& result) {
    return result.readiness.status == AnalysisReadinessStatus::blocked;
}

void block(SurveyModelResult& result, std::string message) {
    result.readiness = readiness(result, {AnalysisReadinessIssue::blocked(std::move(message))});
}

bool passes(SurveyModelResult& result, const SurveyModelFrame& frame, std::size_t parameters) {
    result.validN = static_cast<std::int64_t>(frame.rows());
    result.sumOfWeights = frame.design.sumOfWeights(frame.activeRows);
    result.effectiveSampleSize = frame.design.effectiveSampleSize(frame.activeRows);
    if (frame.rows() <= parameters) {
        block(result,
              wording::tooFewRowsForModel(result.validN, static_cast<std::int64_t>(parameters)));
    } else if (!frame.hasFullRank) {
        block(result, wording::collinearPredictors());
    }
    return !isBlocked(result);
}

void finish(SurveyModelResult& result,
            const SurveyModelFrame& frame,
            const SurveyModelMethod& method,
            const SurveyModelOptions& options) {
    const SurveyDesign& design = frame.design;
    if (design.replicateWeights && !areFinite(*design.replicateWeights, frame.activeRows)) {
        block(result, wording::beyondNumbers());
        return;
    }
    const auto fit = method.fit(frame.scaledWeights(design.weights));
    if (!fit) {
        block(result, wording::noEstimates(method.kind));
        return;
    }
    const SampledDesign sampled = SampledDesign::of(design);
    const std::optional<DesignCovariance> found =
        design.replicateWeights
            ? SurveyVariance::replicateCovariance(replicateEstimates(frame, method),
                                                  *design.replicateWeights, fit->parameters)
            : DesignCovariance{.values = linearizedCovariance(frame, sampled, method, *fit)};
    if (!found) {
        block(result, wording::noUsableReplicate());
        return;
    }
    const Estimated fitted{
        .parameters = fit->parameters, .covariance = found->values, .bread = fit->bread};
    Estimated all = inOwnUnits(fitted, frame, method);
    if (!areFinite(all.parameters) || !areFinite(all.covariance) || !std::isfinite(found->scales)) {
        block(result, wording::beyondNumbers());
        return;
    }
    dropRounding(all, frame, found->scales);
    result.iterations = fit->iterations;
    const SampledCounts counts = sampled.countsAmong(frame.activeRows);
    result.stratumCount = counts.strata;
    result.psuCount = counts.units;
    result.designDegreesOfFreedom = counts.degreesOfFreedom;
    result.degreesOfFreedom = result.designDegreesOfFreedom - result.predictorCount;
    addCoefficients(result, all, method, options);
    if (result.degreesOfFreedom >= 1 && haveErrors(all.slopes(method.leading))) {
        addWaldTest(result, fitted.slopes(method.leading),
                    found->scales * varianceOfRounding(frame, 1.0));
    }
    result.predictorDeviations = frame.populationDeviations;
    result.readiness =
        readiness(result, cautions(result, sampled, frame, found->replicatesWithoutEstimates));
}

}  // namespace SurveyModels

}  // namespace sorvane
