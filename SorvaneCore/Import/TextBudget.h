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

    /// Counts that the texts of a column, which took `before`, take `after` now.
    void change(std::size_t before, std::size_t after) {
        if (before != after) {
            taken_.fetch_add(after - before, std::memory_order_relaxed);
        }
    }
    /// Whether more was taken than the source can mean; no more texts must be stored then.
    bool isExceeded() const { return taken_.load(std::memory_order_relaxed) > limit_; }

private:
    /// A table may have so much, whatever the size of its source.
    static constexpr std::size_t floor = std::size_t{48} << 20;

    std::size_t limit_;
    /// Modulo 2^64, so that less can be counted as well as more.
    std::atomic<std::size_t> taken_ = 0;
};

}  // namespace sorvane
