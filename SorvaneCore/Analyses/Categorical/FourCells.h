#pragma once

#include <cstdint>
#include <vector>

namespace sorvane {

/// The counts of a table of two rows and two columns.
struct FourCells {
    std::int64_t a = 0;
    std::int64_t b = 0;
    std::int64_t c = 0;
    std::int64_t d = 0;

    bool operator==(const FourCells&) const = default;

    bool hasNegative() const { return a < 0 || b < 0 || c < 0 || d < 0; }
    bool hasEmpty() const { return a == 0 || b == 0 || c == 0 || d == 0; }
    std::int64_t total() const { return a + b + c + d; }
    /// By row, then by column.
    std::vector<std::vector<std::int64_t>> rows() const { return {{a, b}, {c, d}}; }
};

}  // namespace sorvane
