#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

/// What components, factors and omega share.
namespace sorvane::LatentVariableSupport {

/// Items as z scores over their complete rows.
struct Prepared {
    std::size_t itemCount = 0;
    std::size_t casesUsed = 0;
    /// Item after item: the score of case i on item j at j * casesUsed + i.
    std::vector<double> standardized{};
    /// itemCount by itemCount, exactly symmetric, 1 on the diagonal.
    std::vector<double> correlation{};

    std::span<const double> item(std::size_t j) const {
        return std::span(standardized).subspan(j * casesUsed, casesUsed);
    }

    bool operator==(const Prepared&) const = default;
};

/// The z scores and correlations of items.
///
/// Input      items of one length; a row with an absent cell is left out
/// Method     mean and standard deviation (n - 1) over the complete rows; correlations are sums of
///            products of z scores over n - 1
/// Failure    fewer than two items, no rows, lengths that differ, fewer than three complete rows,
///            an item without spread -> absent
/// Cost       O(n k^2): about 30 ms for 100,000 rows of 30 items
std::optional<Prepared> prepare(std::span<const NumericColumn> items);

/// What must be told of the number of items and cases.
///
/// Input      the method's name as a sentence begins with it; rows given and complete rows
AnalysisReadiness readiness(std::string_view method,
                            std::int64_t itemCount,
                            std::int64_t totalRows,
                            std::int64_t casesUsed);

/// The same of items that were prepared.
AnalysisReadiness readiness(std::string_view method,
                            std::span<const NumericColumn> items,
                            const Prepared& prepared);

}  // namespace sorvane::LatentVariableSupport
