#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"

namespace sorvane {

/// The cells of a factorial design: every combination of one level of each factor, the last factor
/// running fastest.
class FactorialCells {
public:
    /// Input      factors on the same rows, each with at least two levels
    explicit FactorialCells(std::span<const CategoryCodes> factors);

    /// How many combinations no row has. Only where there are none can the rest be asked for.
    std::int64_t emptyCells() const { return emptyCells_; }

    std::size_t cellCount() const { return counts_.size(); }
    /// The rows of each cell.
    const std::vector<std::int64_t>& counts() const { return counts_; }
    /// The cell of each row.
    const std::vector<std::uint32_t>& cellOfRow() const { return cellOfRow_; }

    std::size_t levels(std::size_t factor) const { return levels_[factor]; }
    std::size_t level(std::size_t cell, std::size_t factor) const {
        return cell / strides_[factor] % levels_[factor];
    }

private:
    void countCells(std::span<const CategoryCodes> factors);

    std::vector<std::size_t> levels_;
    std::vector<std::size_t> strides_;
    std::vector<std::uint32_t> cellOfRow_;
    std::vector<std::int64_t> counts_;
    std::int64_t emptyCells_ = 0;
};

}  // namespace sorvane
