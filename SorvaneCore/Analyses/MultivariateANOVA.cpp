#include "SorvaneCore/Analyses/MultivariateANOVA.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/DesignCautions.h"
#include "SorvaneCore/Analyses/Basics/GroupedProducts.h"
#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneCore/Analyses/Basics/WilksTest.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/Whitening.h"

namespace sorvane::MultivariateANOVA {

namespace {

using WilksTests::FApproximation;

/// The numbers that the sentences are about.
struct Facts {
    std::int64_t totalRows = 0;
    std::int64_t n = 0;
    std::int64_t outcomes = 0;
    std::int64_t groups = 0;
    std::int64_t smallestGroup = 0;

    std::int64_t errorDF() const { return n - groups; }
};

std::string tooFewGroups(const Facts& facts) {
    return "A MANOVA needs two or more groups; only " + NumberText::integer(facts.groups) +
           " group(s) had complete data.";
}

std::string tooFewCases(const Facts& facts) {
    return "Too few complete cases (" + NumberText::integer(facts.n) + ") for " +
           NumberText::integer(facts.outcomes) + " outcomes across " +
           NumberText::integer(facts.groups) +
           " groups. The within-groups error matrix cannot be inverted; collect more cases or "
           "reduce the number of outcomes.";
}

std::string singular() {
    return "The within-groups error matrix is singular (the outcomes are perfectly collinear "
           "within groups). Drop a redundant outcome or collect more cases.";
}

std::string noEigenvalues() {
    return "The eigenvalues of the MANOVA matrix could not be computed; the data may be "
           "numerically degenerate.";
}

std::string droppedRows(const Facts& facts) {
    return NumberText::integer(facts.totalRows - facts.n) +
           " row(s) were dropped because an outcome or the group was missing.";
}

std::string lowErrorDF(const Facts& facts) {
    return DesignCautions::lowErrorDF(facts.errorDF()) +
           "; the F approximations are imprecise on a small sample.";
}

std::string thinGroups(const Facts& facts) {
    return DesignCautions::onlyCases("group", facts.smallestGroup) +
           " The MANOVA test statistics are unstable with thin cells; treat this as exploratory.";
}

std::string fewerCasesThanOutcomes(const Facts& facts) {
    return "The smallest group has " + NumberText::integer(facts.smallestGroup) + " case(s) for " +
           NumberText::integer(facts.outcomes) +
           " outcomes. With fewer cases per group than outcomes plus one, the within-groups "
           "covariance is unstable; treat this as exploratory.";
}

/// What stops the analysis, if anything, and what the user must know about its rows.
AnalysisReadiness readiness(const Facts& facts, const std::optional<std::string>& obstacle) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (obstacle) {
        issues.push_back(AnalysisReadinessIssue::blocked(*obstacle));
    }
    if (facts.totalRows > facts.n) {
        caution(droppedRows(facts));
    }
    if (!obstacle && DesignCautions::isLowErrorDF(facts.errorDF())) {
        caution(lowErrorDF(facts));
    }
    if (!obstacle && DesignCautions::isThin(facts.smallestGroup)) {
        caution(thinGroups(facts));
    }
    if (!obstacle && facts.smallestGroup < facts.outcomes + 1) {
        caution(fewerCasesThanOutcomes(facts));
    }
    return AnalysisReadiness::of(
        "two or more groups, two or more numeric outcomes, and more cases than groups plus "
        "outcomes",
        facts.totalRows, facts.n, std::move(issues), facts.groups);
}

/// p outcomes, hypothesis df q and error df v, as the F approximations need them.
struct Dimensions {
    double p = 0.0;
    double q = 0.0;
    double v = 0.0;

