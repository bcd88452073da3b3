#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "SorvaneCore/Dataset/TextList.h"

namespace sorvane {

struct ColumnProfile;

/// One immutable column of text cells.
///
/// The cells stand as levels (distinct texts, in order of first appearance) and a small code per
/// row. A column whose cells are mostly distinct has no codes: each row is its own level, and
/// equal texts then stand more than once among the levels. Whatever is decided from a cell's text
/// alone is decided once per level and gathered by code; both forms are read alike. Every level
/// occurs in at least one row.
class TextColumn {
public:
    /// 1, 2 or 4 bytes a row; none where each row is its own level.
    using Codes = std::variant<std::monostate,
                               std::vector<std::uint8_t>,
                               std::vector<std::uint16_t>,
                               std::vector<std::uint32_t>>;

    /// A column of levels and codes; every code is below the number of levels, and used.
    TextColumn(TextList levels, Codes codes);

    /// The column of these cells, with a dictionary as long as it pays.
    static std::shared_ptr<const TextColumn> of(std::span<const std::string> cells);
    /// A column of `rowCount` empty cells.
    static std::shared_ptr<const TextColumn> blank(std::size_t rowCount);

    std::size_t size() const { return size_; }
    std::string_view operator[](std::size_t row) const { return levels_[code(row)]; }

    std::size_t levelCount() const { return levels_.size(); }
    std::string_view level(std::size_t code) const { return levels_[code]; }
    std::size_t code(std::size_t row) const;
    /// Whether levels are the distinct texts, so that counts can stand for rows.
    bool hasCodes() const { return !std::holds_alternative<std::monostate>(codes_); }

    /// Calls `use` with something indexable by row that gives the codes, in their own width.
    template <typename Use>
    decltype(auto) withCodes(Use&& use) const;

    /// How often each level occurs, by code.
    std::vector<std::uint64_t> levelCounts() const;

    /// What the cells say as a whole: counts, numbers, markers. Found at the first call and kept,
    /// as the column never changes; any thread may ask.
    const ColumnProfile& profile() const;

    /// This column with one cell replaced.
    std::shared_ptr<const TextColumn> replacing(std::size_t row, std::string_view text) const;
    /// This column cut or padded with empty cells to `rowCount` rows.
    std::shared_ptr<const TextColumn> resized(std::size_t rowCount) const;

    /// Same cells, whatever the form.
    bool operator==(const TextColumn& other) const;

private:
    struct Rows {
        std::size_t operator[](std::size_t row) const { return row; }
    };

    TextList levels_;
    Codes codes_;
    std::size_t size_ = 0;
    mutable std::once_flag profiled_;
    mutable std::shared_ptr<const ColumnProfile> profile_;
};

template <typename Use>
decltype(auto) TextColumn::withCodes(Use&& use) const {
    if (const auto* narrow = std::get_if<std::vector<std::uint8_t>>(&codes_)) {
        return use(narrow->data());
    }
    if (const auto* middle = std::get_if<std::vector<std::uint16_t>>(&codes_)) {
        return use(middle->data());
    }
    if (const auto* wide = std::get_if<std::vector<std::uint32_t>>(&codes_)) {
        return use(wide->data());
    }
    return use(Rows{});
}

}  // namespace sorvane
