#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <optional>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// The answers of rows of persons to items, row by row, an entry absent where an item was not
/// answered.
struct ItemMatrix {
    std::size_t rows = 0;
    std::size_t items = 0;
    /// Entry of row i and item j at i * items + j.
    std::vector<std::optional<double>> cells{};

    bool operator==(const ItemMatrix&) const = default;

    /// The items as columns.
    std::vector<NumericColumn> columns() const;
};
BOOST_DESCRIBE_STRUCT(ItemMatrix, (), (rows, items, cells))

}  // namespace sorvane
