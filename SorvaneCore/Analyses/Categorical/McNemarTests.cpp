#include "SorvaneCore/Analyses/Categorical/McNemarTests.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "SorvaneCore/Analyses/Categorical/CategoryTable.h"
#include "SorvaneCore/Analyses/Categorical/LogFactorial.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::McNemarTests {

namespace {

/// Below so many discordant pairs the chi-square approximation is not to be relied on.
constexpr std::int64_t enoughDiscordant = 25;

double exactPValue(std::int64_t b, std::int64_t c) {
    const std::int64_t n = b + c;
    const double all = logFactorial(n) - static_cast<double>(n) * std::numbers::ln2;
    double lowerTail = 0.0;
    for (std::int64_t k = 0; k <= std::min(b, c); ++k) {
        lowerTail += std::exp(all - logFactorial(k) - logFactorial(n - k));
    }
    return std::min(2.0 * lowerTail, 1.0);
}

AnalysisReadiness readiness(const FourCells& counts, std::int64_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    const std::int64_t discordant = counts.b + counts.c;
    if (discordant < enoughDiscordant) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "There are only " + NumberText::integer(discordant) +
            " discordant pairs. Use the exact binomial p-value; the chi-square approximation is "
            "unreliable when discordant pairs are few."));
    }
    return AnalysisReadiness::of("at least one discordant pair (b + c > 0)", totalRows,
                                 counts.total(), std::move(issues));
}

std::optional<McNemarResult> test(const FourCells& counts, std::int64_t totalRows) {
    const std::int64_t discordant = counts.b + counts.c;
    if (counts.hasNegative() || discordant < 1) {
        return std::nullopt;
    }
    const std::int64_t corrected = std::max<std::int64_t>(std::abs(counts.b - counts.c) - 1, 0);
    const double numerator = static_cast<double>(corrected) * static_cast<double>(corrected);
    McNemarResult result{.observed = counts.rows(),
                         .b = counts.b,
                         .c = counts.c,
                         .statistic = numerator / static_cast<double>(discordant),
                         .exactPValue = exactPValue(counts.b, counts.c),
                         .usesExactRecommended = discordant < enoughDiscordant,
                         .readiness = readiness(counts, totalRows)};
    result.pValue = MathDistributions::chiSquareRightTailPValue(result.statistic, 1.0);
    return result;
}

/// The categories of both measurements, each once.
std::vector<std::string> sharedCategories(const CategoryTable& table) {
    std::vector<std::string> categories = table.rowLabels;
    for (const std::string& label : table.columnLabels) {
        if (std::ranges::find(categories, label) == categories.end()) {
            categories.push_back(label);
        }
    }
    return categories;
}

std::int64_t countOf(const CategoryTable& table,
                     const std::string& before,
                     const std::string& after) {
    const auto row = std::ranges::find(table.rowLabels, before);
    const auto column = std::ranges::find(table.columnLabels, after);
    if (row == table.rowLabels.end() || column == table.columnLabels.end()) {
        return 0;
    }
    return table.counts[static_cast<std::size_t>(row - table.rowLabels.begin())]
                       [static_cast<std::size_t>(column - table.columnLabels.begin())];
}

}  // namespace

std::optional<McNemarResult> test(const FourCells& counts) {
    return test(counts, counts.total());
}

std::optional<McNemarResult> test(const TextColumn& before, const TextColumn& after) {
    const std::optional<CategoryTable> table = CategoryTable::of(before, after);
    if (!table) {
        return std::nullopt;
    }
    const std::vector<std::string> categories = sharedCategories(*table);
    if (categories.size() != 2) {
        return std::nullopt;
    }
    const std::string& first = categories[0];
    const std::string& second = categories[1];
    return test({.a = countOf(*table, first, first),
                 .b = countOf(*table, first, second),
                 .c = countOf(*table, second, first),
                 .d = countOf(*table, second, second)},
                table->grandTotal + table->excludedPairs);
}

}  // namespace sorvane::McNemarTests
