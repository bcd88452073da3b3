#pragma once

#include <optional>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// What `map` makes of each present number, one entry per row; decided once per level.
template <typename Map>
std::vector<std::optional<double>> mappedNumbers(const NumericColumn& column, Map&& map) {
    std::vector<std::optional<double>> levels;
    levels.reserve(column.levels().size());
    for (const std::optional<double>& value : column.levels()) {
        levels.push_back(value ? map(*value) : std::nullopt);
    }
    if (!column.hasCodes()) {
        return levels;
    }
    std::vector<std::optional<double>> rows(column.size());
    column.withCodes([&rows, &levels](const auto& codes) {
        for (std::size_t row = 0; row < rows.size(); ++row) {
            rows[row] = levels[codes[row]];
        }
    });
    return rows;
}

}  // namespace sorvane
