#include "SorvaneCore/Survey/WeightedEstimators.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Survey/SurveyReadiness.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::WeightedEstimators {

namespace {

namespace wording = SurveyWording;
using Issues = std::vector<AnalysisReadinessIssue>;

using SurveyVariance::DesignCovariance;
using SurveyVariance::roundingOfSums;

/// A variance that is a smaller part of that of the scores comes of scores that cancel.
constexpr double roundingOfScores = 1e-28;

/// A total of y, or a ratio of the totals of y and x.
struct Sample {
    WeightedEstimand estimand = WeightedEstimand::mean;
    /// Rows that hold all values and a positive weight, of every group, which share them.
    std::shared_ptr<const std::vector<std::size_t>> activeRows;
    /// Those of the group, with an entry of `y` and `x` each.
    std::vector<std::size_t> rows;
    std::vector<double> y;
    std::vector<double> x;

    bool isTotal() const { return estimand == WeightedEstimand::total; }

    double weightedSum(std::span<const double> weights, const std::vector<double>& values) const {
        double sum = 0.0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            sum += weights[rows[i]] * values[i];
        }
        return sum;
    }
    /// Absent where the denominator adds up to 0, but for the last digits of its parts.
    std::optional<double> estimate(std::span<const double> weights) const {
        constexpr double rounding = 1e-14;
        if (isTotal()) {
            return weightedSum(weights, y);
        }
        double sum = 0.0;
        double denominator = 0.0;
        double parts = 0.0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const double part = weights[rows[i]] * x[i];
            sum += weights[rows[i]] * y[i];
            denominator += part;
            parts += std::abs(part);
        }
        return std::abs(denominator) <= rounding * parts ? std::nullopt
                                                         : std::optional(sum / denominator);
    }
};

bool isUsable(std::optional<double> value) {
    return value && std::isfinite(*value);
}

Sample sampleOf(WeightedEstimand estimand,
                const NumericColumn& y,
                const NumericColumn* x,
                const SurveyDesign& design) {
    Sample sample{.estimand = estimand, .activeRows = {}, .rows = {}, .y = {}, .x = {}};
    for (std::size_t row = 0; row < y.size(); ++row) {
        if (isUsable(y[row]) && (!x || isUsable((*x)[row])) && design.weights[row] > 0.0) {
            sample.rows.push_back(row);
            sample.y.push_back(*y[row]);
            sample.x.push_back(x ? *(*x)[row] : 1.0);
        }
    }
    sample.activeRows = std::make_shared<const std::vector<std::size_t>>(sample.rows);
    return sample;
}

/// One per row of the sample: how much it adds to the estimate's deviation.
std::vector<double> linearizedScores(const Sample& sample,
                                     std::span<const double> weights,
                                     double estimate) {
    std::vector<double> scores(sample.rows.size());
    const double denominator = sample.isTotal() ? 1.0 : sample.weightedSum(weights, sample.x);
    for (std::size_t i = 0; i < scores.size(); ++i) {
        const double part = sample.isTotal() ? sample.y[i] : sample.y[i] - estimate * sample.x[i];
        scores[i] = weights[sample.rows[i]] * part / denominator;
    }
    return scores;
}

double linearizedVariance(const Sample& sample,
                          const std::vector<double>& scores,
                          const SampledDesign& sampled) {
    std::vector<double> ofRow(sampled.design.weights.size(), 0.0);
    for (std::size_t i = 0; i < scores.size(); ++i) {
        ofRow[sample.rows[i]] = scores[i];
    }
    return SurveyVariance::scoreCovariance(ofRow, sampled, 1, *sample.activeRows).front();
}

/// A replicate in which the denominator is 0 has no estimate, but a total always has one; absent
/// where none has.
std::optional<DesignCovariance> replicateVariance(const Sample& sample,
                                                  const ReplicateWeights& replicates,
                                                  double estimate) {
    std::vector<std::optional<std::vector<double>>> estimates(replicates.weights.size());
    parallelFor(estimates.size(), hardwareThreads(), [&](std::size_t r) {
        if (const std::optional<double> each = sample.estimate(replicates.weights[r])) {
            estimates[r] = std::vector<double>{*each};
        }
    });
    return SurveyVariance::replicateCovariance(estimates, replicates, std::span(&estimate, 1));
}

/// n / (n - 1) times the sum of squares: the variance if rows had been drawn one by one.
double simpleRandomVariance(const std::vector<double>& scores) {
    const auto n = static_cast<double>(scores.size());
    double mean = 0.0;
    for (const double score : scores) {
        mean += score / n;
    }
    double squares = 0.0;
    for (const double score : scores) {
        squares += (score - mean) * (score - mean);
    }
    return n / (n - 1.0) * squares;
}

AnalysisReadiness readiness(const WeightedEstimate& estimate, Issues issues) {
    return AnalysisReadiness::of(std::string(wording::minimumRequired), estimate.totalN,
                                 estimate.validN, std::move(issues));
}

