#include "SorvaneCore/Analyses/Categorical/GoodnessOfFit.h"

#include <array>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Categorical/ExpectedCounts.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::GoodnessOfFit {

namespace {

constexpr std::int64_t enoughPerCategory = 5;

std::string smallCells(const GoodnessOfFitResult& result) {
    return ExpectedCounts::smallCells(ExpectedCounts::small(result.expected),
                                      static_cast<std::int64_t>(result.expected.size()));
}

std::vector<std::string> warnings(const GoodnessOfFitResult& result) {
    if (ExpectedCounts::small(result.expected) < 1) {
        return {};
    }
    return {smallCells(result) +
            ". The chi-square approximation may be unreliable; consider combining categories or "
            "an exact test."};
}

AnalysisReadiness readiness(const GoodnessOfFitResult& result,
                            std::int64_t total,
                            std::int64_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    if (ExpectedCounts::small(result.expected) >= 1) {
        issues.push_back(AnalysisReadinessIssue::caution(
            smallCells(result) + "; the chi-square approximation may not hold."));
    }
    const auto categories = static_cast<std::int64_t>(result.expected.size());
    if (total < enoughPerCategory * categories) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "Total count " + NumberText::integer(total) + " is small relative to " +
            NumberText::integer(categories) + " categories; treat the result as exploratory."));
    }
    return AnalysisReadiness::of(
        "at least 2 categories with a positive total count; expected cells of at least 5 for a "
        "reliable approximation",
        totalRows, total, std::move(issues));
}

std::vector<std::string> numberedLabels(std::size_t count) {
    std::vector<std::string> labels;
    for (std::size_t i = 1; i <= count; ++i) {
        labels.push_back("Category " + NumberText::integer(static_cast<std::int64_t>(i)));
    }
    return labels;
}

/// What each category would hold; absent where a proportion is not above 0.
std::optional<std::vector<double>> expectedCounts(std::span<const double> proportions,
                                                  std::size_t categories,
                                                  double total) {
    if (proportions.size() != categories) {
        return std::vector<double>(categories, total / static_cast<double>(categories));
    }
    double sum = 0.0;
    for (const double proportion : proportions) {
        if (!(proportion > 0.0)) {
            return std::nullopt;
        }
        sum += proportion;
    }
    std::vector<double> expected;
    for (const double proportion : proportions) {
        expected.push_back(total * (proportion / sum));
    }
    return expected;
}

/// The counts, their labels and the rows that they come from.
struct Counts {
    std::vector<std::int64_t> observed{};
    std::vector<std::string> labels{};
    std::int64_t total = 0;
    std::int64_t totalRows = 0;
};

std::optional<GoodnessOfFitResult> test(Counts counts, std::span<const double> proportions) {
    const std::size_t categories = counts.observed.size();
    if (categories < 2 || counts.total < 1) {
        return std::nullopt;
    }
    std::optional<std::vector<double>> expected =
        expectedCounts(proportions, categories, static_cast<double>(counts.total));
    if (!expected) {
        return std::nullopt;
    }
    GoodnessOfFitResult result{.statistic = ExpectedCounts::chiSquare(counts.observed, *expected),
                               .degreesOfFreedom = static_cast<std::int64_t>(categories) - 1,
                               .categoryLabels = counts.labels.size() == categories
                                                     ? std::move(counts.labels)
                                                     : numberedLabels(categories),
                               .observed = std::move(counts.observed),
                               .expected = std::move(*expected)};
    result.pValue = MathDistributions::chiSquareRightTailPValue(
        result.statistic, static_cast<double>(result.degreesOfFreedom));
    result.warnings = warnings(result);
    result.readiness = readiness(result, counts.total, counts.totalRows);
    return result;
}

}  // namespace

std::optional<GoodnessOfFitResult> chiSquare(std::span<const std::int64_t> observed,
                                             std::span<const std::string> categoryLabels,
                                             std::span<const double> expectedProportions) {
    Counts counts{.observed = {observed.begin(), observed.end()},
                  .labels = {categoryLabels.begin(), categoryLabels.end()}};
    for (const std::int64_t count : observed) {
        if (count < 0) {
            return std::nullopt;
        }
        counts.total += count;
    }
    counts.totalRows = counts.total;
    return test(std::move(counts), expectedProportions);
}

std::optional<GoodnessOfFitResult> chiSquare(const TextColumn& categories,
                                             std::span<const double> expectedProportions) {
    const std::array columns = {&categories};
    const std::vector<std::uint32_t> rows = CompleteCases::rows({}, columns);
    CategoryCodes codes = CategoryCodes::of(categories, rows);
    return test({.observed = codes.counts(),
                 .labels = std::move(codes.labels),
                 .total = static_cast<std::int64_t>(rows.size()),
                 .totalRows = static_cast<std::int64_t>(categories.size())},
                expectedProportions);
}

}  // namespace sorvane::GoodnessOfFit
