#pragma once

#include <span>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane {

/// One cell: the paragraphs that follow each other at the same place.
struct TableGridCell {
    TextTableBlock block;
    std::span<const Paragraph> paragraphs;
};

/// A table of a document, cell by cell: rows ascending, and within a row by column.
struct TableGrid {
    int columnCount = 0;
    std::vector<std::vector<TableGridCell>> rows;

    /// The table with whose first paragraph the paragraphs begin; it refers to them.
    static TableGrid leading(std::span<const Paragraph> paragraphs);

    /// How many of the rows are heads: those down to the first one with a rule under it, 0 when
    /// only the last row has one.
    int headerRowCount() const;
};

/// The number of paragraphs, from the first on, that belong to the same table as the first; 0 when
/// it stands in none.
std::size_t leadingTableLength(std::span<const Paragraph> paragraphs);

}  // namespace sorvane
