#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace sorvane {

/// An append-only list of texts in one block of bytes.
class TextList {
public:
    std::size_t size() const { return ends_.size(); }
    std::size_t byteCount() const { return bytes_.size(); }
    std::string_view operator[](std::size_t index) const {
        const std::uint64_t begin = index == 0 ? 0 : end(index - 1);
        return {bytes_.data() + begin, end(index) - begin};
    }
    void append(std::string_view text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        appendEnd(bytes_.size());
    }
    /// The texts of `other` from index `first` on, after these.
    void append(const TextList& other, std::size_t first);
    void reserve(std::size_t texts, std::size_t bytes);

private:
    /// Ends are kept modulo 2^32; `wraps_` holds the indexes at which they pass a multiple of it.
    std::uint64_t end(std::size_t index) const {
        std::uint64_t high = 0;
        for (const std::size_t wrap : wraps_) {
            high += index >= wrap ? 1 : 0;
        }
        return high << 32 | ends_[index];
    }
    void appendEnd(std::uint64_t end) {
        while (wraps_.size() < end >> 32) {
            wraps_.push_back(ends_.size());
        }
        ends_.push_back(static_cast<std::uint32_t>(end));
    }

    std::vector<char> bytes_;
    std::vector<std::uint32_t> ends_;
    std::vector<std::size_t> wraps_;
};

}  // namespace sorvane
