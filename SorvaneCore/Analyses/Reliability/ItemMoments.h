#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "SorvaneCore/Analyses/Reliability/PreparedItems.h"

namespace sorvane {

/// What all reliability statistics follow from: means and cross-products of the prepared items and
/// of their total, which stands last.
struct ItemMoments {
    std::size_t itemCount = 0;
    std::size_t cases = 0;
    std::vector<double> means;
    /// Sums of products of deviations, (itemCount + 1) squared, symmetric.
    std::vector<double> products;
    /// Absent entries of each item among the input rows.
    std::vector<std::int64_t> missingCounts;

    /// Method     deviations from the means of the first rows, corrected to the means of all; a
    ///            second pass where the first rows were far off, so that no digits are lost
    /// Accuracy   a constant item or total has products of exactly 0
    static ItemMoments of(const PreparedItems& items);

    double product(std::size_t i, std::size_t j) const { return products[i * (itemCount + 1) + j]; }
    /// Of an item, or of the total at `itemCount`; absent with fewer than two cases.
    std::optional<double> variance(std::size_t index) const;
};

}  // namespace sorvane
