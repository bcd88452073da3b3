#include "SorvaneCore/Import/PatternColumnBuilder.h"

#include <utility>

namespace sorvane {

void PatternColumnBuilder::appendFirst(std::uint64_t pattern, PatternText text) {
    // A quarter full at the most: answers come in no order that a search over two places could learn.
    if ((used_ + 1) * 4 > table_.size()) {
        growTable();
    }
    const std::uint32_t code = column_.appendCoded(text.text);
    place({.pattern = pattern, .code = code, .isUsed = true, .isCounted = text.isCounted});
    ++used_;
    countedCells_ += text.isCounted ? 1U : 0U;
    if (!column_.hasCodes()) {
        table_ = {};
        crowded_ = {};
        used_ = 0;
    }
}

void PatternColumnBuilder::growTable() {
    const std::vector<Entry> former = std::exchange(table_, std::vector<Entry>(table_.size() * 2));
    const std::map<std::uint64_t, Entry> formerCrowded = std::exchange(crowded_, {});
    for (const Entry& entry : former) {
        if (entry.isUsed) {
            place(entry);
        }
    }
    for (const auto& [pattern, entry] : formerCrowded) {
        place(entry);
    }
}

void PatternColumnBuilder::place(const Entry& entry) {
    const std::size_t first = firstSlot(entry.pattern);
    for (std::size_t slot = first; slot < first + mostProbes; ++slot) {
        Entry& present = table_[slot & (table_.size() - 1)];
        if (!present.isUsed) {
            present = entry;
            return;
        }
    }
    crowded_[entry.pattern] = entry;
}

}  // namespace sorvane
