#include "SorvaneCore/Import/PatternColumnBuilder.h"

#include <utility>

namespace sorvane {

void PatternColumnBuilder::appendFirst(std::uint64_t pattern, PatternText text) {
    // A quarter full at the most: answers come in no order that a search over two places could learn.
    if ((used_ + 1) * 4 > table_.size()) {
        growTable();
    }
    const std::uint32_t code = column_.appendCoded(text.text);
    table_[slotOf(pattern)] = {
        .pattern = pattern, .code = code, .isUsed = true, .isCounted = text.isCounted};
    ++used_;
    countedCells_ += text.isCounted ? 1U : 0U;
    if (!column_.hasCodes()) {
        table_ = {};
    }
}

void PatternColumnBuilder::growTable() {
    const std::vector<Entry> former = std::exchange(table_, std::vector<Entry>(table_.size() * 2));
    for (const Entry& entry : former) {
        if (entry.isUsed) {
            table_[slotOf(entry.pattern)] = entry;
        }
    }
}

}  // namespace sorvane
