#include "SorvaneCore/Import/SparseTableBuilder.h"

#include <algorithm>
#include <utility>

namespace sorvane {

namespace {

/// A table may have so many cells, whatever the size of its source; beyond that, so many for each
/// byte. A cell with a value takes some 20 bytes in a worksheet.
constexpr std::size_t cellsFloor = std::size_t{1} << 26;
constexpr std::size_t cellsPerByte = 2;

void fillUp(TextColumnBuilder& column, std::size_t rowCount) {
    while (column.size() < rowCount) {
        column.append(std::string_view());
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
    Column& column = columns_[index];
    fillUp(column.builder, row);
    bool isFirst = true;
    if (column.builder.hasCodes()) {
        const std::uint32_t code = column.builder.appendCoded(text);
        isFirst = code >= column.codeCount;
        column.codeCount = std::max(column.codeCount, code + 1);
    } else {
        column.builder.append(text);
    }
    column.charge.add(
        {.bytes = text.size(), .isFirstOfItsText = isFirst, .hasCodes = column.builder.hasCodes()},
        *budget_);
}

TextTable SparseTableBuilder::finish(std::size_t rowCount) {
    const TextTable::Column blank = TextColumn::blank(rowCount);
    std::vector<TextTable::Column> finished;
    finished.reserve(columns_.size());
    for (Column& column : std::exchange(columns_, {})) {
        if (column.builder.size() == 0) {
            finished.push_back(blank);
        } else {
            fillUp(column.builder, rowCount);
            finished.push_back(column.builder.finish());
        }
    }
    return {std::move(finished), rowCount};
}

}  // namespace sorvane
