#include "SorvaneCore/Dataset/TextColumnBuilder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "SorvaneCore/Dataset/TextKey.h"

namespace sorvane {

namespace {

constexpr std::size_t smallestTable = 16;
/// Texts made to meet in one place of the table fill so many others, and no more are searched.
constexpr std::size_t mostProbes = 128;
/// Rows that stand for themselves may take so many times the bytes of a dictionary.
constexpr std::size_t mostSwelling = 3;

/// One word for a text: the text itself and its length up to 7 bytes, otherwise a hash of it.
std::uint64_t tableKey(std::string_view text) {
    if (text.size() < sizeof(std::uint64_t)) {
        return TextKey::packed(text.data(), text.size()) | std::uint64_t{text.size()} << 56;
    }
    return TextKey::of(text).mixed() | std::uint64_t{1} << 63;
}

bool isExact(std::uint64_t tableKey) {
    return tableKey >> 63 == 0;
}

std::size_t slotOf(std::uint64_t tableKey, std::size_t tableSize) {
    return ((tableKey * 0x9E3779B97F4A7C15U) >> 32) & (tableSize - 1);
}

}  // namespace

void TextColumnBuilder::append(std::string_view cell) {
    if (holdsRows()) {
        levels_.append(cell);
        ++rowCount_;
        return;
    }
    appendCode(codeOf(cell));
}

std::uint32_t TextColumnBuilder::appendCoded(std::string_view cell) {
    const std::uint32_t code = codeOf(cell);
    appendCode(code);
    return code;
}

void TextColumnBuilder::appendCode(std::uint32_t code) {
    storeCode(code);
    if (++rowCount_ == judgedRows) {
        judge();
    }
}

void TextColumnBuilder::appendRepeated(std::string_view cell, std::size_t count) {
    while (count > 0 && !holdsRows()) {
        const std::size_t most = isUndecided() ? judgedRows - rowCount_ : count;
        const std::size_t run = std::min(count, most);
        const std::uint32_t code = codeOf(cell);
        storeCode(code);
        std::visit(
            [code, run](auto& codes) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(codes)>, std::monostate>) {
                    using Code = typename std::decay_t<decltype(codes)>::value_type;
                    codes.insert(codes.end(), run - 1, static_cast<Code>(code));
                }
            },
            codes_);
        rowCount_ += run;
        count -= run;
        if (rowCount_ == judgedRows) {
            judge();
        }
    }
    for (; count > 0; --count) {
        append(cell);
    }
}

std::uint32_t TextColumnBuilder::codeOf(std::string_view cell) {
    if (levels_.size() * 2 >= table_.size()) {
        growTable();
    }
    const std::uint64_t key = tableKey(cell);
    const std::size_t first = slotOf(key, table_.size());
    for (std::size_t slot = first; slot < first + mostProbes; ++slot) {
        Entry& entry = table_[slot & (table_.size() - 1)];
        if (entry.code == noCode) {
            entry = {.key = key, .code = static_cast<std::uint32_t>(levels_.size())};
            levels_.append(cell);
            return entry.code;
        }
        if (entry.key == key && (isExact(key) || levels_[entry.code] == cell)) {
            return entry.code;
        }
    }
    return crowdedCodeOf(cell);
}

std::uint32_t TextColumnBuilder::crowdedCodeOf(std::string_view cell) {
    const auto found = crowded_.find(cell);
    if (found != crowded_.end()) {
        return found->second;
    }
    const auto code = static_cast<std::uint32_t>(levels_.size());
    crowded_.emplace(cell, code);
    levels_.append(cell);
    return code;
}

void TextColumnBuilder::growTable() {
    const std::vector<Entry> former = std::move(table_);
    const auto formerCrowded = std::exchange(crowded_, {});
    table_.assign(std::max(former.size() * 2, smallestTable), {.key = 0, .code = noCode});
    for (const Entry& entry : former) {
        if (entry.code != noCode) {
            place(entry);
        }
    }
    for (const auto& [text, code] : formerCrowded) {
        place({.key = tableKey(text), .code = code});
    }
}

void TextColumnBuilder::place(const Entry& entry) {
    const std::size_t first = slotOf(entry.key, table_.size());
    for (std::size_t slot = first; slot < first + mostProbes; ++slot) {
        Entry& present = table_[slot & (table_.size() - 1)];
        if (present.code == noCode) {
            present = entry;
            return;
        }
    }
    crowded_.emplace(levels_[entry.code], entry.code);
}

