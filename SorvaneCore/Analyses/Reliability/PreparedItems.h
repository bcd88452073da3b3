#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// A block of prepared rows: no entry absent, items one after another `PreparedItems::blockRows`
/// apart.
struct PreparedBlock {
    explicit PreparedBlock(std::size_t itemCount);

    double* item(std::size_t index);
    const double* item(std::size_t index) const;

    /// How many prepared rows the block holds.
    std::size_t rows = 0;
    std::vector<double> values;
    /// Whether an entry of an input row is present; items as far apart as in `values`.
    std::vector<std::uint8_t> present;
    /// Input rows that stay, counted from the first of the block.
    std::vector<std::uint16_t> kept;
    /// The prepared rows among them that have absent entries.
    std::vector<std::uint16_t> incomplete;
};

/// The rows of a scale as the missing-data rule leaves them, read block by block.
class PreparedItems {
public:
    static constexpr std::size_t blockRows = 256;

    /// Keeps a view of the columns.
    PreparedItems(std::span<const NumericColumn> items, const ReliabilityOptions& options);

    std::size_t itemCount() const { return items_.size(); }
    std::size_t inputRows() const { return inputRows_; }

    /// The input rows from `firstRow` on, at most `blockRows` of them, prepared.
    void read(std::size_t firstRow, PreparedBlock& block) const;

    /// Calls `use` with each block in row order.
    template <typename Use>
    void forEachBlock(Use&& use) const {
        PreparedBlock block(itemCount());
        for (std::size_t row = 0; row < inputRows_; row += blockRows) {
            read(row, block);
            use(block);
        }
    }

private:
    /// x is read as base + sign * x.
    struct Coding {
        double base = 0.0;
        double sign = 1.0;
    };

    void markPresent(std::size_t firstRow, std::size_t count, PreparedBlock& block) const;
    void gather(std::size_t item, std::size_t firstRow, PreparedBlock& block) const;
    void fill(PreparedBlock& block) const;

    std::span<const NumericColumn> items_;
    std::vector<Coding> codings_;
    std::size_t inputRows_ = 0;
    /// Whether a row stays, by the number of items it has.
    std::vector<std::uint8_t> keepsWith_;
};

}  // namespace sorvane
