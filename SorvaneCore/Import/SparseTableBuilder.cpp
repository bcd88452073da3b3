#include "SorvaneCore/Import/SparseTableBuilder.h"

#include <algorithm>
#include <utility>

namespace sorvane {

namespace {

/// A table may have so many cells, whatever the size of its source; beyond that, so many for each
/// byte. A cell with a value takes 2 bytes at the least, and some 20 in a worksheet.
constexpr std::size_t cellsFloor = std::size_t{1} << 26;
constexpr std::size_t cellsPerByte = 64;
/// The same for the bytes of its texts.
constexpr std::size_t textFloor = std::size_t{1} << 28;
constexpr std::size_t textPerByte = 16;

void fillUp(TextColumnBuilder& column, std::size_t rowCount) {
    while (column.size() < rowCount) {
        column.append(std::string_view());
    }
}

}  // namespace

SparseTableBuilder::SparseTableBuilder(std::size_t sourceBytes)
    : mostCells_(cellsFloor + cellsPerByte * sourceBytes),
      mostTextBytes_(textFloor + textPerByte * sourceBytes) {}

void SparseTableBuilder::widen(std::size_t columnCount) {
    columns_.resize(std::max(columns_.size(), columnCount));
}

bool SparseTableBuilder::isTooLarge(std::size_t rowCount) const {
    return textBytes_ > mostTextBytes_ ||
           rowCount > mostCells_ / std::max<std::size_t>(columns_.size(), 1);
}

void SparseTableBuilder::set(std::size_t row, std::size_t column, std::string_view text) {
    fillUp(columns_[column], row);
    columns_[column].append(text);
    textBytes_ += text.size();
}

TextTable SparseTableBuilder::finish(std::size_t rowCount) {
    const TextTable::Column blank = TextColumn::blank(rowCount);
    std::vector<TextTable::Column> finished;
    finished.reserve(columns_.size());
    for (TextColumnBuilder& column : std::exchange(columns_, {})) {
        if (column.size() == 0) {
            finished.push_back(blank);
        } else {
            fillUp(column, rowCount);
            finished.push_back(column.finish());
        }
    }
    return {std::move(finished), rowCount};
}

}  // namespace sorvane
