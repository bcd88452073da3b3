#include "SorvaneCore/Analyses/Basics/CompleteCases.h"

#include <algorithm>
#include <limits>

namespace sorvane::CompleteCases {

std::vector<std::uint32_t> rows(std::span<const NumericColumn* const> columns) {
    if (columns.empty()) {
        return {};
    }
    std::size_t count = std::numeric_limits<std::size_t>::max();
    for (const NumericColumn* column : columns) {
        count = std::min(count, column->size());
    }
    std::vector<std::uint8_t> complete(count, 1);
    for (const NumericColumn* column : columns) {
        const std::span<const std::optional<double>> levels = column->levels();
        column->withCodes([&complete, levels](const auto& codes) {
            for (std::size_t row = 0; row < complete.size(); ++row) {
                complete[row] &= static_cast<std::uint8_t>(levels[codes[row]].has_value());
            }
        });
    }
    // One entry to spare, because a row is written before it is known to stay.
    std::vector<std::uint32_t> result(count + 1);
    std::size_t kept = 0;
    for (std::size_t row = 0; row < count; ++row) {
        result[kept] = static_cast<std::uint32_t>(row);
        kept += complete[row];
    }
    result.resize(kept);
    return result;
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
