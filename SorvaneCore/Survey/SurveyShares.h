#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"
#include "SorvaneCore/Survey/SurveyVariance.h"

namespace sorvane {

/// The rows of a sample that hold two labels, each in its cell of their table.
struct SurveyTable {
    /// In the order in which people read labels.
    std::vector<std::string> rowLabels{};
    std::vector<std::string> columnLabels{};
    /// Positions in the sample, with the cell of each, counted row by row.
    std::vector<std::size_t> rows{};
    std::vector<std::size_t> cellOfRow{};

    std::size_t cellCount() const { return rowLabels.size() * columnLabels.size(); }
    /// The counts of the cells.
    std::vector<std::int64_t> counts() const;
    /// The shares of the cells; absent where no row has weight.
    std::optional<std::vector<double>> shares(std::span<const double> weights) const;

    /// Input      columns of one length; a missing label is none      Cost O(rows)
    static SurveyTable of(const TextColumn& rows, const TextColumn& columns);
};

/// How the shares of the cells of a table vary under a design.
struct SurveyShareVariances {
    /// Cells by cells.
    SurveyVariance::DesignCovariance ofCells{};
    /// One per cell, of its share of its row; NaN where no replicate gives the row weight.
    std::vector<double> withinRows{};
    /// One per row of the table: the replicates that give it no weight.
    std::vector<std::int64_t> replicatesWithoutRow{};

    /// Input      the shares under the design's weights
    /// Method     linearization; or the shares under each replicate. A share of its row is a ratio
    ///            of two shares
    /// Failure    no replicate gives any row weight -> absent
    /// Cost       O(rows + units (cells)^2), and as much a replicate, on all cores
    static std::optional<SurveyShareVariances> of(const SurveyTable& table,
                                                  std::span<const double> shares,
                                                  const SampledDesign& sampled);
};

namespace SurveyShares {

/// The shares of a row's cells among the row; absent where it has no weight.
std::optional<std::vector<double>> withinRow(std::span<const double> shares,
                                             std::size_t row,
                                             std::size_t columns);

}  // namespace SurveyShares

}  // namespace sorvane
