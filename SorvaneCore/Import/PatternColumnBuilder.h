#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
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
/// column keeps no dictionary, it is done for each cell, and that as long as they are short.
class PatternColumnBuilder {
public:
    /// Appends a cell; `textOf` gives the PatternText of a pattern.
    template <typename TextOf>
    void append(std::uint64_t pattern, const TextOf& textOf) {
        if (!column_.hasCodes()) {
            const PatternText text = textOf(pattern);
            column_.append(text.text);
            countedCells_ += text.isCounted ? 1U : 0U;
            longBytes_ += text.text.size() > longText ? text.text.size() : 0;
            if (longBytes_ > mostLongBytes) {
                column_.encode();
                table_.resize(smallestTable);
            }
            return;
        }
        if (const Entry* entry = find(pattern)) {
            column_.appendCode(entry->code);
            countedCells_ += entry->isCounted ? 1U : 0U;
            return;
        }
        appendFirst(pattern, textOf(pattern));
    }
    /// How many rows there may be in the end.
    void expectRows(std::size_t rows) { column_.expectRows(rows); }

    /// The bytes of the texts so far.
    std::size_t textBytes() const { return column_.textBytes(); }
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
    /// Patterns made to meet in one place of the table fill so many others, and no more are
    /// searched.
    static constexpr std::size_t mostProbes = 64;
    /// Numbers that data hold are shorter. Of longer texts, in a column without a dictionary, so
    /// many bytes are stored; then they are taken to repeat.
    static constexpr std::size_t longText = 64;
    static constexpr std::size_t mostLongBytes = std::size_t{1} << 18;

    /// Where the search for a pattern begins.
    ///
    /// Small whole numbers differ in the highest bits of their patterns alone, so that these are
    /// laid over the low ones, and the highest of the product, which all of them reach, are taken.
    std::size_t firstSlot(std::uint64_t pattern) const {
        return ((pattern ^ pattern >> 32) * 0x9E3779B97F4A7C15U) >> 32 & (table_.size() - 1);
    }
    /// Null for a pattern not met yet.
    const Entry* find(std::uint64_t pattern) const {
        const std::size_t mask = table_.size() - 1;
        const std::size_t first = firstSlot(pattern);
        for (std::size_t slot = first; slot < first + mostProbes; ++slot) {
            const Entry& entry = table_[slot & mask];
            if (!entry.isUsed) {
                return nullptr;
            }
            if (entry.pattern == pattern) {
                return &entry;
            }
        }
        const auto crowded = crowded_.find(pattern);
        return crowded == crowded_.end() ? nullptr : &crowded->second;
    }
    void appendFirst(std::uint64_t pattern, PatternText text);
    void growTable();
    void place(const Entry& entry);

    TextColumnBuilder column_;
    std::vector<Entry> table_ = std::vector<Entry>(smallestTable);
    /// Patterns for which the table had no place near their own.
    std::map<std::uint64_t, Entry> crowded_;
    /// How many patterns there are in both.
    std::size_t used_ = 0;
    std::size_t longBytes_ = 0;
    std::uint64_t countedCells_ = 0;
};

}  // namespace sorvane
