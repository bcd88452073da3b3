#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "SorvaneMac/Screens/ShownCells.h"

namespace sorvane {

/// A block of cells; all four bounds belong to it.
struct CellBlock {
    std::size_t top = 0;
    std::size_t left = 0;
    std::size_t bottom = 0;
    std::size_t right = 0;
};

/// Selected cells as text for another program.
namespace SelectionText {

/// The cells of some blocks as lines of tab-separated text, as spreadsheets take them.
///
/// Input      blocks inside the table, in any order; they may overlap
/// Method     a line for each row with a selected cell, in it a field for each column with one;
///            a field that is not selected in its row is empty. A text with a tab, a line break or
///            a quotation mark stands in quotation marks, which are doubled inside it
/// Returns    lines that end in "\n"
/// Cost       O(cells); what repeats is quoted once per distinct text
std::string tabSeparated(const ShownCells& cells, std::span<const CellBlock> blocks);

}  // namespace SelectionText

}  // namespace sorvane
