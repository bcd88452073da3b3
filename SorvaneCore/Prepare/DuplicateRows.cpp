#include <algorithm>
#include <bit>
#include <numeric>
#include <string>

#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Dataset/TextKey.h"
#include "SorvaneCore/Prepare/DataCleaning.h"

namespace sorvane::DataCleaning {

namespace {

using Columns = std::vector<TextTable::Column>;

constexpr char unitSeparator = '\x1F';
constexpr std::uint32_t noRow = ~std::uint32_t{0};

/// One word for the key of each row: a hash of the row's cells, hashed once per level.
std::vector<std::uint64_t> rowHashes(const Columns& columns, std::size_t rows) {
    std::vector<std::uint64_t> hashes(rows, 0);
    for (const TextTable::Column& column : columns) {
        std::vector<std::uint64_t> ofLevel;
        ofLevel.reserve(column->levelCount());
        for (std::size_t code = 0; code < column->levelCount(); ++code) {
            ofLevel.push_back(TextKey::of(column->level(code)).mixed());
        }
        column->withCodes([&](const auto& codes) {
            for (std::size_t row = 0; row < rows; ++row) {
                const std::uint64_t mixed =
                    (std::rotl(hashes[row], 5) ^ ofLevel[codes[row]]) * 0x9E3779B97F4A7C15U;
                hashes[row] = mixed ^ mixed >> 29;
            }
        });
    }
    return hashes;
}

bool isSameRow(const Columns& columns, std::size_t a, std::size_t b) {
    return std::ranges::all_of(columns, [a, b](const TextTable::Column& column) {
        const std::size_t codeA = column->code(a);
        const std::size_t codeB = column->code(b);
        return codeA == codeB ||
               (!column->hasCodes() && column->level(codeA) == column->level(codeB));
    });
}

/// The first row with the key of each row.
std::vector<std::uint32_t> firstRows(const Columns& columns, std::size_t rows) {
    const std::vector<std::uint64_t> hashes = rowHashes(columns, rows);
    std::vector<std::uint32_t> table(std::bit_ceil(2 * rows + 1), noRow);
    std::vector<std::uint32_t> first(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        std::size_t slot = hashes[row] & (table.size() - 1);
        while (table[slot] != noRow &&
               !(hashes[table[slot]] == hashes[row] && isSameRow(columns, table[slot], row))) {
            slot = (slot + 1) & (table.size() - 1);
        }
        if (table[slot] == noRow) {
            table[slot] = static_cast<std::uint32_t>(row);
        }
        first[row] = table[slot];
    }
    return first;
}

bool hasSeparator(const Columns& columns) {
    return std::ranges::any_of(columns, [](const TextTable::Column& column) {
        for (std::size_t code = 0; code < column->levelCount(); ++code) {
            if (column->level(code).find(unitSeparator) != std::string_view::npos) {
                return true;
            }
        }
        return false;
    });
}

/// The keys written out, for cells that hold the separator themselves: only then can rows with
/// different cells have one key.
TextTable::Column joinedKeys(const Columns& columns, std::size_t rows) {
    TextColumnBuilder builder;
    std::string key;
    for (std::size_t row = 0; row < rows; ++row) {
        key.clear();
        for (const TextTable::Column& column : columns) {
            key += (*column)[row];
            key += unitSeparator;
        }
        builder.append(key);
    }
    return builder.finish();
}

DuplicateReport reportOf(const std::vector<std::uint32_t>& firstRow) {
    std::vector<std::uint32_t> size(firstRow.size(), 0);
    for (const std::uint32_t first : firstRow) {
        ++size[first];
    }
    DuplicateReport report;
    std::vector<std::size_t> groupOf(firstRow.size());
    for (std::size_t row = 0; row < firstRow.size(); ++row) {
        if (size[row] > 1) {
            groupOf[row] = report.groups.size();
            report.groups.emplace_back();
        }
        if (size[firstRow[row]] > 1) {
            report.groups[groupOf[firstRow[row]]].push_back(static_cast<std::int64_t>(row));
            ++report.totalDuplicateRows;
        }
    }
    report.duplicateGroupCount = static_cast<std::int64_t>(report.groups.size());
    return report;
}

}  // namespace

DuplicateReport duplicateRows(const TextTable& rows) {
    std::vector<std::size_t> all(rows.columnCount());
    std::iota(all.begin(), all.end(), std::size_t{0});
    return duplicateRows(rows, all);
}

DuplicateReport duplicateRows(const TextTable& rows, std::span<const std::size_t> keyColumns) {
    Columns columns;
    for (const std::size_t column : keyColumns) {
        columns.push_back(rows.sharedColumn(column));
    }
    if (hasSeparator(columns)) {
        columns = {joinedKeys(columns, rows.rowCount())};
    }
    return reportOf(firstRows(columns, rows.rowCount()));
}

}  // namespace sorvane::DataCleaning
