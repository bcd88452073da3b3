#include "SorvaneCore/Dataset/TextColumn.h"

#include <cassert>
#include <limits>
#include <unordered_map>

namespace sorvane {

namespace {

/// A dictionary is kept while levels are fewer than this share of the rows seen so far.
constexpr std::size_t rowsBeforeJudging = 4096;

TextColumn::Codes narrowed(std::vector<std::uint32_t> codes, std::size_t levelCount) {
    if (levelCount <= std::numeric_limits<std::uint8_t>::max() + std::size_t{1}) {
        return std::vector<std::uint8_t>(codes.begin(), codes.end());
    }
    if (levelCount <= std::numeric_limits<std::uint16_t>::max() + std::size_t{1}) {
        return std::vector<std::uint16_t>(codes.begin(), codes.end());
    }
    return codes;
}

std::size_t codeCount(const TextColumn::Codes& codes, std::size_t levelCount) {
    return std::visit(
        [levelCount](const auto& held) -> std::size_t {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) {
                return levelCount;
            } else {
                return held.size();
            }
        },
        codes);
}

/// Gathers cells into levels and codes.
class Dictionary {
public:
    void append(std::string_view text) {
        const auto [entry, isNew] =
            codeOf_.try_emplace(std::string(text), static_cast<std::uint32_t>(levels_.size()));
        if (isNew) {
            levels_.append(text);
        }
        codes_.push_back(entry->second);
    }
    bool isMostlyDistinct() const {
        return codes_.size() >= rowsBeforeJudging && levels_.size() * 2 > codes_.size();
    }
    std::shared_ptr<const TextColumn> column() {
        return std::make_shared<const TextColumn>(std::move(levels_),
                                                  narrowed(std::move(codes_), codeOf_.size()));
    }

private:
    std::unordered_map<std::string, std::uint32_t> codeOf_;
    TextList levels_;
    std::vector<std::uint32_t> codes_;
};

}  // namespace

void TextList::append(std::string_view text) {
    const std::uint64_t before = bytes_.size() >> 32;
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    for (std::uint64_t wrap = before; wrap < bytes_.size() >> 32; ++wrap) {
        wraps_.push_back(ends_.size());
    }
    ends_.push_back(static_cast<std::uint32_t>(bytes_.size()));
}

void TextList::reserve(std::size_t texts, std::size_t bytes) {
    ends_.reserve(texts);
    bytes_.reserve(bytes);
}

void TextList::shrinkToFit() {
    bytes_.shrink_to_fit();
    ends_.shrink_to_fit();
}

std::uint64_t TextList::end(std::size_t index) const {
    std::uint64_t high = 0;
    for (const std::size_t wrap : wraps_) {
        high += index >= wrap ? 1 : 0;
    }
    return high << 32 | ends_[index];
}

TextColumn::TextColumn(TextList levels, Codes codes)
    : levels_(std::move(levels)),
      codes_(std::move(codes)),
      size_(codeCount(codes_, levels_.size())) {}

std::shared_ptr<const TextColumn> TextColumn::of(std::span<const std::string> cells) {
    Dictionary dictionary;
    for (const std::string& cell : cells) {
        dictionary.append(cell);
        if (dictionary.isMostlyDistinct()) {
            TextList rows;
            for (const std::string& each : cells) {
                rows.append(each);
            }
            return std::make_shared<const TextColumn>(std::move(rows), Codes());
        }
    }
    return dictionary.column();
}

std::shared_ptr<const TextColumn> TextColumn::blank(std::size_t rowCount) {
    TextList levels;
    levels.append("");
    return std::make_shared<const TextColumn>(std::move(levels),
                                              std::vector<std::uint8_t>(rowCount, 0));
}

std::size_t TextColumn::code(std::size_t row) const {
    assert(row < size_);
    return withCodes([row](const auto& codes) { return static_cast<std::size_t>(codes[row]); });
}

std::vector<std::uint64_t> TextColumn::levelCounts() const {
    std::vector<std::uint64_t> counts(levelCount(), 0);
    withCodes([this, &counts](const auto& codes) {
        for (std::size_t row = 0; row < size_; ++row) {
            ++counts[codes[row]];
        }
    });
    return counts;
}

std::shared_ptr<const TextColumn> TextColumn::replacing(std::size_t row,
                                                        std::string_view text) const {
    std::vector<std::string> cells;
    cells.reserve(size_);
    for (std::size_t i = 0; i < size_; ++i) {
        cells.emplace_back(i == row ? text : (*this)[i]);
    }
    return of(cells);
}

std::shared_ptr<const TextColumn> TextColumn::resized(std::size_t rowCount) const {
    std::vector<std::string> cells;
    cells.reserve(rowCount);
    for (std::size_t i = 0; i < rowCount; ++i) {
        cells.emplace_back(i < size_ ? (*this)[i] : std::string_view());
    }
    return of(cells);
}

bool TextColumn::operator==(const TextColumn& other) const {
    if (this == &other) {
        return true;
    }
    if (size_ != other.size_) {
        return false;
    }
    for (std::size_t row = 0; row < size_; ++row) {
        if ((*this)[row] != other[row]) {
            return false;
        }
    }
    return true;
}

}  // namespace sorvane
