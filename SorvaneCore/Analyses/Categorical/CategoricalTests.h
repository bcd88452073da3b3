#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

struct ChiSquareResult {
    double statistic = 0.0;
    std::int64_t degreesOfFreedom = 0;
    double pValue = 1.0;
    double cramersV = 0.0;
    std::vector<std::string> rowLabels{};
    std::vector<std::string> columnLabels{};
    /// By row, then by column.
    std::vector<std::vector<std::int64_t>> observed{};
    std::vector<std::vector<double>> expected{};
    std::vector<std::string> warnings{};

    bool operator==(const ChiSquareResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(ChiSquareResult,
                      (),
                      (statistic,
                       degreesOfFreedom,
                       pValue,
                       cramersV,
                       rowLabels,
                       columnLabels,
                       observed,
                       expected,
                       warnings))

namespace CategoricalTests {

/// Pearson's chi-square test of independence of two category columns.
///
/// Input      columns of one length; rows with a missing cell are left out. Categories are the
///            cells' texts as they stand, in order of first appearance
/// Method     no continuity correction, df = (r - 1)(c - 1); Cramer's V = sqrt(X2 / (N min(r - 1,
///            c - 1)))
/// Returns    p NaN and V 0 where a column has only one category
/// Failure    lengths that differ, or no complete pair -> absent
/// Cost       O(n) for columns with codes, and the size of the table
std::optional<ChiSquareResult> chiSquare(const TextColumn& rowCategories,
                                         const TextColumn& columnCategories);

}  // namespace CategoricalTests

}  // namespace sorvane
