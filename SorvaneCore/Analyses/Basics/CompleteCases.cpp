#include "SorvaneCore/Analyses/Basics/CompleteCases.h"

#include <algorithm>
#include <limits>

#include "SorvaneCore/Dataset/MissingValue.h"

namespace sorvane::CompleteCases {

namespace {

/// Strikes out the rows whose level is not among the present ones.
template <typename Column>
void strikeAbsent(std::vector<std::uint8_t>& complete,
                  const Column& column,
                  const std::vector<std::uint8_t>& isPresent) {
    column.withCodes([&complete, &isPresent](const auto& codes) {
        for (std::size_t row = 0; row < complete.size(); ++row) {
            complete[row] &= isPresent[codes[row]];
        }
    });
}

std::vector<std::uint8_t> presentLevels(const NumericColumn& column) {
    std::vector<std::uint8_t> isPresent;
    isPresent.reserve(column.levels().size());
    for (const std::optional<double>& level : column.levels()) {
        isPresent.push_back(static_cast<std::uint8_t>(level.has_value()));
    }
    return isPresent;
}

std::vector<std::uint8_t> presentLevels(const TextColumn& column) {
    std::vector<std::uint8_t> isPresent;
    isPresent.reserve(column.levelCount());
    for (std::size_t code = 0; code < column.levelCount(); ++code) {
        isPresent.push_back(
            static_cast<std::uint8_t>(!MissingValue::isMissing(column.level(code))));
    }
    return isPresent;
}

/// The positions of the rows that are complete.
std::vector<std::uint32_t> positions(const std::vector<std::uint8_t>& complete) {
    // One entry to spare, because a row is written before it is known to stay.
    std::vector<std::uint32_t> result(complete.size() + 1);
    std::size_t kept = 0;
    for (std::size_t row = 0; row < complete.size(); ++row) {
        result[kept] = static_cast<std::uint32_t>(row);
        kept += complete[row];
    }
    result.resize(kept);
    return result;
}

}  // namespace

std::vector<std::uint32_t> rows(std::span<const NumericColumn* const> columns) {
    return rows(columns, {});
}

std::vector<std::uint32_t> rows(std::span<const NumericColumn* const> numbers,
                                std::span<const TextColumn* const> texts) {
    if (numbers.empty() && texts.empty()) {
        return {};
    }
    std::size_t count = std::numeric_limits<std::size_t>::max();
    for (const NumericColumn* column : numbers) {
        count = std::min(count, column->size());
    }
    for (const TextColumn* column : texts) {
        count = std::min(count, column->size());
    }
    std::vector<std::uint8_t> complete(count, 1);
    for (const NumericColumn* column : numbers) {
        strikeAbsent(complete, *column, presentLevels(*column));
    }
    for (const TextColumn* column : texts) {
        strikeAbsent(complete, *column, presentLevels(*column));
    }
    return positions(complete);
}

std::vector<double> gathered(const NumericColumn& column, std::span<const std::uint32_t> rows) {
    std::vector<double> values(rows.size());
    const std::span<const std::optional<double>> levels = column.levels();
    column.withCodes([&values, levels, rows](const auto& codes) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            values[i] = *levels[codes[rows[i]]];
        }
    });
    return values;
}

Pairs pairs(std::span<const std::optional<double>> x, std::span<const std::optional<double>> y) {
    Pairs result;
    const std::size_t count = std::min(x.size(), y.size());
    result.x.reserve(count);
    result.y.reserve(count);
    for (std::size_t row = 0; row < count; ++row) {
        if (x[row] && y[row]) {
            result.x.push_back(*x[row]);
            result.y.push_back(*y[row]);
        }
    }
    return result;
}

}  // namespace sorvane::CompleteCases
