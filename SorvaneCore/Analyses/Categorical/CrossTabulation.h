#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

struct CrossTabResult {
    std::vector<std::string> rowLabels{};
    std::vector<std::string> columnLabels{};
    /// By row, then by column; so are the percentages.
    std::vector<std::vector<std::int64_t>> counts{};
    std::vector<std::int64_t> rowTotals{};
    std::vector<std::int64_t> columnTotals{};
    std::int64_t grandTotal = 0;
    /// Of the grand total.
    std::vector<std::vector<double>> cellPercentages{};
    /// Within the row.
    std::vector<std::vector<double>> rowPercentages{};
    /// Within the column.
    std::vector<std::vector<double>> columnPercentages{};
    AnalysisReadiness readiness{};

    bool operator==(const CrossTabResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(CrossTabResult,
                      (),
                      (rowLabels,
                       columnLabels,
                       counts,
                       rowTotals,
                       columnTotals,
                       grandTotal,
                       cellPercentages,
                       rowPercentages,
                       columnPercentages,
                       readiness))

namespace CrossTabulation {

/// The counts of the pairs of categories of two columns, with their percentages.
///
/// Input      columns of one length; rows with a missing cell are left out and counted in the
///            readiness. Categories are the cells' texts, in order of first appearance
/// Failure    lengths that differ, or no complete pair -> absent
/// Cost       O(n) for columns with codes, and the size of the table
std::optional<CrossTabResult> crosstab(const TextColumn& rowCategories,
                                       const TextColumn& columnCategories);

}  // namespace CrossTabulation

}  // namespace sorvane
