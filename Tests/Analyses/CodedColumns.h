#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::test {

using OptionalValues = std::vector<std::optional<double>>;

/// The column that an import would make of these numbers: distinct texts and a code per row.
inline NumericColumn codedColumn(const OptionalValues& rows) {
    std::vector<std::string> cells;
    for (const std::optional<double>& row : rows) {
        cells.push_back(row ? NumberText::shortest(*row) : "");
    }
    return NumericColumn(TextColumn::of(cells));
}

inline NumericColumn plainColumn(const OptionalValues& rows) {
    return NumericColumn(rows);
}

/// Whole numbers from 1 to `levels`, one in ten absent when asked.
inline OptionalValues randomAnswers(std::mt19937_64& random,
                                    std::size_t count,
                                    unsigned levels,
                                    bool withGaps) {
    OptionalValues rows(count);
    for (std::optional<double>& row : rows) {
        if (!withGaps || random() % 10 != 0) {
            row = static_cast<double>(1 + random() % levels);
        }
    }
    return rows;
}

/// Half-integers in a wide range: many ties when `levels` is small.
inline std::vector<double> randomValues(std::mt19937_64& random,
                                        std::size_t count,
                                        unsigned levels) {
    std::vector<double> values(count);
    for (double& value : values) {
        value = 0.5 * static_cast<double>(random() % levels) - 0.25 * levels;
    }
    return values;
}

}  // namespace sorvane::test
