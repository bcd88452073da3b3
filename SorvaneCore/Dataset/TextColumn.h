#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sorvane {

/// An append-only list of texts in one block of bytes.
class TextList {
public:
    std::size_t size() const { return ends_.size(); }
    std::string_view operator[](std::size_t index) const {
        const std::uint64_t begin = index == 0 ? 0 : end(index - 1);
        return {bytes_.data() + begin, end(index) - begin};
    }
    void append(std::string_view text);
    void reserve(std::size_t texts, std::size_t bytes);
    void shrinkToFit();

private:
    /// Ends are kept modulo 2^32; `wraps_` holds the indexes at which they pass a multiple of it.
    std::uint64_t end(std::size_t index) const;

    std::vector<char> bytes_;
    std::vector<std::uint32_t> ends_;
    std::vector<std::size_t> wraps_;
};

/// One immutable column of text cells.
///
/// The cells stand as levels (distinct texts, in order of first appearance) and a small code per
/// row. A column whose cells are mostly distinct has no codes: each row is its own level, and
/// equal texts then stand more than once among the levels. Whatever is decided from a cell's text
/// alone is decided once per level and gathered by code; both forms are read alike.
class TextColumn {
public:
    /// 1, 2 or 4 bytes a row; none where each row is its own level.
    using Codes = std::variant<std::monostate,
                               std::vector<std::uint8_t>,
                               std::vector<std::uint16_t>,
                               std::vector<std::uint32_t>>;

    /// A column of levels and codes; every code is below the number of levels.
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
