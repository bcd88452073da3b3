#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Import/TextBudget.h"

namespace sorvane {

/// Builds a table of which only some cells are given; the others are blank. A column takes memory
/// up to its last cell that was set.
class SparseTableBuilder {
public:
    /// A table out of so many bytes of source.
    explicit SparseTableBuilder(std::size_t sourceBytes);

    std::size_t columnCount() const { return columns_.size(); }
    /// Adds blank columns up to that number.
    void widen(std::size_t columnCount);
    /// Whether so many rows of the present columns, or the texts set so far, would be far more than
    /// the source can mean: few cells spread wide, or one long text referred to many times. No such
    /// table must be built.
    bool isTooLarge(std::size_t rowCount) const;

    /// Sets a cell; in a table that is too large nothing.
    ///
    /// Input      rows of a column in ascending order
    void set(std::size_t row, std::size_t index, std::string_view text);

    /// The table of `rowCount` rows; the builder is empty afterwards.
    TextTable finish(std::size_t rowCount);

private:
    std::size_t mostCells_;
    std::unique_ptr<TextBudget> budget_;
    std::vector<TextColumnBuilder> columns_;
};

}  // namespace sorvane
