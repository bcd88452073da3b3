#include "SorvaneCore/Import/SparseTableBuilder.h"

#include <algorithm>
#include <utility>

namespace sorvane {

namespace {

/// A table may have so many cells, whatever the size of its source; beyond that, so many for each
/// byte. A cell with a value takes some 20 bytes in a worksheet.
constexpr std::size_t cellsFloor = std::size_t{1} << 27;
constexpr std::size_t cellsPerByte = 2;

void fillUp(TextColumnBuilder& column, std::size_t rowCount) {
    if (column.size() < rowCount) {
        column.appendRepeated(std::string_view(), rowCount - column.size());
    }
}

}  // namespace

SparseTableBuilder::SparseTableBuilder(std::size_t sourceBytes)
    : mostCells_(cellsFloor + cellsPerByte * sourceBytes),
      budget_(std::make_unique<TextBudget>(sourceBytes)) {}

void SparseTableBuilder::widen(std::size_t columnCount) {
    columns_.resize(std::max(columns_.size(), columnCount));
}

bool SparseTableBuilder::isTooLarge(std::size_t rowCount) const {
    return budget_->isExceeded() ||
           rowCount > mostCells_ / std::max<std::size_t>(columns_.size(), 1);
}

void SparseTableBuilder::set(std::size_t row, std::size_t index, std::string_view text) {
    if (budget_->isExceeded()) {
        return;
    }
    TextColumnBuilder& column = columns_[index];
    const std::size_t bytesBefore = column.textBytes();
    fillUp(column, row);
    column.append(text);
    budget_->change(bytesBefore, column.textBytes());
    if (budget_->isExceeded() && !column.hasCodes()) {
        const std::size_t bytesOfRows = column.textBytes();
        column.encode();
        budget_->change(bytesOfRows, column.textBytes());
    }
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
