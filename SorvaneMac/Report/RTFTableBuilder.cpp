#include "SorvaneMac/Report/RTFTableBuilder.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace sorvane {
namespace {

constexpr int twipsPerInch = 1440;

/// Edges closer than this, in twips, are the same column in two rows that were rounded differently.
constexpr int edgeTolerance = 20;

int columnOf(const std::vector<int>& edges, int edge) {
    const auto found = std::ranges::upper_bound(edges, edge);
    return std::max(static_cast<int>(found - edges.begin()) - 1, 0);
}

}  // namespace

void RTFTableBuilder::addRow(const std::vector<RTFCellDefinition>& definitions,
                             std::vector<Cell> cells) {
    std::vector<PlacedCell> row;
    int left = 0;
    for (std::size_t index = 0; index < cells.size(); ++index) {
        RTFCellDefinition definition{.rightEdge = left + twipsPerInch};
        if (index < definitions.size()) {
            definition = definitions[index];
        }
        definition.rightEdge = std::max(definition.rightEdge, left + edgeTolerance + 1);
        if (definition.mergedWithPrevious && !row.empty()) {
            row.back().definition.rightEdge = definition.rightEdge;
        } else {
            row.push_back(
                {.left = left, .definition = definition, .paragraphs = std::move(cells[index])});
        }
        left = definition.rightEdge;
    }
    if (!row.empty()) {
        rows_.push_back(std::move(row));
    }
}

std::vector<Paragraph> RTFTableBuilder::take(int table) {
    const std::vector<int> edges = columnEdges();
    std::vector<Paragraph> paragraphs;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        for (PlacedCell& cell : rows_[row]) {
            const int column = columnOf(edges, cell.left);
            const int end = columnOf(edges, cell.definition.rightEdge);
            const TextTableBlock block{.table = table,
                                       .startingRow = static_cast<int>(row),
                                       .startingColumn = column,
                                       .columnSpan = std::max(end - column, 1),
                                       .topBorder = cell.definition.topBorder,
                                       .bottomBorder = cell.definition.bottomBorder};
            for (Paragraph& paragraph : cell.paragraphs) {
                paragraph.block = block;
                paragraphs.push_back(std::move(paragraph));
            }
        }
    }
    rows_.clear();
    return paragraphs;
}

std::vector<int> RTFTableBuilder::columnEdges() const {
    std::vector<int> all{0};
    for (const auto& row : rows_) {
        for (const PlacedCell& cell : row) {
            all.push_back(cell.definition.rightEdge);
        }
    }
    std::ranges::sort(all);
    std::vector<int> edges;
    for (const int edge : all) {
        if (edges.empty() || edge > edges.back() + edgeTolerance) {
            edges.push_back(edge);
        }
    }
    return edges;
}

}  // namespace sorvane
