#include "SorvaneCore/Analyses/Factorial/RepeatedMeasuresANOVA.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/GroupMoments.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Analyses/Factorial/Sphericity.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::RepeatedMeasuresANOVA {

namespace {

constexpr double alphaLevel = 0.05;
constexpr std::int64_t fewSubjects = 9;

/// A column of complete subjects per condition.
using Conditions = std::vector<std::vector<double>>;

std::string droppedSubjects(std::int64_t count) {
    return NumberText::integer(count) +
           " subject(s) were dropped because they were missing a measurement in at least one "
           "condition. Repeated-measures ANOVA uses only subjects with complete data across all "
           "conditions.";
}

std::string smallSample(std::int64_t n) {
    return "Only " + NumberText::integer(n) +
           " complete subjects. Mauchly's test and the F test are imprecise with a small sample; "
           "treat this as exploratory.";
}

std::string noMauchly() {
    return "Mauchly's sphericity test could not be computed; the Greenhouse-Geisser corrected p "
           "value is used as the conservative default.";
}

std::string sphericityViolated(double p) {
    return "Sphericity is violated (Mauchly p = " + NumberText::fixed(p, 3) +
           "). Use the Greenhouse-Geisser or Huynh-Feldt corrected p value, not the uncorrected "
           "one.";
}

std::string noVariation() {
    return "There is no variation across conditions, so the repeated-measures F cannot be "
           "computed.";
}

std::string noErrorVariance() {
    return "The within-subject error variance is zero, so the F ratio is undefined (the conditions "
           "separate every subject perfectly). This usually means too few subjects or duplicated "
           "rows; check the data.";
}

AnalysisReadiness readiness(const RMANOVAResult& result, std::int64_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (totalRows > result.n) {
        caution(droppedSubjects(totalRows - result.n));
    }
    if (result.n <= fewSubjects) {
        caution(smallSample(result.n));
    }
    if (!std::isfinite(result.mauchlyP)) {
        caution(noMauchly());
    } else if (!result.sphericityAssumed) {
        caution(sphericityViolated(result.mauchlyP));
    }
    if (!(result.msError > 0.0)) {
        issues.push_back(AnalysisReadinessIssue::blocked(
            result.ssConditions > 0.0 ? noErrorVariance() : noVariation()));
    }
    return AnalysisReadiness::of(
        "two or more conditions and at least two subjects with a complete value in every "
        "condition",
        totalRows, result.n, std::move(issues));
}

/// The mean of each subject.
std::vector<double> subjectMeans(const Conditions& conditions) {
    std::vector<double> means(conditions.front().size());
    std::vector<double> row(conditions.size());
    for (std::size_t i = 0; i < means.size(); ++i) {
        for (std::size_t j = 0; j < row.size(); ++j) {
            row[j] = conditions[j][i];
        }
        means[i] = SampleMoments::mean(row);
    }
    return means;
}

/// The squares that are more than rounding of the values.
double beyondRounding(double squares, const Conditions& conditions) {
    double largest = 0.0;
    for (const std::vector<double>& condition : conditions) {
        largest = std::max(largest, SampleMoments::largestMagnitude(condition));
    }
    return SampleMoments::beyondRounding(squares, conditions.size() * conditions.front().size(),
                                         largest);
}

void setSquares(RMANOVAResult& result, const Conditions& conditions) {
    const std::vector<double> means = subjectMeans(conditions);
    const auto n = static_cast<double>(result.n);
    const auto k = static_cast<double>(result.k);
    result.grandMean = SampleMoments::mean(means);
    result.ssSubjects = k * SampleMoments::sumOfSquares(means, result.grandMean);
    for (std::size_t j = 0; j < conditions.size(); ++j) {
        const double mean = SampleMoments::mean(conditions[j]);
        const double squares = SampleMoments::sumOfSquares(conditions[j], mean);
        const double effect = mean - result.grandMean;
        result.conditionMeans.push_back(mean);
        result.conditionSDs.push_back(std::sqrt(squares / (n - 1.0)));
        result.ssConditions += n * effect * effect;
        for (std::size_t i = 0; i < means.size(); ++i) {
            const double residual = conditions[j][i] - means[i] - effect;
            result.ssError += residual * residual;
        }
    }
    result.ssError = beyondRounding(result.ssError, conditions);
    result.ssConditions = beyondRounding(result.ssConditions, conditions);
    result.ssTotal = result.ssConditions + result.ssSubjects + result.ssError;
}

double fTail(const RMANOVAResult& result, double epsilon) {
    return MathDistributions::fRightTailPValue(result.f,
                                               epsilon * static_cast<double>(result.dfConditions),
                                               epsilon * static_cast<double>(result.dfError));
}

void setEffect(RMANOVAResult& result) {
    result.msConditions = result.ssConditions / static_cast<double>(result.dfConditions);
    result.msError = result.ssError / static_cast<double>(result.dfError);
    result.f = result.msError > 0.0 ? result.msConditions / result.msError
                                    : std::numeric_limits<double>::quiet_NaN();
    result.pValue = fTail(result, 1.0);
    const double both = result.ssConditions + result.ssError;
    result.partialEtaSquared = both > 0.0 ? result.ssConditions / both : 0.0;
}

/// The sample covariances of the conditions.
std::vector<double> covarianceMatrix(const Conditions& conditions,
                                     const std::vector<double>& means) {
    const std::size_t k = conditions.size();
    const auto denominator = static_cast<double>(conditions.front().size()) - 1.0;
    std::vector<double> matrix(k * k);
    for (std::size_t i = 0; i < k; ++i) {
        for (std::size_t j = i; j < k; ++j) {
            const double products =
                SampleMoments::sumOfProducts(conditions[i], means[i], conditions[j], means[j]);
            matrix[i * k + j] = products / denominator;
            matrix[j * k + i] = matrix[i * k + j];
        }
    }
    return matrix;
}

void setSphericity(RMANOVAResult& result, const Conditions& conditions) {
    // Without error the contrasts do not vary, and what they seem to is rounding.
    const Sphericity sphericity = Sphericity::of(
        result.ssError > 0.0 ? covarianceMatrix(conditions, result.conditionMeans)
                             : std::vector<double>(conditions.size() * conditions.size()),
        result.k, result.n);
    result.mauchlyW = sphericity.mauchlyW;
    result.mauchlyChiSquare = sphericity.mauchlyChiSquare;
    result.mauchlyDF = sphericity.mauchlyDF;
    result.mauchlyP = sphericity.mauchlyP;
    result.sphericityAssumed = result.mauchlyP >= alphaLevel;
    result.greenhouseGeisserEpsilon = sphericity.greenhouseGeisserEpsilon;
    result.huynhFeldtEpsilon = sphericity.huynhFeldtEpsilon;
    result.ggP = fTail(result, result.greenhouseGeisserEpsilon);
    result.hfP = fTail(result, result.huynhFeldtEpsilon);
}

RMPairwise pairOf(std::span<const double> a, std::span<const double> b, double pairCount) {
    const GroupMoments differences = GroupMoments::ofDifferences(a, b);
    RMPairwise pair{.meanDifference = differences.mean,
                    .t = differences.mean / std::sqrt(differences.squaredError()),
                    .df = differences.n - 1.0};
    pair.pValue = MathDistributions::studentTPValue(pair.t, pair.df);
    const double adjusted = pair.pValue * pairCount;
    pair.bonferroniP = adjusted > 1.0 ? 1.0 : adjusted;
    return pair;
}

void setPairs(RMANOVAResult& result, const Conditions& conditions) {
    const auto k = static_cast<double>(result.k);
    for (std::size_t a = 0; a < conditions.size(); ++a) {
        for (std::size_t b = a + 1; b < conditions.size(); ++b) {
            RMPairwise pair = pairOf(conditions[a], conditions[b], k * (k - 1.0) / 2.0);
            pair.conditionA = result.conditionNames[a];
            pair.conditionB = result.conditionNames[b];
            result.pairwise.push_back(std::move(pair));
        }
    }
}

}  // namespace

