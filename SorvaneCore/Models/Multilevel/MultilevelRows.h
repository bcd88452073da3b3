#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelData.h"

namespace sorvane {

/// Rows by the trimmed label of their cluster.
struct ClusterCodes {
    /// In order of first appearance.
    std::vector<std::string> labels{};
    /// One per row.
    std::vector<std::uint32_t> codes{};

    std::size_t count() const { return labels.size(); }
    std::vector<std::size_t> sizes() const;
};

/// The rows of a multilevel model that count, see `MultilevelData`.
struct MultilevelRows {
    std::vector<double> outcome{};
    /// One list per predictor.
    std::vector<std::vector<double>> predictors{};
    ClusterCodes cluster{};
    /// Without labels where there is no second factor.
    ClusterCodes cluster2{};
    /// The predictor with a random slope.
    std::optional<std::size_t> slope{};

    std::size_t count() const { return outcome.size(); }
    /// Fixed effects, the intercept among them.
    std::size_t fixedCount() const { return predictors.size() + 1; }

    /// The rows with those of each cluster together, in row order within it.
    MultilevelRows sortedByCluster() const;

    /// Failure    lengths or names that do not match, a slope that is no predictor, no more rows
    ///            than fixed effects -> absent
    /// Cost       O(rows * columns)
    static std::optional<MultilevelRows> of(const MultilevelData& data,
                                            const MultilevelOptions& options);
};

}  // namespace sorvane