    double s() const { return std::min(p, q); }
    double m() const { return (std::abs(p - q) - 1.0) / 2.0; }
    double n() const { return (v - p - 1.0) / 2.0; }
};

MANOVATestStatistic testOf(std::string name,
                           double statistic,
                           const FApproximation& approximation) {
    return {.name = std::move(name),
            .statistic = statistic,
            .approxF = approximation.f,
            .dfNumerator = approximation.df1,
            .dfDenominator = approximation.df2,
            .pValue = MathDistributions::fRightTailPValue(approximation.f, approximation.df1,
                                                          approximation.df2)};
}

FApproximation pillaiF(double pillai, const Dimensions& size) {
    const double s = size.s();
    const double first = 2.0 * size.m() + s + 1.0;
    const double second = 2.0 * size.n() + s + 1.0;
    return {.f = second / first * pillai / (s - pillai), .df1 = s * first, .df2 = s * second};
}

FApproximation wilksF(double lambda, const Dimensions& size) {
    return WilksTests::raoF(lambda, size.p, size.q,
                            size.v + size.q - (size.p + size.q + 1.0) / 2.0);
}

FApproximation hotellingLawleyF(double trace, const Dimensions& size) {
    const double s = size.s();
    const double first = 2.0 * size.m() + s + 1.0;
    const double b = s * size.n() + 1.0;
    return {.f = 2.0 * b * trace / (s * s * first), .df1 = s * first, .df2 = 2.0 * b};
}

FApproximation royF(double root, const Dimensions& size) {
    const double r = std::max(size.p, size.q);
    const double df2 = size.v - r + size.q;
    return {.f = root * df2 / r, .df1 = r, .df2 = df2};
}

/// The four statistics of the eigenvalues, of which rounding may leave some below 0.
void setStatistics(MANOVAResult& result, const std::vector<double>& eigenvalues) {
    double pillai = 0.0;
    double wilks = 1.0;
    double trace = 0.0;
    double largest = 0.0;
    for (const double value : eigenvalues) {
        const double held = std::max(value, 0.0);
        pillai += held / (1.0 + held);
        wilks /= 1.0 + held;
        trace += held;
        largest = std::max(largest, held);
    }
    const Dimensions size{.p = static_cast<double>(result.numberOfDependentVariables),
                          .q = static_cast<double>(result.hypothesisDF),
                          .v = static_cast<double>(result.errorDF)};
    result.pillai = testOf(result.pillai.name, pillai, pillaiF(pillai, size));
    result.wilks = testOf(result.wilks.name, wilks, wilksF(wilks, size));
    result.hotellingLawley =
        testOf(result.hotellingLawley.name, trace, hotellingLawleyF(trace, size));
    result.roy = testOf(result.roy.name, largest, royF(largest, size));
}

/// Fills in the statistics, or tells what stands in the way.
std::optional<std::string> compared(MANOVAResult& result,
                                    const std::vector<GroupedVariable>& outcomes,
                                    const RowPartition& partition) {
    const GroupedProducts sums = GroupedProducts::of(outcomes, partition);
    const auto inverse = Whitening::inverseOf(sums.withinGroups, outcomes.size());
    if (!inverse) {
        return singular();
    }
    const auto eigen = LinearAlgebra::symmetricEigen(
        Whitening::sandwich(*inverse, sums.betweenGroups, outcomes.size()), outcomes.size());
    if (!eigen) {
        return noEigenvalues();
    }
    setStatistics(result, eigen->values);
    return std::nullopt;
}

MANOVATestStatistic notHad(std::string name) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    return {.name = std::move(name),
            .statistic = nan,
            .approxF = nan,
            .dfNumerator = nan,
            .dfDenominator = nan,
            .pValue = nan};
}

MANOVAResult withoutStatistics(const Facts& facts,
                               std::vector<std::string> groups,
                               const MANOVAOptions& options) {
    return {.groupFactorName = options.groupFactorName,
            .dependentNames = options.dependentNames,
            .groups = std::move(groups),
            .pillai = notHad("Pillai's trace"),
            .wilks = notHad("Wilks' lambda"),
            .hotellingLawley = notHad("Hotelling-Lawley trace"),
            .roy = notHad("Roy's largest root"),
            .n = facts.n,
            .numberOfGroups = facts.groups,
            .numberOfDependentVariables = facts.outcomes,
            .hypothesisDF = facts.groups - 1,
            .errorDF = facts.errorDF()};
}

}  // namespace

std::optional<MANOVAResult> test(std::span<const NumericColumn> dependentColumns,
                                 const TextColumn& groups,
                                 const MANOVAOptions& options) {
    std::vector<const NumericColumn*> numbers;
    for (const NumericColumn& column : dependentColumns) {
        if (column.size() != groups.size()) {
            return std::nullopt;
        }
        numbers.push_back(&column);
    }
    if (numbers.size() < 2 || numbers.size() != options.dependentNames.size()) {
        return std::nullopt;
    }
    const std::array texts = {&groups};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(numbers, texts);
    const CategoryCodes codes = CategoryCodes::of(groups, rows);
    const RowPartition partition(codes.codes, codes.labels.size());
    const Facts facts{.totalRows = static_cast<std::int64_t>(groups.size()),
                      .n = static_cast<std::int64_t>(rows.size()),
                      .outcomes = static_cast<std::int64_t>(numbers.size()),
                      .groups = static_cast<std::int64_t>(codes.labels.size()),
                      .smallestGroup = static_cast<std::int64_t>(partition.smallestGroup())};
    MANOVAResult result = withoutStatistics(facts, codes.labels, options);
    std::optional<std::string> obstacle;
    if (facts.groups < 2) {
        obstacle = tooFewGroups(facts);
    } else if (facts.n <= facts.groups + facts.outcomes) {
        obstacle = tooFewCases(facts);
    } else {
        obstacle =
            compared(result, GroupedVariable::of(dependentColumns, rows, partition), partition);
    }
    result.readiness = readiness(facts, obstacle);
    return result;
}

}  // namespace sorvane::MultivariateANOVA