void block(WeightedEstimate& result, std::string message) {
    result.readiness = readiness(result, {AnalysisReadinessIssue::blocked(std::move(message))});
}

/// The estimate as it stands before anything is computed, blocked where the design or a column is
/// not sound.
WeightedEstimate start(WeightedEstimand estimand,
                       const SurveyDesign& design,
                       std::initializer_list<std::size_t> lengths,
                       std::optional<std::string> variableName) {
    WeightedEstimate result{.variableName = std::move(variableName),
                            .estimand = estimand,
                            .confidenceLevel = design.confidenceLevel,
                            .varianceMethod = varianceMethod(design),
                            .totalN = design.observationCount()};
    result.readiness = readiness(result, SurveyReadiness::obstacles(design, lengths));
    return result;
}

bool isBlocked(const WeightedEstimate& estimate) {
    return estimate.readiness.status == AnalysisReadinessStatus::blocked;
}

void fillInterval(WeightedEstimate& result, double variance) {
    result.standardError = variance > 0.0 ? std::sqrt(variance) : 0.0;
    const double critical = MathDistributions::studentTCritical(
        1.0 - result.confidenceLevel, static_cast<double>(result.designDegreesOfFreedom));
    const double margin = std::isfinite(critical) ? critical * result.standardError : std::nan("");
    result.confidenceIntervalLower = result.estimate - margin;
    result.confidenceIntervalUpper = result.estimate + margin;
}

void fillErrors(WeightedEstimate& result, double variance, double simple) {
    const double least = roundingOfSums * result.estimate * result.estimate;
    const double sound = variance > std::max(roundingOfScores * simple, least) ? variance : 0.0;
    fillInterval(result, sound);
    if (simple > least) {
        result.designEffect = sound / simple;
    }
}

void fillEstimate(WeightedEstimate& result, const Sample& sample, const SampledDesign& sampled) {
    const SurveyDesign& design = sampled.design;
    result.sumOfWeights = design.sumOfWeights(sample.rows);
    result.effectiveSampleSize = design.effectiveSampleSize(sample.rows);
    result.validN = std::ssize(sample.rows);
    if (result.validN < 2) {
        block(result, wording::tooFewRows(result.validN));
        return;
    }
    const std::optional<double> estimate = sample.estimate(design.weights);
    if (!estimate) {
        block(result, wording::noWeight());
        return;
    }
    const std::vector<double> scores = linearizedScores(sample, design.weights, *estimate);
    const std::optional<DesignCovariance> found =
        design.replicateWeights
            ? replicateVariance(sample, *design.replicateWeights, *estimate)
            : DesignCovariance{.values = {linearizedVariance(sample, scores, sampled)}};
    if (!found) {
        block(result, wording::noUsableReplicate());
        return;
    }
    const double variance = found->values.front();
    if (!std::isfinite(*estimate) || !std::isfinite(variance)) {
        block(result, wording::beyondNumbers());
        return;
    }
    result.estimate = *estimate;
    result.designDegreesOfFreedom = sampled.counts.degreesOfFreedom;
    fillErrors(result, variance, simpleRandomVariance(scores));
    // The degrees of freedom are those of the whole design, whatever rows have no value.
    SampledCounts counts = sampled.countsAmong(*sample.activeRows);
    counts.degreesOfFreedom = result.designDegreesOfFreedom;
    result.readiness =
        readiness(result, SurveyReadiness::cautions(counts, found->replicatesWithoutEstimates));
}

/// Blocks a proportion of values other than 0 and 1.
void checkProportion(WeightedEstimate& result, const Sample& sample) {
    const auto others =
        std::ranges::count_if(sample.y, [](double value) { return value != 0.0 && value != 1.0; });
    if (result.estimand == WeightedEstimand::proportion && others > 0) {
        result.validN = static_cast<std::int64_t>(sample.rows.size());
        block(result, wording::notZeroOrOne(others));
    }
}

WeightedEstimate estimateOf(WeightedEstimand estimand,
                            const NumericColumn& values,
                            const SurveyDesign& design,
                            std::optional<std::string> variableName) {
    WeightedEstimate result = start(estimand, design, {values.size()}, std::move(variableName));
    if (isBlocked(result)) {
        return result;
    }
    const Sample sample = sampleOf(estimand, values, nullptr, design);
    checkProportion(result, sample);
    if (!isBlocked(result)) {
        fillEstimate(result, sample, SampledDesign::of(design));
    }
    return result;
}

/// The sample of each label: only its rows, among all active ones.
std::vector<Sample> partsOf(const Sample& whole,
                            const CategoryCodes& labels,
                            std::span<const std::uint32_t> labelledRows) {
    const Sample none{
        .estimand = whole.estimand, .activeRows = whole.activeRows, .rows = {}, .y = {}, .x = {}};
    std::vector<Sample> parts(labels.labels.size(), none);
    std::size_t at = 0;
    for (std::size_t i = 0; i < whole.rows.size(); ++i) {
        while (at < labelledRows.size() && labelledRows[at] < whole.rows[i]) {
            ++at;
        }
        if (at < labelledRows.size() && labelledRows[at] == whole.rows[i]) {
            Sample& part = parts[labels.codes[at]];
            part.rows.push_back(whole.rows[i]);
            part.y.push_back(whole.y[i]);
            part.x.push_back(whole.x[i]);
        }
    }
    return parts;
}

