#include "SorvaneMac/Report/TableGrid.h"

#include <algorithm>
#include <cstddef>

namespace sorvane {
namespace {

bool isSamePlace(const TextTableBlock& a, const TextTableBlock& b) {
    return a.startingRow == b.startingRow && a.startingColumn == b.startingColumn;
}

bool precedes(const TableGridCell& a, const TableGridCell& b) {
    return a.block.startingRow != b.block.startingRow
               ? a.block.startingRow < b.block.startingRow
               : a.block.startingColumn < b.block.startingColumn;
}

std::vector<TableGridCell> sortedCells(std::span<const Paragraph> paragraphs) {
    std::vector<TableGridCell> cells;
    for (std::size_t first = 0; first < paragraphs.size();) {
        std::size_t end = first + 1;
        while (end < paragraphs.size() &&
               isSamePlace(*paragraphs[first].block, *paragraphs[end].block)) {
            ++end;
        }
        cells.push_back({.block = *paragraphs[first].block,
                         .paragraphs = paragraphs.subspan(first, end - first)});
        cells.back().block.columnSpan = std::max(cells.back().block.columnSpan, 1);
        first = end;
    }
    if (!std::ranges::is_sorted(cells, precedes)) {
        std::ranges::stable_sort(cells, precedes);
    }
    return cells;
}

bool hasBottomRule(const std::vector<TableGridCell>& row) {
    return std::ranges::any_of(row, [](const auto& cell) { return cell.block.bottomBorder > 0; });
}

}  // namespace

TableGrid TableGrid::leading(std::span<const Paragraph> paragraphs) {
    TableGrid grid;
    for (TableGridCell& cell : sortedCells(paragraphs.first(leadingTableLength(paragraphs)))) {
        grid.columnCount =
            std::max(grid.columnCount, cell.block.startingColumn + cell.block.columnSpan);
        if (grid.rows.empty() ||
            grid.rows.back().front().block.startingRow != cell.block.startingRow) {
            grid.rows.emplace_back();
        }
        grid.rows.back().push_back(cell);
    }
    return grid;
}

int TableGrid::headerRowCount() const {
    const auto ruled = std::ranges::find_if(rows, hasBottomRule);
    if (ruled == rows.end() || ruled + 1 == rows.end()) {
        return 0;
    }
    return static_cast<int>(ruled - rows.begin()) + 1;
}

std::size_t leadingTableLength(std::span<const Paragraph> paragraphs) {
    std::size_t length = 0;
    while (length < paragraphs.size() && paragraphs[length].block &&
           paragraphs[length].block->table == paragraphs.front().block->table) {
        ++length;
    }
    return length;
}

}  // namespace sorvane
