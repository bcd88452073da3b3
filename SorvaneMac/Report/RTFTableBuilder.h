#pragma once

#include <vector>

#include "SorvaneMac/Report/RTFRowDefinition.h"
#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane {

/// Puts the rows of an RTF table, which only know where their cells end, on one grid of columns.
class RTFTableBuilder {
public:
    using Cell = std::vector<Paragraph>;

    bool isEmpty() const { return rows_.empty(); }

    /// Input  definitions may be fewer than the cells; the remaining ones follow at an inch each
    void addRow(const std::vector<RTFCellDefinition>& definitions, std::vector<Cell> cells);

    /// The paragraphs of the finished table, after which the builder is empty.
    std::vector<Paragraph> take(int table);

private:
    struct PlacedCell {
        int left = 0;
        RTFCellDefinition definition{};
        Cell paragraphs{};
    };

    std::vector<int> columnEdges() const;

    std::vector<std::vector<PlacedCell>> rows_;
};

}  // namespace sorvane
