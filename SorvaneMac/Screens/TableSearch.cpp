#include "SorvaneMac/Screens/TableSearch.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <thread>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::size_t wordBits = 64;

bool isSet(const std::vector<std::uint64_t>& bits, std::size_t at) {
    return !bits.empty() && (bits[at / wordBits] >> at % wordBits & 1U) != 0;
}

/// The bits of a word below a place in it.
std::uint64_t below(std::size_t place) {
    return (std::uint64_t{1} << place % wordBits) - 1;
}

/// Whether each level holds the words, which are in lower case already.
std::vector<char> matchingLevels(const ShownCells& cells,
                                 std::size_t column,
                                 const TableQuery& query) {
    std::vector<char> matches(cells.table().column(column).levelCount());
    std::string storage;
    for (std::size_t level = 0; level < matches.size(); ++level) {
        const std::string_view text =
            UnicodeText::lowerCased(cells.levelText(column, level), storage);
        matches[level] = query.extent == TableQuery::Extent::wholeCell
                             ? UnicodeText::trimmed(text) == query.words
                             : text.find(query.words) != std::string_view::npos;
    }
    return matches;
}

using Bits = std::vector<std::uint64_t>;

void set(Bits& bits, std::size_t at, std::uint64_t bit) {
    bits[at / wordBits] |= bit << at % wordBits;
}

/// The first row from `row` on whose text ends behind a place; rows near by are found at once.
std::size_t rowEndingBehind(const TextColumn& column, std::size_t row, const char* place) {
    const auto endsBehind = [&column, place](std::size_t at) {
        const std::string_view text = column.level(at);
        return text.data() + text.size() > place;
    };
    std::size_t step = 1;
    while (row + step < column.size() && !endsBehind(row + step - 1)) {
        row += step;
        step *= 2;
    }
    std::size_t end = std::min(row + step, column.size()) - 1;
    while (row < end) {
        const std::size_t middle = row + (end - row) / 2;
        if (endsBehind(middle)) {
            end = middle;
        } else {
            row = middle + 1;
        }
    }
    return row;
}

/// Marks the rows of a column whose rows are its levels, its texts taken as one: they stand one
/// after the other in memory, and a search through them is many times quicker than one by one.
void markInBlock(const TextColumn& column,
                 std::string_view block,
                 const std::string& words,
                 Bits& bits) {
    std::size_t row = 0;
    std::size_t at = block.find(words);
    while (at != std::string_view::npos) {
        const char* const found = block.data() + at;
        row = rowEndingBehind(column, row, found);
        const std::string_view text = column.level(row);
        const char* const end = text.data() + text.size();
        if (found >= text.data() && found + words.size() <= end) {
            set(bits, row, 1);
            at = static_cast<std::size_t>(end - block.data());
        } else {
            ++at;
        }
        at = block.find(words, at);
    }
}

void markByLevel(const ShownCells& cells, std::size_t column, const TableQuery& query, Bits& bits) {
    const std::vector<char> levels = matchingLevels(cells, column, query);
    if (std::find(levels.begin(), levels.end(), 1) == levels.end()) {
        return;
    }
    cells.table().column(column).withCodes([&](auto codes) {
        for (std::size_t row = 0; row < cells.table().rowCount(); ++row) {
            set(bits, row, static_cast<std::uint64_t>(levels[codes[row]]));
        }
    });
}

/// A bit per row; none without a match.
Bits matchingRows(const ShownCells& cells, std::size_t at, const TableQuery& query) {
    const TextColumn& column = cells.table().column(at);
    Bits bits((column.size() + wordBits - 1) / wordBits);
    std::string_view block;
    if (!column.hasCodes() && column.size() > 0 && !cells.hasLabels(at)) {
        const std::string_view first = column.level(0);
        const std::string_view last = column.level(column.size() - 1);
        block = {first.data(), static_cast<std::size_t>(last.data() + last.size() - first.data())};
    }
    std::string storage;
    const bool isLowerCase = UnicodeText::lowerCased(block, storage).data() == block.data();
    if (!block.empty() && isLowerCase && query.extent == TableQuery::Extent::anywhereInCell) {
        markInBlock(column, block, query.words, bits);
    } else {
        markByLevel(cells, at, query, bits);
    }
    const bool hasMatch =
        std::any_of(bits.begin(), bits.end(), [](auto word) { return word != 0; });
    return hasMatch ? bits : Bits();
}

