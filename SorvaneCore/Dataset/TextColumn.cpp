#include "SorvaneCore/Dataset/TextColumn.h"

#include <cassert>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"

namespace sorvane {

namespace {

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

}  // namespace

TextColumn::TextColumn(TextList levels, Codes codes)
    : levels_(std::move(levels)),
      codes_(std::move(codes)),
      size_(codeCount(codes_, levels_.size())) {}

std::shared_ptr<const TextColumn> TextColumn::of(std::span<const std::string> cells) {
    TextColumnBuilder builder;
    builder.expectRows(cells.size());
    for (const std::string& cell : cells) {
        builder.append(cell);
    }
    return builder.finish();
}

std::shared_ptr<const TextColumn> TextColumn::blank(std::size_t rowCount) {
    TextList levels;
    if (rowCount > 0) {
        levels.append("");
    }
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

const ColumnProfile& TextColumn::profile() const {
    std::call_once(profiled_, [this] {
        profile_ = std::make_shared<const ColumnProfile>(ColumnProfile::of(*this));
    });
    return *profile_;
}

std::shared_ptr<const TextColumn> TextColumn::replacing(std::size_t row,
                                                        std::string_view text) const {
    TextColumnBuilder builder;
    builder.expectRows(size_);
    for (std::size_t i = 0; i < size_; ++i) {
        builder.append(i == row ? text : (*this)[i]);
    }
    return builder.finish();
}

std::shared_ptr<const TextColumn> TextColumn::resized(std::size_t rowCount) const {
    TextColumnBuilder builder;
    builder.expectRows(rowCount);
    for (std::size_t row = 0; row < rowCount; ++row) {
        builder.append(row < size_ ? (*this)[row] : std::string_view());
    }
    return builder.finish();
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
