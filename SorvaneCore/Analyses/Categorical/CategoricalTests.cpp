#include "SorvaneCore/Analyses/Categorical/CategoricalTests.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Categorical/CategoryTable.h"
#include "SorvaneCore/Analyses/Categorical/ExpectedCounts.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::CategoricalTests {

namespace {

std::vector<std::string> warnings(std::int64_t smallCount, std::int64_t cells) {
    if (smallCount < 1) {
        return {};
    }
    return {ExpectedCounts::smallCells(smallCount, cells) +
            "; interpret the chi-square result cautiously."};
}

/// What a row of the table would hold if the columns were independent of it.
std::vector<double> expectedRow(std::int64_t rowTotal, const CategoryTable& table) {
    std::vector<double> row;
    for (const std::int64_t columnTotal : table.columnTotals) {
        row.push_back(static_cast<double>(rowTotal) * static_cast<double>(columnTotal) /
                      static_cast<double>(table.grandTotal));
    }
    return row;
}

}  // namespace

std::optional<ChiSquareResult> chiSquare(const TextColumn& rowCategories,
                                         const TextColumn& columnCategories) {
    std::optional<CategoryTable> table = CategoryTable::of(rowCategories, columnCategories);
    if (!table) {
        return std::nullopt;
    }
    const auto rows = static_cast<std::int64_t>(table->rowTotals.size());
    const auto columns = static_cast<std::int64_t>(table->columnTotals.size());
    ChiSquareResult result{.degreesOfFreedom = (rows - 1) * (columns - 1)};
    std::int64_t smallCount = 0;
    for (std::size_t i = 0; i < table->counts.size(); ++i) {
        result.expected.push_back(expectedRow(table->rowTotals[i], *table));
        result.statistic += ExpectedCounts::chiSquare(table->counts[i], result.expected[i]);
        smallCount += ExpectedCounts::small(result.expected[i]);
    }
    result.pValue = MathDistributions::chiSquareRightTailPValue(
        result.statistic, static_cast<double>(result.degreesOfFreedom));
    const double largest = static_cast<double>(table->grandTotal) *
                           static_cast<double>(std::min(rows - 1, columns - 1));
    result.cramersV = largest > 0.0 ? std::sqrt(result.statistic / largest) : 0.0;
    result.warnings = warnings(smallCount, rows * columns);
    result.rowLabels = std::move(table->rowLabels);
    result.columnLabels = std::move(table->columnLabels);
    result.observed = std::move(table->counts);
    return result;
}

}  // namespace sorvane::CategoricalTests
