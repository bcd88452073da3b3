#include "SorvaneCore/Analyses/Factorial/FactorialCells.h"

#include <algorithm>
#include <limits>
#include <set>

namespace sorvane {

namespace {

/// The number of combinations, or the largest number where there are more.
std::int64_t combinations(std::span<const std::size_t> levels) {
    std::int64_t product = 1;
    for (const std::size_t count : levels) {
        const auto factor = static_cast<std::int64_t>(count);
        if (product > std::numeric_limits<std::int64_t>::max() / factor) {
            return std::numeric_limits<std::int64_t>::max();
        }
        product *= factor;
    }
    return product;
}

/// The number of combinations that the rows have.
std::int64_t occupied(std::span<const CategoryCodes> factors) {
    std::set<std::vector<std::uint32_t>> seen;
    std::vector<std::uint32_t> combination(factors.size());
    for (std::size_t row = 0; row < factors.front().codes.size(); ++row) {
        for (std::size_t factor = 0; factor < factors.size(); ++factor) {
            combination[factor] = factors[factor].codes[row];
        }
        seen.insert(combination);
    }
    return static_cast<std::int64_t>(seen.size());
}

}  // namespace

FactorialCells::FactorialCells(std::span<const CategoryCodes> factors) {
    for (const CategoryCodes& factor : factors) {
        levels_.push_back(factor.labels.size());
    }
    const std::int64_t cells = combinations(levels_);
    // More cells than rows cannot all be filled, and may be too many to be held.
    if (cells > static_cast<std::int64_t>(factors.front().codes.size())) {
        emptyCells_ = cells - occupied(factors);
        return;
    }
    strides_.assign(levels_.size(), 1);
    for (std::size_t factor = levels_.size() - 1; factor > 0; --factor) {
        strides_[factor - 1] = strides_[factor] * levels_[factor];
    }
    counts_.assign(static_cast<std::size_t>(cells), 0);
    countCells(factors);
    emptyCells_ = std::ranges::count(counts_, 0);
}

void FactorialCells::countCells(std::span<const CategoryCodes> factors) {
    cellOfRow_.assign(factors.front().codes.size(), 0);
    for (std::size_t factor = 0; factor < factors.size(); ++factor) {
        const std::vector<std::uint32_t>& codes = factors[factor].codes;
        const auto stride = static_cast<std::uint32_t>(strides_[factor]);
        for (std::size_t row = 0; row < codes.size(); ++row) {
            cellOfRow_[row] += codes[row] * stride;
        }
    }
    for (const std::uint32_t cell : cellOfRow_) {
        ++counts_[cell];
    }
}

}  // namespace sorvane