void TextColumnBuilder::storeCode(std::uint32_t code) {
    if (auto* narrow = std::get_if<std::vector<std::uint8_t>>(&codes_)) {
        if (code <= std::numeric_limits<std::uint8_t>::max()) {
            narrow->push_back(static_cast<std::uint8_t>(code));
            return;
        }
        widenCodes();
    }
    if (auto* middle = std::get_if<std::vector<std::uint16_t>>(&codes_)) {
        if (code <= std::numeric_limits<std::uint16_t>::max()) {
            middle->push_back(static_cast<std::uint16_t>(code));
            return;
        }
        widenCodes();
    }
    std::get<std::vector<std::uint32_t>>(codes_).push_back(code);
}

void TextColumnBuilder::widenCodes() {
    if (const auto* narrow = std::get_if<std::vector<std::uint8_t>>(&codes_)) {
        codes_ = std::vector<std::uint16_t>(narrow->begin(), narrow->end());
    } else if (const auto* middle = std::get_if<std::vector<std::uint16_t>>(&codes_)) {
        codes_ = std::vector<std::uint32_t>(middle->begin(), middle->end());
    }
    reserveRows();
}

void TextColumnBuilder::judge() {
    if (levels_.size() * 2 <= judgedRows || repeatsLongTexts()) {
        reserveRows();
        return;
    }
    TextList rows;
    for (std::size_t row = 0; row < rowCount_; ++row) {
        rows.append(cell(row));
    }
    levels_ = std::move(rows);
    codes_ = std::monostate();
    table_ = {};
    crowded_ = {};
    reserveRows();
}

bool TextColumnBuilder::repeatsLongTexts() const {
    std::size_t bytes = 0;
    for (std::size_t row = 0; row < rowCount_; ++row) {
        bytes += cell(row).size();
    }
    return bytes > mostSwelling * levels_.byteCount();
}

void TextColumnBuilder::encode() {
    if (!holdsRows()) {
        return;
    }
    const TextList rows = std::exchange(levels_, {});
    codes_ = std::vector<std::uint8_t>();
    for (std::size_t row = 0; row < rowCount_; ++row) {
        storeCode(codeOf(rows[row]));
    }
    reserveRows();
}

void TextColumnBuilder::reserveRows() {
    if (expectedRows_ <= rowCount_) {
        return;
    }
    std::visit(
        [this](auto& codes) {
            if constexpr (std::is_same_v<std::decay_t<decltype(codes)>, std::monostate>) {
                const std::size_t bytesPerRow = levels_.byteCount() / rowCount_ + 1;
                levels_.reserve(expectedRows_, expectedRows_ * bytesPerRow);
            } else {
                codes.reserve(expectedRows_);
            }
        },
        codes_);
}

std::string_view TextColumnBuilder::cell(std::size_t row) const {
    return std::visit(
        [this, row](const auto& codes) {
            if constexpr (std::is_same_v<std::decay_t<decltype(codes)>, std::monostate>) {
                return levels_[row];
            } else {
                return levels_[codes[row]];
            }
        },
        codes_);
}

void TextColumnBuilder::append(TextColumnBuilder&& next) {
    if (rowCount_ == 0) {
        *this = std::exchange(next, {});
        return;
    }
    std::size_t row = 0;
    while (isUndecided() && row < next.rowCount_) {
        append(next.cell(row++));
    }
    if (holdsRows() && next.holdsRows()) {
        levels_.append(next.levels_, row);
        rowCount_ += next.rowCount_ - row;
    } else if (!holdsRows() && !next.holdsRows()) {
        appendRemapped(next, row);
    } else {
        for (; row < next.rowCount_; ++row) {
            append(next.cell(row));
        }
    }
    next = {};
}

void TextColumnBuilder::appendRemapped(const TextColumnBuilder& next, std::size_t firstRow) {
    if (firstRow == next.rowCount_) {
        return;
    }
    std::vector<std::uint32_t> codeHere(next.levels_.size());
    for (std::size_t code = 0; code < codeHere.size(); ++code) {
        codeHere[code] = codeOf(next.levels_[code]);
    }
    std::visit(
        [&](const auto& codes) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(codes)>, std::monostate>) {
                for (std::size_t row = firstRow; row < next.rowCount_; ++row) {
                    storeCode(codeHere[codes[row]]);
                }
            }
        },
        next.codes_);
    rowCount_ += next.rowCount_ - firstRow;
}

std::shared_ptr<const TextColumn> TextColumnBuilder::finish() {
    auto column = std::make_shared<const TextColumn>(std::move(levels_), std::move(codes_));
    *this = {};
    return column;
}

}  // namespace sorvane
