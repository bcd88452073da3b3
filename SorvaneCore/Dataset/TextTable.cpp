#include "SorvaneCore/Dataset/TextTable.h"

#include <algorithm>
#include <cassert>

namespace sorvane {

std::vector<std::string> TextTable::Row::texts() const {
    std::vector<std::string> cells;
    cells.reserve(size());
    for (std::size_t column = 0; column < size(); ++column) {
        cells.emplace_back((*this)[column]);
    }
    return cells;
}

TextTable::TextTable(std::vector<Column> columns, std::size_t rowCount)
    : columns_(std::move(columns)), rowCount_(rowCount) {
    assert(std::all_of(columns_.begin(), columns_.end(),
                       [rowCount](const Column& column) { return column->size() == rowCount; }));
}

TextTable TextTable::fromRows(const std::vector<std::vector<std::string>>& rows,
                              std::size_t columnCount) {
    std::vector<Column> columns;
    std::vector<std::string> cells(rows.size());
    for (std::size_t column = 0; column < columnCount; ++column) {
        for (std::size_t row = 0; row < rows.size(); ++row) {
            cells[row] = column < rows[row].size() ? rows[row][column] : std::string();
        }
        columns.push_back(TextColumn::of(cells));
    }
    return {std::move(columns), rows.size()};
}

void TextTable::replaceColumn(std::size_t index, Column column) {
    assert(column->size() == rowCount_);
    columns_[index] = std::move(column);
}

void TextTable::appendColumn(Column column) {
    assert(column->size() == rowCount_);
    columns_.push_back(std::move(column));
}

void TextTable::removeColumn(std::size_t index) {
    columns_.erase(columns_.begin() + static_cast<std::ptrdiff_t>(index));
}

void TextTable::resizeRows(std::size_t rowCount) {
    for (Column& column : columns_) {
        column = column->resized(rowCount);
    }
    rowCount_ = rowCount;
}

bool TextTable::operator==(const TextTable& other) const {
    return rowCount_ == other.rowCount_ &&
           std::equal(columns_.begin(), columns_.end(), other.columns_.begin(),
                      other.columns_.end(),
                      [](const Column& a, const Column& b) { return *a == *b; });
}

}  // namespace sorvane
