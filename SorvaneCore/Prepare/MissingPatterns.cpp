#include "SorvaneCore/Prepare/MissingPatterns.h"

#include "SorvaneCore/Prepare/RowTotals.h"

namespace sorvane {

namespace {

constexpr std::uint32_t unnumbered = ~std::uint32_t{0};

/// Parts each group of rows in two: those with a value in the column, and those without.
///
/// Returns    how many groups there are afterwards
std::size_t refine(const NumericColumn& column,
                   std::size_t groupCount,
                   std::vector<std::uint32_t>& groupOfRow) {
    std::vector<std::uint8_t> hasValue;
    hasValue.reserve(column.levels().size());
    for (const std::optional<double>& value : column.levels()) {
        hasValue.push_back(value ? 1 : 0);
    }
    std::vector<std::uint32_t> numberOf(2 * groupCount, unnumbered);
    std::uint32_t groups = 0;
    const auto renumber = [&](std::uint32_t& group, std::uint32_t present) {
        std::uint32_t& number = numberOf[2 * group + present];
        if (number == unnumbered) {
            number = groups++;
        }
        group = number;
    };
    column.withCodes([&](const auto& codes) {
        for (std::size_t row = 0; row < column.size(); ++row) {
            renumber(groupOfRow[row], hasValue[codes[row]]);
        }
    });
    for (std::size_t row = column.size(); row < groupOfRow.size(); ++row) {
        renumber(groupOfRow[row], 0);
    }
    return groups;
}

std::vector<bool> presentIn(std::span<const NumericColumn> columns, std::size_t row) {
    std::vector<bool> present;
    for (const NumericColumn& column : columns) {
        present.push_back(row < column.size() && column[row].has_value());
    }
    return present;
}

}  // namespace

MissingPatterns MissingPatterns::of(std::span<const NumericColumn> columns) {
    MissingPatterns patterns;
    patterns.patternOfRow.assign(RowTotals::rowCount(columns), 0);
    std::size_t count = patterns.patternOfRow.empty() ? 0 : 1;
    for (const NumericColumn& column : columns) {
        count = refine(column, count, patterns.patternOfRow);
    }
    patterns.counts.assign(count, 0);
    for (std::size_t row = 0; row < patterns.patternOfRow.size(); ++row) {
        const std::uint32_t pattern = patterns.patternOfRow[row];
        if (patterns.counts[pattern]++ == 0) {
            patterns.present.push_back(presentIn(columns, row));
        }
    }
    return patterns;
}

}  // namespace sorvane
