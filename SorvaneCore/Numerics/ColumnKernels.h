#pragma once

#include <array>
#include <cstddef>

/// Inner loops over contiguous columns. Sums run in fixed lanes, so that the compiler may use
/// vector registers while every build adds in the same order.
namespace sorvane::ColumnKernels {

/// The lanes in which a sum of products is kept before they are added up.
inline constexpr std::size_t laneCount = 4;

/// The sums of products of one column with `Count` others, read in one pass over `x`.
template <std::size_t Count>
std::array<double, Count> dots(const double* x,
                               const std::array<const double*, Count>& others,
                               std::size_t length) {
    std::array<std::array<double, laneCount>, Count> lanes{};
    const std::size_t whole = length - length % laneCount;
    for (std::size_t i = 0; i < whole; i += laneCount) {
        for (std::size_t c = 0; c < Count; ++c) {
            for (std::size_t lane = 0; lane < laneCount; ++lane) {
                lanes[c][lane] += x[i + lane] * others[c][i + lane];
            }
        }
    }
    std::array<double, Count> sums{};
    for (std::size_t c = 0; c < Count; ++c) {
        sums[c] = (lanes[c][0] + lanes[c][1]) + (lanes[c][2] + lanes[c][3]);
        for (std::size_t i = whole; i < length; ++i) {
            sums[c] += x[i] * others[c][i];
        }
    }
    return sums;
}

/// The sum of products of two columns.
inline double dot(const double* a, const double* b, std::size_t length) {
    return dots<1>(a, {b}, length)[0];
}

/// Subtracts `factor` times `x` from `y`.
inline void subtractScaled(double factor, const double* x, double* y, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        y[i] -= factor * x[i];
    }
}

/// Copies `count` row-major rows of `cols` entries into columns that start `stride` apart.
inline void gatherColumns(
    const double* rows, std::size_t count, std::size_t cols, std::size_t stride, double* columns) {
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = 0; j < cols; ++j) {
            columns[j * stride + i] = rows[i * cols + j];
        }
    }
}

}  // namespace sorvane::ColumnKernels
