#pragma once

#include <atomic>
#include <cstddef>

namespace sorvane {

/// How many bytes the texts of a table may take. A source can name one text in many cells, so that
/// a small file would fill the memory.
class TextBudget {
public:
    /// For a table out of so many bytes of source, each of which may stand for so many of text.
    explicit TextBudget(std::size_t sourceBytes, std::size_t perByte = 2)
        : limit_(floor + perByte * sourceBytes) {}

    void take(std::size_t bytes) { taken_.fetch_add(bytes, std::memory_order_relaxed); }
    std::size_t limit() const { return limit_; }
    /// Whether more was taken than the source can mean; no more texts must be stored then.
    bool isExceeded() const { return taken_.load(std::memory_order_relaxed) > limit_; }

private:
    /// A table may have so much, whatever the size of its source.
    static constexpr std::size_t floor = std::size_t{48} << 20;

    std::size_t limit_;
    std::atomic<std::size_t> taken_ = 0;
};

/// What the texts of one column take of the budget: each distinct text once, unless the column was
/// found to be mostly distinct and keeps the text of each row.
class ColumnTextCharge {
public:
    struct Cell {
        std::size_t bytes = 0;
        bool isFirstOfItsText = false;
        /// As the column's builder says after the cell was appended.
        bool hasCodes = true;
    };
    void add(const Cell& cell, TextBudget& budget);

private:
    std::size_t rowCount_ = 0;
    /// Of the rows by which the column is judged: what they take when each keeps its text, and what
    /// was taken for them.
    std::size_t judgedBytes_ = 0;
    std::size_t takenBytes_ = 0;
    bool hadCodes_ = true;
};

}  // namespace sorvane
