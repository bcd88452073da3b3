#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sorvane {

/// Rows put in the order of their groups, so that the values of each group stand together.
class RowPartition {
public:
    /// Input      the group of each row, counted from 0
    /// Cost       O(rows + groups)
    RowPartition(std::span<const std::uint32_t> groupOfRow, std::size_t groups);

    std::size_t groupCount() const { return starts_.size() - 1; }
    std::size_t groupSize(std::size_t group) const { return starts_[group + 1] - starts_[group]; }
    std::size_t smallestGroup() const;

    /// The values of the rows, group after group, in row order within each.
    std::vector<double> arranged(std::span<const double> values) const;
    /// Those of one group among arranged values.
    template <typename T>
    std::span<T> group(std::span<T> arranged, std::size_t group) const {
        return arranged.subspan(starts_[group], groupSize(group));
    }
    /// The mean of each group, of which none is empty; see `SampleMoments::mean`.
    std::vector<double> means(std::span<const double> arranged) const;

private:
    /// Where each group begins, and the number of rows.
    std::vector<std::size_t> starts_;
    /// The place of each row.
    std::vector<std::uint32_t> placeOf_;
};

}  // namespace sorvane
