#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"

namespace sorvane {

/// How the cells of a table stand in a grid.
enum class CellForm {
    /// As they are stored.
    stored,
    /// By their value labels, where they have one.
    labelled,
};

/// The cells of a table as a grid shows them, searches them and copies them.
///
/// Shares the columns of the dataset, so that it costs a few pointers per column.
class ShownCells {
public:
    ShownCells() = default;
    ShownCells(const ImportedDataset& dataset, CellForm form);

    const TextTable& table() const { return table_; }
    /// The text shown in a cell.
    ///
    /// Cost       O(1); O(log labels) in a column whose labels are shown
    std::string_view text(std::size_t row, std::size_t column) const {
        return levelText(column, table_.column(column).code(row));
    }
    /// The text shown for a level of a column.
    ///
    /// Method     the label of the text as it stands, or else without white space at both ends
    std::string_view levelText(std::size_t column, std::size_t level) const;

    /// Whether labels stand in place of texts in a column.
    bool hasLabels(std::size_t column) const {
        return !labels_.empty() && !labels_[column].empty();
    }

    /// Whether the other shows the very same columns in the same way.
    bool isSameAs(const ShownCells& other) const;

private:
    TextTable table_;
    /// The labels of each column, or none at all while texts are shown as they are stored.
    std::vector<ValueLabels> labels_;
};

}  // namespace sorvane
