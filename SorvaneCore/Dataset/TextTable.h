#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// A rectangular table of text cells, held by column.
///
/// Columns are immutable and shared, so a copy of the table costs one pointer per column; an edit
/// replaces one column.
class TextTable {
public:
    using Column = std::shared_ptr<const TextColumn>;

    /// The cells of one row, in column order.
    class Row {
    public:
        Row(const TextTable& table, std::size_t row) : table_(&table), row_(row) {}
        std::size_t size() const { return table_->columnCount(); }
        std::string_view operator[](std::size_t column) const { return table_->cell(row_, column); }
        std::vector<std::string> texts() const;

    private:
        const TextTable* table_;
        std::size_t row_;
    };

    TextTable() = default;
    /// Columns of `rowCount` cells each.
    TextTable(std::vector<Column> columns, std::size_t rowCount);
    /// The table of these rows; a short row is padded with empty cells and a long one cut.
    static TextTable fromRows(const std::vector<std::vector<std::string>>& rows,
                              std::size_t columnCount);

    std::size_t rowCount() const { return rowCount_; }
    std::size_t columnCount() const { return columns_.size(); }
    std::string_view cell(std::size_t row, std::size_t column) const {
        return (*columns_[column])[row];
    }
    Row row(std::size_t index) const { return {*this, index}; }
    const TextColumn& column(std::size_t index) const { return *columns_[index]; }
    const Column& sharedColumn(std::size_t index) const { return columns_[index]; }
    const std::vector<Column>& columns() const { return columns_; }

    void replaceColumn(std::size_t index, Column column);
    void appendColumn(Column column);
    void removeColumn(std::size_t index);
    /// Cuts rows from the end or appends rows of empty cells.
    void resizeRows(std::size_t rowCount);

    bool operator==(const TextTable& other) const;

private:
    std::vector<Column> columns_;
    std::size_t rowCount_ = 0;
};

}  // namespace sorvane
