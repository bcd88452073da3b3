#include "SorvaneCore/Analyses/Categorical/CrossTabulation.h"

#include <utility>

#include "SorvaneCore/Analyses/Categorical/CategoryTable.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::CrossTabulation {

namespace {

AnalysisReadiness readiness(const CategoryTable& table) {
    std::vector<AnalysisReadinessIssue> issues;
    if (table.excludedPairs >= 1) {
        issues.push_back(AnalysisReadinessIssue::caution(NumberText::integer(table.excludedPairs) +
                                                         " pairs were excluded as missing."));
    }
    if (table.rowLabels.size() < 2 || table.columnLabels.size() < 2) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "One variable has only a single observed category; the table has no cross dimension "
            "to compare."));
    }
    return AnalysisReadiness::of(
        "at least one complete pair; at least two categories per variable for a cross comparison",
        table.grandTotal + table.excludedPairs, table.grandTotal, std::move(issues));
}

double percentage(std::int64_t count, std::int64_t total) {
    return 100.0 * static_cast<double>(count) / static_cast<double>(total);
}

/// Every count as a share of what `totalOf(row, column)` says.
template <typename TotalOf>
std::vector<std::vector<double>> percentages(const CategoryTable& table, TotalOf totalOf) {
    std::vector<std::vector<double>> result;
    for (std::size_t i = 0; i < table.counts.size(); ++i) {
        std::vector<double>& row = result.emplace_back();
        for (std::size_t j = 0; j < table.counts[i].size(); ++j) {
            row.push_back(percentage(table.counts[i][j], totalOf(i, j)));
        }
    }
    return result;
}

}  // namespace

std::optional<CrossTabResult> crosstab(const TextColumn& rowCategories,
                                       const TextColumn& columnCategories) {
    std::optional<CategoryTable> counted = CategoryTable::of(rowCategories, columnCategories);
    if (!counted) {
        return std::nullopt;
    }
    CategoryTable& table = *counted;
    CrossTabResult result{.grandTotal = table.grandTotal};
    result.cellPercentages =
        percentages(table, [&](std::size_t, std::size_t) { return table.grandTotal; });
    result.rowPercentages =
        percentages(table, [&](std::size_t i, std::size_t) { return table.rowTotals[i]; });
    result.columnPercentages =
        percentages(table, [&](std::size_t, std::size_t j) { return table.columnTotals[j]; });
    result.readiness = readiness(table);
    result.rowLabels = std::move(table.rowLabels);
    result.columnLabels = std::move(table.columnLabels);
    result.counts = std::move(table.counts);
    result.rowTotals = std::move(table.rowTotals);
    result.columnTotals = std::move(table.columnTotals);
    return result;
}

}  // namespace sorvane::CrossTabulation
