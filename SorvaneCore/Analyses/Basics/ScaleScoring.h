#pragma once

#include <boost/describe/enum.hpp>
#include <cstddef>
#include <string_view>

namespace sorvane {

/// What happens to a person who left items of a scale unanswered.
enum class ReliabilityMissingDataRule {
    /// Only rows with every item are kept.
    listwiseDeletion,
    /// Rows with enough items are kept and filled with the mean of their own items.
    availableItemMean,
    /// The same, with the completion compared the other way round.
    excludeIfMissingMoreThanThreshold
};
BOOST_DESCRIBE_ENUM(ReliabilityMissingDataRule,
                    listwiseDeletion,
                    availableItemMean,
                    excludeIfMissingMoreThanThreshold)

/// As it is stored and quoted in warnings: "listwise deletion", "available-item mean", …
std::string_view rawValue(ReliabilityMissingDataRule rule);
std::string_view displayName(ReliabilityMissingDataRule rule);

enum class ScaleScoreMethod { mean, sum };
BOOST_DESCRIBE_ENUM(ScaleScoreMethod, mean, sum)

std::string_view displayName(ScaleScoreMethod method);

/// Whether a row with `present` of `itemCount` items stays under a rule.
///
/// Method     with a of k items and m = minimumItemCompletion, `availableItemMean` asks for
///            (k - a)/k <= 1 - m and `excludeIfMissingMoreThanThreshold` for a/k >= m. The two
///            differ at the edge by rounding: 4 of 5 items at 0.8 fail the first and pass the
///            second
/// Failure    a row without any item never stays under these two
bool keepsRow(ReliabilityMissingDataRule rule,
              std::size_t present,
              std::size_t itemCount,
              double minimumItemCompletion);

}  // namespace sorvane
