#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Screens/ShownCells.h"

namespace sorvane {

/// A cell of a table. Cells are ordered as they are read: row by row, from left to right.
struct CellPlace {
    std::size_t row = 0;
    std::size_t column = 0;

    auto operator<=>(const CellPlace&) const = default;
};

/// What a search looks for.
struct TableQuery {
    enum class Extent { anywhereInCell, wholeCell };

    std::string words;
    Extent extent = Extent::anywhereInCell;

    bool operator==(const TableQuery&) const = default;
};

/// The cells of a table in which some words stand.
class TableMatches {
public:
    TableMatches() = default;

    /// Finds every cell that holds the words, whatever their case.
    ///
    /// Input      cells: as they are shown; the query's words, of which none match nothing
    /// Method     texts and words are compared in lower case (Unicode, without regard to the
    ///            locale); the distinct texts of a column first, then its codes; columns side by
    ///            side on all cores
    /// Cost       O(distinct texts · length + cells); a bit per cell of a column with matches
    static TableMatches of(const ShownCells& cells, const TableQuery& query);

    std::uint64_t count() const { return count_; }
    bool contains(CellPlace place) const;

    /// The first match after a cell, or from the first cell on; begins again after the last.
    ///
    /// Failure    absent without matches        Cost  O(rows / 64 + columns)
    std::optional<CellPlace> next(std::optional<CellPlace> from) const;
    /// The last match before a cell; goes on from the last cell.
    ///
    /// Failure    absent without matches        Cost  O(rows / 64 + columns)
    std::optional<CellPlace> previous(CellPlace from) const;

    /// How many matches stand up to this cell, this one among them.
    ///
    /// Cost       O(rows · columns / 64)
    std::uint64_t rank(CellPlace place) const;

    /// "3 of 128 matches" where the cell is a match, else "128 matches"; "No matches".
    std::string summary(std::optional<CellPlace> place) const;

private:
    using Bits = std::vector<std::uint64_t>;

    std::optional<CellPlace> firstInRow(std::size_t row, std::size_t fromColumn) const;
    std::optional<CellPlace> lastInRow(std::size_t row, std::size_t endColumn) const;
    std::optional<std::size_t> rowFrom(std::size_t row) const;
    std::optional<std::size_t> rowBefore(std::size_t row) const;

    /// A bit per row; no bits at all for a column without matches.
    std::vector<Bits> columns_;
    /// The rows in which any column matches.
    Bits rows_;
    std::uint64_t count_ = 0;
};

}  // namespace sorvane
