#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <variant>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/DesignCautions.h"
#include "SorvaneCore/Analyses/Basics/GroupedProducts.h"
#include "SorvaneCore/Analyses/Multivariate/DiscriminantClassification.h"
#include "SorvaneCore/Analyses/Multivariate/DiscriminantWording.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/Whitening.h"

namespace sorvane::DiscriminantAnalysis {

namespace {

namespace wording = DiscriminantWording;
using Numbers = std::vector<double>;

/// The complete cases, group after group.
struct Sample {
    std::vector<GroupedVariable> variables{};
    RowPartition partition;

    std::size_t width() const { return variables.size(); }
    std::size_t groupCount() const { return partition.groupCount(); }
    std::size_t count() const { return variables.front().values.size(); }
    double errorDF() const { return static_cast<double>(count() - groupCount()); }
};

/// The directions of separation.
struct Separation {
    /// Turns deviations into coordinates with the identity for a covariance within groups.
    Numbers whitening{};
    /// Within groups.
    Numbers covariance{};
    Numbers standardDeviations{};
    LinearAlgebra::SymmetricEigen eigen{};
};

std::variant<Separation, std::string> separated(const Sample& sample) {
    const std::size_t p = sample.width();
    const GroupedProducts sums = GroupedProducts::of(sample.variables, sample.partition);
    const auto inverse = Whitening::inverseOf(sums.withinGroups, p);
    if (!inverse) {
        return wording::singular();
    }
    auto eigen =
        LinearAlgebra::symmetricEigen(Whitening::sandwich(*inverse, sums.betweenGroups, p), p);
    if (!eigen) {
        return wording::noEigenvalues();
    }
    Separation result{.whitening = *inverse,
                      .covariance = sums.withinGroups,
                      .standardDeviations = {},
                      .eigen = std::move(*eigen)};
    for (double& entry : result.whitening) {
        entry *= std::sqrt(sample.errorDF());
    }
    for (double& entry : result.covariance) {
        entry /= sample.errorDF();
    }
    for (std::size_t j = 0; j < p; ++j) {
        result.standardDeviations.push_back(std::sqrt(result.covariance[j * p + j]));
    }
    return result;
}

/// Turns the function over where its largest standardized coefficient is negative.
void setSign(DiscriminantFunction& function) {
    const auto largest = std::ranges::max_element(function.standardizedCoefficients, {},
                                                  [](double value) { return std::abs(value); });
    if (*largest < 0.0) {
        for (Numbers* each : {&function.rawCoefficients, &function.standardizedCoefficients}) {
            for (double& value : *each) {
                value = -value;
            }
        }
    }
}

DiscriminantFunction functionOf(const Sample& sample, const Separation& found, std::size_t k) {
    const std::size_t p = sample.width();
    const double eigenvalue = std::max(found.eigen.values[k], 0.0);
    DiscriminantFunction function{
        .eigenvalue = eigenvalue,
        .canonicalCorrelation = std::sqrt(eigenvalue / (1.0 + eigenvalue)),
        .constant = 0.0,
        .rawCoefficients = Whitening::transposedTimes(found.whitening, found.eigen.vectors[k], p)};
    for (std::size_t j = 0; j < p; ++j) {
        function.standardizedCoefficients.push_back(function.rawCoefficients[j] *
                                                    found.standardDeviations[j]);
    }
    setSign(function);
    for (std::size_t j = 0; j < p; ++j) {
        function.constant -= function.rawCoefficients[j] * sample.variables[j].grandMean;
    }
    // The covariance of each variable with the score, which has variance 1.
    function.structure =
        LinearAlgebra::multiply(found.covariance, p, p, function.rawCoefficients, 1);
    for (std::size_t j = 0; j < p; ++j) {
        function.structure[j] /= found.standardDeviations[j];
    }
    return function;
}

void addFunctions(DiscriminantResult& result, const Sample& sample, const Separation& found) {
    const std::size_t count = std::min(sample.width(), sample.groupCount() - 1);
    double total = 0.0;
    for (std::size_t k = 0; k < count; ++k) {
        result.functions.push_back(functionOf(sample, found, k));
        total += result.functions.back().eigenvalue;
    }
    double sum = 0.0;
    Numbers squared;
    for (DiscriminantFunction& function : result.functions) {
        sum += function.eigenvalue;
        function.shareOfVariance = function.eigenvalue / total;
        function.cumulativeShare = sum / total;
        squared.push_back(function.eigenvalue / (1.0 + function.eigenvalue));
    }
    result.tests = WilksTests::fromEachFunction(squared, static_cast<double>(sample.width()),
                                                static_cast<double>(sample.groupCount() - 1),
                                                static_cast<double>(sample.count()));
}

/// One number per case or group mean: deviations from the grand means, weighted and added up.
template <typename ValueOf>
double weighted(const Sample& sample, std::span<const double> weights, ValueOf valueOf) {
    double sum = 0.0;
    for (std::size_t j = 0; j < sample.width(); ++j) {
        sum += weights[j] * (valueOf(sample.variables[j]) - sample.variables[j].grandMean);
    }
    return sum;
}

void addScores(DiscriminantResult& result, const Sample& sample) {
    std::size_t first = 0;
    for (std::size_t g = 0; g < sample.groupCount(); ++g) {
        DiscriminantGroup& group = result.groups[g];
        for (const DiscriminantFunction& function : result.functions) {
            const Numbers& weights = function.rawCoefficients;
            group.centroid.push_back(weighted(
                sample, weights, [g](const GroupedVariable& v) { return v.groupMeans[g]; }));
            Numbers& scores = group.scores.emplace_back();
            for (std::size_t i = first; i < first + sample.partition.groupSize(g); ++i) {
                scores.push_back(weighted(sample, weights,
                                          [i](const GroupedVariable& v) { return v.values[i]; }));
            }
        }
        first += sample.partition.groupSize(g);
    }
}

WhitenedCases whitened(const Sample& sample, const Numbers& whitening) {
    const std::size_t p = sample.width();
    WhitenedCases result{.width = p, .cases = {}, .means = {}};
    const auto rowOf = [&](std::size_t k) {
        return std::span(whitening).subspan(k * p, p);
    };
    result.cases.reserve(sample.count() * p);
    for (std::size_t i = 0; i < sample.count(); ++i) {
        for (std::size_t k = 0; k < p; ++k) {
            result.cases.push_back(
                weighted(sample, rowOf(k), [i](const GroupedVariable& v) { return v.values[i]; }));
        }
    }
    for (std::size_t g = 0; g < sample.groupCount(); ++g) {
        for (std::size_t k = 0; k < p; ++k) {
            result.means.push_back(weighted(
                sample, rowOf(k), [g](const GroupedVariable& v) { return v.groupMeans[g]; }));
        }
    }
    return result;
}

void addClassifications(DiscriminantResult& result, const Sample& sample, const Separation& found) {
    const WhitenedCases cases = whitened(sample, found.whitening);
    Numbers priors;
    for (const DiscriminantGroup& group : result.groups) {
        priors.push_back(group.prior);
    }
    result.resubstitution =
        DiscriminantClassifications::resubstituted(cases, sample.partition, priors);
    result.leaveOneOut = DiscriminantClassifications::leftOut(cases, sample.partition, priors);
}

DiscriminantResult withoutFunctions(const Sample& sample,
                                    const std::vector<std::string>& labels,
                                    const DiscriminantOptions& options) {
    const std::size_t n = sample.count();
    DiscriminantResult result{.groupFactorName = options.groupFactorName,
                              .predictorNames = options.predictorNames,
                              .priors = options.priors,
                              .n = static_cast<std::int64_t>(n),
                              .numberOfGroups = static_cast<std::int64_t>(labels.size()),
                              .numberOfPredictors = static_cast<std::int64_t>(sample.width())};
    double largest = 0.0;
    for (std::size_t g = 0; g < labels.size(); ++g) {
        const auto size = static_cast<double>(sample.partition.groupSize(g));
        largest = std::max(largest, size);
        DiscriminantGroup& group = result.groups.emplace_back();
        group.name = labels[g];
        group.n = static_cast<std::int64_t>(sample.partition.groupSize(g));
        group.prior = options.priors == DiscriminantPriors::equal
                          ? 1.0 / static_cast<double>(labels.size())
                          : size / static_cast<double>(n);
        for (const GroupedVariable& variable : sample.variables) {
            group.means.push_back(variable.groupMeans[g]);
        }
    }
    if (n > 0) {
        result.largestGroupShare = largest / static_cast<double>(n);
    }
    return result;
}

/// Fills in what can be had, or tells what stands in the way.
std::optional<std::string> fitted(DiscriminantResult& result, const Sample& sample) {
    if (result.numberOfGroups < 2) {
        return wording::tooFewGroups(result.numberOfGroups);
    }
    if (result.n <= result.numberOfGroups + result.numberOfPredictors) {
        return wording::tooFewCases(result.n, result.numberOfPredictors, result.numberOfGroups);
    }
    const auto found = separated(sample);
    if (const auto* obstacle = std::get_if<std::string>(&found)) {
        return *obstacle;
    }
    addFunctions(result, sample, std::get<Separation>(found));
    addScores(result, sample);
    addClassifications(result, sample, std::get<Separation>(found));
    return std::nullopt;
}

AnalysisReadiness readiness(const DiscriminantResult& result,
                            std::int64_t totalRows,
                            const std::optional<std::string>& obstacle) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto cautionIf = [&issues](bool holds, std::string message) {
        if (holds) {
            issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
        }
    };
    if (obstacle) {
        issues.push_back(AnalysisReadinessIssue::blocked(*obstacle));
    }
    cautionIf(totalRows > result.n, wording::rowsDropped(totalRows - result.n));
    if (!obstacle) {
        const std::int64_t smallest =
            std::ranges::min_element(result.groups, {}, &DiscriminantGroup::n)->n;
        cautionIf(DesignCautions::isThin(smallest), wording::thinGroups(smallest));
        cautionIf(smallest <= result.numberOfPredictors,
                  wording::fewerCasesThanVariables(smallest, result.numberOfPredictors));
        cautionIf(result.leaveOneOut.accuracy <= result.largestGroupShare,
                  wording::noBetterThanLargestGroup(result.leaveOneOut.accuracy,
                                                    result.largestGroupShare));
    }
    return AnalysisReadiness::of(std::string(wording::minimumRequired), totalRows, result.n,
                                 std::move(issues), result.numberOfGroups);
}

}  // namespace

std::optional<DiscriminantResult> fit(std::span<const NumericColumn> predictors,
                                      const TextColumn& groups,
                                      const DiscriminantOptions& options) {
    std::vector<const NumericColumn*> numbers;
    for (const NumericColumn& column : predictors) {
        if (column.size() != groups.size()) {
            return std::nullopt;
        }
        numbers.push_back(&column);
    }
    if (numbers.size() < 2 || numbers.size() != options.predictorNames.size()) {
        return std::nullopt;
    }
    const std::array texts = {&groups};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(numbers, texts);
    const CategoryCodes codes = CategoryCodes::of(groups, rows);
    const RowPartition partition(codes.codes, codes.labels.size());
    const Sample sample{.variables = GroupedVariable::of(predictors, rows, partition),
                        .partition = partition};
    DiscriminantResult result = withoutFunctions(sample, codes.labels, options);
    const std::optional<std::string> obstacle = fitted(result, sample);
    result.readiness = readiness(result, static_cast<std::int64_t>(groups.size()), obstacle);
    return result;
}

}  // namespace sorvane::DiscriminantAnalysis
