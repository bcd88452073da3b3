#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextColumnBuilder.h"

namespace sorvane {

/// The text of a cell, and whether the reader counts it.
struct PatternText {
    std::string_view text;
    bool isCounted = false;
};

/// Builds a column out of cells of a binary file, up to 8 bytes each, known by their bit patterns.
///
/// A pattern is turned into text when it is met first. Only where most cells differ, so that the
/// column keeps no dictionary, it is done for each cell.
class PatternColumnBuilder {
public:
    /// Appends a cell; `textOf` gives the PatternText of a pattern.
    template <typename TextOf>
    void append(std::uint64_t pattern, const TextOf& textOf) {
        if (!column_.hasCodes()) {
            const PatternText text = textOf(pattern);
            column_.append(text.text);
            countedCells_ += text.isCounted ? 1U : 0U;
            return;
        }
        Entry& entry = table_[slotOf(pattern)];
        if (entry.isUsed && entry.pattern == pattern) {
            column_.appendCode(entry.code);
            countedCells_ += entry.isCounted ? 1U : 0U;
            return;
        }
        appendFirst(pattern, textOf(pattern));
    }
    /// How many rows there may be in the end.
    void expectRows(std::size_t rows) { column_.expectRows(rows); }

    /// Whether patterns are turned into text once; false where it is done for each cell.
    bool hasCodes() const { return column_.hasCodes(); }
    /// How many cells were counted.
    std::uint64_t countedCells() const { return countedCells_; }
    std::shared_ptr<const TextColumn> finish() { return column_.finish(); }

private:
    struct Entry {
        std::uint64_t pattern = 0;
        std::uint32_t code = 0;
        bool isUsed = false;
        bool isCounted = false;
    };
    static constexpr std::size_t smallestTable = 4;

    /// Where the pattern stands, or where it belongs.
    ///
    /// Small whole numbers differ in the highest bits of their patterns alone, so that these are
    /// laid over the low ones, and the highest of the product, which all of them reach, are taken.
    std::size_t slotOf(std::uint64_t pattern) const {
        const std::size_t mask = table_.size() - 1;
        std::size_t slot = ((pattern ^ pattern >> 32) * 0x9E3779B97F4A7C15U) >> 32 & mask;
        while (table_[slot].isUsed && table_[slot].pattern != pattern) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }
    void appendFirst(std::uint64_t pattern, PatternText text);
    void growTable();

    TextColumnBuilder column_;
    std::vector<Entry> table_ = std::vector<Entry>(smallestTable);
    std::size_t used_ = 0;
    std::uint64_t countedCells_ = 0;
};

}  // namespace sorvane
