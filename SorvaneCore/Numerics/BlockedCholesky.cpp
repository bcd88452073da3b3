#include "SorvaneCore/Numerics/BlockedCholesky.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::BlockedCholesky {

namespace {

constexpr std::size_t blockSize = 48;
constexpr std::size_t tileRows = 2;
constexpr std::size_t tileCols = 8;
/// Rows that one thread takes at a time.
constexpr std::size_t rowsPerTask = 32;
/// Below this many rows, threads cost more than they bring.
constexpr std::size_t fewestRowsForThreads = 192;

/// The factor of the block on the diagonal that begins and ends at these columns.
bool factorDiagonal(std::span<double> matrix, std::size_t n, std::size_t first, std::size_t end) {
    constexpr double smallestPivot = 1e-18;
    for (std::size_t i = first; i < end; ++i) {
        double* row = &matrix[i * n];
        for (std::size_t j = first; j <= i; ++j) {
            double sum = row[j];
            for (std::size_t k = first; k < j; ++k) {
                sum -= row[k] * matrix[j * n + k];
            }
            row[j] = j < i ? sum / matrix[j * n + j] : sum;
        }
        if (!(row[i] > smallestPivot) || !std::isfinite(row[i])) {
            return false;
        }
        row[i] = std::sqrt(row[i]);
    }
    return true;
}

/// Rows that are solved in step, so that none waits for its own last entry.
constexpr std::size_t rowsInStep = 4;

/// Solves rows that begin `stride` apart for the columns of a factored block.
template <std::size_t Count>
void solveRows(double* rows,
               std::size_t stride,
               const std::vector<double>& columns,
               std::size_t depth) {
    for (std::size_t j = 0; j < depth; ++j) {
        const double* column = &columns[j * depth];
        std::array<double, Count> solved{};
        for (std::size_t r = 0; r < Count; ++r) {
            solved[r] = rows[r * stride + j] / column[j];
            rows[r * stride + j] = solved[r];
        }
        for (std::size_t r = 0; r < Count; ++r) {
            double* row = rows + r * stride;
            for (std::size_t k = j + 1; k < depth; ++k) {
                row[k] -= solved[r] * column[k];
            }
        }
    }
}

/// Solves the rows below a factored block for its columns.
void solveBelow(std::span<double> matrix, std::size_t n, std::size_t first, std::size_t end) {
    const std::size_t depth = end - first;
    // Column by column, so that a solved entry is taken from the rest of its row in one sweep.
    std::vector<double> columns(depth * depth);
    for (std::size_t i = 0; i < depth; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            columns[j * depth + i] = matrix[(first + i) * n + first + j];
        }
    }
    std::size_t i = end;
    for (; i + rowsInStep <= n; i += rowsInStep) {
        solveRows<rowsInStep>(&matrix[i * n + first], n, columns, depth);
    }
    for (; i < n; ++i) {
        solveRows<1>(&matrix[i * n + first], n, columns, depth);
    }
}

/// The columns of a factored block below it, column after column, padded with zeros to whole tiles.
struct Panel {
    std::vector<double> entries{};
    std::size_t stride = 0;
    std::size_t depth = 0;
};

Panel panelOf(std::span<const double> matrix, std::size_t n, std::size_t first, std::size_t end) {
    Panel panel{.stride = (n - end + tileCols - 1) / tileCols * tileCols, .depth = end - first};
    panel.entries.assign(panel.depth * panel.stride, 0.0);
    for (std::size_t i = end; i < n; ++i) {
        for (std::size_t k = first; k < end; ++k) {
            panel.entries[(k - first) * panel.stride + i - end] = matrix[i * n + k];
        }
    }
    return panel;
}

/// What is left of a matrix to the right of a factored block.
struct Trailing {
    std::span<double> matrix{};
    std::size_t n = 0;
    /// Its first row and column.
    std::size_t first = 0;

    double* row(std::size_t i) const { return &matrix[(first + i) * n + first]; }
};

/// Takes the products of two rows with eight columns of the panel from the lower triangle.
void reduceTile(const Trailing& trailing, const Panel& panel, std::size_t row, std::size_t column) {
    // Apart, so that each fills vector registers.
    std::array<double, tileCols> first{};
    std::array<double, tileCols> second{};
    for (std::size_t k = 0; k < panel.depth; ++k) {
        const double* entries = &panel.entries[k * panel.stride];
        const double* columns = entries + column;
        const double a = entries[row];
        const double b = entries[row + 1];
        for (std::size_t c = 0; c < tileCols; ++c) {
            first[c] += a * columns[c];
        }
        for (std::size_t c = 0; c < tileCols; ++c) {
            second[c] += b * columns[c];
        }
    }
    const std::array<const double*, tileRows> sums = {first.data(), second.data()};
    for (std::size_t r = 0; r < tileRows && trailing.first + row + r < trailing.n; ++r) {
        const std::size_t end = std::min(column + tileCols, row + r + 1);
        double* entries = trailing.row(row + r);
        for (std::size_t c = column; c < end; ++c) {
            entries[c] -= sums[r][c - column];
        }
    }
}

void reduceTrailing(const Trailing& trailing, const Panel& panel, unsigned threads) {
    const std::size_t rows = trailing.n - trailing.first;
    const std::size_t tasks = (rows + rowsPerTask - 1) / rowsPerTask;
    // The longest rows first, so that the threads end together.
    parallelFor(tasks, rows < fewestRowsForThreads ? 1 : threads, [&](std::size_t task) {
        const std::size_t start = (tasks - 1 - task) * rowsPerTask;
        for (std::size_t row = start; row < std::min(start + rowsPerTask, rows); row += tileRows) {
            for (std::size_t column = 0; column <= row + 1 && column < rows; column += tileCols) {
                reduceTile(trailing, panel, row, column);
            }
        }
    });
}

}  // namespace

bool factor(std::span<double> matrix, std::size_t n, unsigned threads) {
    for (std::size_t first = 0; first < n; first += blockSize) {
        const std::size_t end = std::min(first + blockSize, n);
        if (!factorDiagonal(matrix, n, first, end)) {
            return false;
        }
        if (end < n) {
            solveBelow(matrix, n, first, end);
            reduceTrailing({.matrix = matrix, .n = n, .first = end}, panelOf(matrix, n, first, end),
                           threads);
        }
    }
    return true;
}

void solveLower(std::span<const double> lower,
                std::size_t n,
                std::span<double> b,
                std::size_t width) {
    for (std::size_t i = 0; i < n; ++i) {
        double* own = &b[i * width];
        for (std::size_t k = 0; k < i; ++k) {
            const double factor = lower[i * n + k];
            for (std::size_t c = 0; c < width; ++c) {
                own[c] -= factor * b[k * width + c];
            }
        }
        for (std::size_t c = 0; c < width; ++c) {
            own[c] /= lower[i * n + i];
        }
    }
}

void solveLowerTransposed(std::span<const double> lower,
                          std::size_t n,
                          std::span<double> b,
                          std::size_t width) {
    for (std::size_t i = n; i-- > 0;) {
        double* own = &b[i * width];
        for (std::size_t c = 0; c < width; ++c) {
            own[c] /= lower[i * n + i];
        }
        for (std::size_t k = 0; k < i; ++k) {
            const double factor = lower[i * n + k];
            for (std::size_t c = 0; c < width; ++c) {
                b[k * width + c] -= factor * own[c];
            }
        }
    }
}

}  // namespace sorvane::BlockedCholesky