/// The estimate of each group of a sample; `first` as it stands before anything is computed.
std::vector<DomainEstimate> ofGroups(const WeightedEstimate& first,
                                     const Sample& whole,
                                     const TextColumn& groups,
                                     const SurveyDesign& design) {
    const SampledDesign sampled = SampledDesign::of(design);
    const std::vector<std::uint32_t> labelledRows = CompleteCases::rows({}, std::array{&groups});
    CategoryCodes labels = CategoryCodes::of(groups, labelledRows);
    labels.sortByLabel();
    std::vector<DomainEstimate> result;
    for (const Sample& part : partsOf(whole, labels, labelledRows)) {
        WeightedEstimate estimate = first;
        checkProportion(estimate, part);
        if (!isBlocked(estimate)) {
            fillEstimate(estimate, part, sampled);
        }
        result.push_back({.group = labels.labels[result.size()], .estimate = std::move(estimate)});
    }
    return result;
}

}  // namespace

DesignVarianceMethod varianceMethod(const SurveyDesign& design) {
    if (design.replicateWeights) {
        return DesignVarianceMethod::replicateWeights;
    }
    return design.strata || design.clusters ? DesignVarianceMethod::taylorLinearization
                                            : DesignVarianceMethod::naiveWeighted;
}

WeightedEstimate mean(const NumericColumn& values,
                      const SurveyDesign& design,
                      std::optional<std::string> variableName) {
    return estimateOf(WeightedEstimand::mean, values, design, std::move(variableName));
}

WeightedEstimate total(const NumericColumn& values,
                       const SurveyDesign& design,
                       std::optional<std::string> variableName) {
    return estimateOf(WeightedEstimand::total, values, design, std::move(variableName));
}

WeightedEstimate proportion(const NumericColumn& values,
                            const SurveyDesign& design,
                            std::optional<std::string> variableName) {
    return estimateOf(WeightedEstimand::proportion, values, design, std::move(variableName));
}

WeightedEstimate ratio(const NumericColumn& numerator,
                       const NumericColumn& denominator,
                       const SurveyDesign& design,
                       std::optional<std::string> variableName) {
    WeightedEstimate result =
        start(WeightedEstimand::ratio, design, {numerator.size(), denominator.size()},
              std::move(variableName));
    if (!isBlocked(result)) {
        fillEstimate(result, sampleOf(WeightedEstimand::ratio, numerator, &denominator, design),
                     SampledDesign::of(design));
    }
    return result;
}

std::vector<DomainEstimate> byGroup(WeightedEstimand estimand,
                                    const NumericColumn& values,
                                    const TextColumn& groups,
                                    const SurveyDesign& design,
                                    const std::optional<std::string>& variableName) {
    const WeightedEstimate first =
        start(estimand, design, {values.size(), groups.size()}, variableName);
    return isBlocked(first)
               ? std::vector<DomainEstimate>{{.group = {}, .estimate = first}}
               : ofGroups(first, sampleOf(estimand, values, nullptr, design), groups, design);
}

std::vector<DomainEstimate> ratioByGroup(const NumericColumn& numerator,
                                         const NumericColumn& denominator,
                                         const TextColumn& groups,
                                         const SurveyDesign& design,
                                         const std::optional<std::string>& variableName) {
    constexpr auto estimand = WeightedEstimand::ratio;
    const WeightedEstimate first = start(
        estimand, design, {numerator.size(), denominator.size(), groups.size()}, variableName);
    return isBlocked(first) ? std::vector<DomainEstimate>{{.group = {}, .estimate = first}}
                            : ofGroups(first, sampleOf(estimand, numerator, &denominator, design),
                                       groups, design);
}

double standardDeviation(const NumericColumn& values, const SurveyDesign& design) {
    if (isBlocked(start(WeightedEstimand::mean, design, {values.size()}, std::nullopt))) {
        return std::nan("");
    }
    const Sample sample = sampleOf(WeightedEstimand::mean, values, nullptr, design);
    const auto n = static_cast<double>(sample.rows.size());
    const double mean = sample.estimate(design.weights).value_or(std::nan(""));
    double squares = 0.0;
    for (std::size_t i = 0; i < sample.rows.size(); ++i) {
        const double deviation = sample.y[i] - mean;
        squares += design.weights[sample.rows[i]] * deviation * deviation;
    }
    return std::sqrt(squares / design.sumOfWeights(sample.rows) * n / (n - 1.0));
}

double linearizedTotalVariance(std::span<const double> scores,
                               const SurveyDesign& design,
                               std::span<const std::size_t> activeRows) {
    return SurveyVariance::scoreCovariance(scores, SampledDesign::of(design), 1, activeRows)
        .front();
}

}  // namespace sorvane::WeightedEstimators