/// Calls `work` for each number below `count`, on all cores.
template <typename Work>
void sideBySide(std::size_t count, const Work& work) {
    std::atomic<std::size_t> nextNumber = 0;
    const auto takeTurns = [&] {
        for (std::size_t at = nextNumber++; at < count; at = nextNumber++) {
            work(at);
        }
    };
    const std::size_t cores = std::max(std::thread::hardware_concurrency(), 1U);
    std::vector<std::jthread> others;
    for (std::size_t other = 1; other < std::min(cores, count); ++other) {
        others.emplace_back(takeTurns);
    }
    takeTurns();
}

}  // namespace

TableMatches TableMatches::of(const ShownCells& cells, const TableQuery& query) {
    TableMatches found;
    found.columns_.resize(cells.table().columnCount());
    if (query.words.empty()) {
        return found;
    }
    const TableQuery lower{.words = UnicodeText::lowerCased(query.words), .extent = query.extent};
    sideBySide(found.columns_.size(), [&](std::size_t column) {
        found.columns_[column] = matchingRows(cells, column, lower);
    });
    found.rows_.resize((cells.table().rowCount() + wordBits - 1) / wordBits);
    for (const Bits& column : found.columns_) {
        for (std::size_t word = 0; word < column.size(); ++word) {
            found.rows_[word] |= column[word];
            found.count_ += static_cast<std::uint64_t>(std::popcount(column[word]));
        }
    }
    return found;
}

bool TableMatches::contains(CellPlace place) const {
    return place.column < columns_.size() && isSet(columns_[place.column], place.row);
}

std::optional<CellPlace> TableMatches::next(std::optional<CellPlace> from) const {
    if (count_ == 0) {
        return std::nullopt;
    }
    if (from) {
        if (const auto inSameRow = firstInRow(from->row, from->column + 1)) {
            return inSameRow;
        }
    }
    std::optional<std::size_t> row = rowFrom(from ? from->row + 1 : 0);
    if (!row) {
        row = rowFrom(0);
    }
    return firstInRow(*row, 0);
}

std::optional<CellPlace> TableMatches::previous(CellPlace from) const {
    if (count_ == 0) {
        return std::nullopt;
    }
    if (const auto inSameRow = lastInRow(from.row, from.column)) {
        return inSameRow;
    }
    std::optional<std::size_t> row = rowBefore(from.row);
    if (!row) {
        row = rowBefore(rows_.size() * wordBits);
    }
    return lastInRow(*row, columns_.size());
}

std::uint64_t TableMatches::rank(CellPlace place) const {
    std::uint64_t before = 0;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const Bits& bits = columns_[column];
        const std::size_t end = place.row + (column <= place.column ? 1 : 0);
        for (std::size_t word = 0; word < std::min(end / wordBits, bits.size()); ++word) {
            before += static_cast<std::uint64_t>(std::popcount(bits[word]));
        }
        if (end / wordBits < bits.size()) {
            before += static_cast<std::uint64_t>(std::popcount(bits[end / wordBits] & below(end)));
        }
    }
    return before;
}

std::string TableMatches::summary(std::optional<CellPlace> place) const {
    if (count_ == 0) {
        return "No matches";
    }
    const std::string all = NumberText::integer(static_cast<std::int64_t>(count_)) +
                            (count_ == 1 ? " match" : " matches");
    if (!place || !contains(*place)) {
        return all;
    }
    return NumberText::integer(static_cast<std::int64_t>(rank(*place))) + " of " + all;
}

std::optional<CellPlace> TableMatches::firstInRow(std::size_t row, std::size_t fromColumn) const {
    for (std::size_t column = fromColumn; column < columns_.size(); ++column) {
        if (isSet(columns_[column], row)) {
            return CellPlace{row, column};
        }
    }
    return std::nullopt;
}

std::optional<CellPlace> TableMatches::lastInRow(std::size_t row, std::size_t endColumn) const {
    for (std::size_t column = endColumn; column-- > 0;) {
        if (isSet(columns_[column], row)) {
            return CellPlace{row, column};
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> TableMatches::rowFrom(std::size_t row) const {
    for (std::size_t word = row / wordBits; word < rows_.size(); ++word) {
        const std::uint64_t bits =
            rows_[word] & (word == row / wordBits ? ~below(row) : ~std::uint64_t{0});
        if (bits != 0) {
            return word * wordBits + static_cast<std::size_t>(std::countr_zero(bits));
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> TableMatches::rowBefore(std::size_t row) const {
    for (std::size_t word = std::min(row / wordBits + 1, rows_.size()); word-- > 0;) {
        const std::uint64_t bits =
            rows_[word] & (word == row / wordBits ? below(row) : ~std::uint64_t{0});
        if (bits != 0) {
            return word * wordBits + wordBits - 1 -
                   static_cast<std::size_t>(std::countl_zero(bits));
        }
    }
    return std::nullopt;
}

}  // namespace sorvane