std::optional<RMANOVAResult> test(std::span<const NumericColumn> conditionColumns,
                                  std::span<const std::string> conditionNames) {
    std::vector<const NumericColumn*> columns;
    for (const NumericColumn& column : conditionColumns) {
        if (column.size() != conditionColumns.front().size()) {
            return std::nullopt;
        }
        columns.push_back(&column);
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    if (columns.size() < 2 || columns.size() != conditionNames.size() || rows.size() < 2) {
        return std::nullopt;
    }
    Conditions conditions;
    for (const NumericColumn* column : columns) {
        conditions.push_back(CompleteCases::gathered(*column, rows));
    }
    const auto n = static_cast<std::int64_t>(rows.size());
    const auto k = static_cast<std::int64_t>(columns.size());
    RMANOVAResult result{.conditionNames = {conditionNames.begin(), conditionNames.end()},
                         .n = n,
                         .k = k,
                         .dfConditions = k - 1,
                         .dfError = (k - 1) * (n - 1)};
    setSquares(result, conditions);
    if (!std::isfinite(result.ssTotal)) {
        return std::nullopt;
    }
    setEffect(result);
    setSphericity(result, conditions);
    setPairs(result, conditions);
    result.readiness = readiness(result, static_cast<std::int64_t>(columns.front()->size()));
    return result;
}

}  // namespace sorvane::RepeatedMeasuresANOVA
