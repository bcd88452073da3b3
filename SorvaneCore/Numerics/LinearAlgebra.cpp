#include "SorvaneCore/Numerics/LinearAlgebra.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numeric>

#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/ColumnRankTest.h"

namespace sorvane::LinearAlgebra {

namespace {

using Matrix = std::vector<double>;

// By division, so that no dimension overflows and a negative count that was converted is refused.
bool hasShape(std::span<const double> matrix, std::size_t rows, std::size_t cols) {
    return cols >= 1 && matrix.size() % cols == 0 && matrix.size() / cols == rows;
}

bool isSquare(std::span<const double> matrix, std::size_t n) {
    return n >= 1 && hasShape(matrix, n, n);
}

std::size_t pivotRow(const Matrix& a, std::size_t n, std::size_t k) {
    std::size_t best = k;
    for (std::size_t row = k + 1; row < n; ++row) {
        if (std::abs(a[row * n + k]) > std::abs(a[best * n + k])) {
            best = row;
        }
    }
    return best;
}

void swapRows(Matrix& a, std::size_t n, std::size_t first, std::size_t second) {
    std::swap_ranges(&a[first * n], &a[first * n] + n, &a[second * n]);
}

void divideRow(double* row, std::size_t n, double divisor) {
    for (std::size_t j = 0; j < n; ++j) {
        row[j] /= divisor;
    }
}

/// Entries of a block of columns that the first cache level holds.
constexpr std::size_t blockEntries = 4096;
constexpr std::size_t fewestBlockRows = 64;

/// Adds the sums of products of a block of columns, which start `stride` apart, to the upper
/// triangle of `gram`.
void addProducts(
    const double* columns, std::size_t stride, std::size_t count, std::size_t cols, Matrix& gram) {
    for (std::size_t i = 0; i < cols; ++i) {
        const double* x = columns + i * stride;
        std::size_t j = i;
        for (; j + 4 <= cols; j += 4) {
            const double* y = columns + j * stride;
            const auto sums =
                ColumnKernels::dots<4>(x, {y, y + stride, y + 2 * stride, y + 3 * stride}, count);
            for (std::size_t c = 0; c < 4; ++c) {
                gram[i * cols + j + c] += sums[c];
            }
        }
        for (; j < cols; ++j) {
            gram[i * cols + j] += ColumnKernels::dot(x, columns + j * stride, count);
        }
    }
}

void mirrorUpperTriangle(Matrix& a, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i + 1; j < n; ++j) {
            a[j * n + i] = a[i * n + j];
        }
    }
}

/// The scale 2 / (v'v) of the reflector v that clears a column below entry k; absent when v'v is
/// not positive.
std::optional<double> makeReflector(std::span<const double> active,
                                    double norm,
                                    std::span<double> v) {
    std::ranges::copy(active, v.begin());
    v[0] -= active[0] >= 0.0 ? -norm : norm;
    const double squares = ColumnKernels::dot(v.data(), v.data(), v.size());
    if (!(squares > 0.0)) {
        return std::nullopt;
    }
    return 2.0 / squares;
}

void reflect(std::span<const double> v, double scale, double* y, std::size_t length) {
    const double along = ColumnKernels::dot(v.data(), y, v.size());
    ColumnKernels::subtractScaled(scale * along, v.data(), y, length);
}

}  // namespace

std::optional<Matrix> invert(std::span<const double> matrix, std::size_t n) {
    constexpr double smallestPivot = 1e-12;
    if (!isSquare(matrix, n)) {
        return std::nullopt;
    }
    Matrix a(matrix.begin(), matrix.end());
    Matrix inverse(n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        inverse[i * n + i] = 1.0;
    }
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t row = pivotRow(a, n, k);
        const double pivot = a[row * n + k];
        if (!(std::abs(pivot) > smallestPivot)) {
            return std::nullopt;
        }
        if (row != k) {
            swapRows(a, n, k, row);
            swapRows(inverse, n, k, row);
        }
        divideRow(&a[k * n], n, pivot);
        divideRow(&inverse[k * n], n, pivot);
        for (std::size_t i = 0; i < n; ++i) {
            const double factor = a[i * n + k];
            if (i != k && factor != 0.0) {
                ColumnKernels::subtractScaled(factor, &a[k * n], &a[i * n], n);
                ColumnKernels::subtractScaled(factor, &inverse[k * n], &inverse[i * n], n);
            }
        }
    }
    return inverse;
}

Matrix gramMatrix(std::span<const double> matrix, std::size_t rows, std::size_t cols) {
    assert(matrix.size() == rows * cols);
    Matrix gram(cols * cols, 0.0);
    if (cols == 0) {
        return gram;
    }
    const std::size_t blockRows = std::max(blockEntries / cols, fewestBlockRows);
    std::vector<double> columns(std::min(blockRows, rows) * cols);
    for (std::size_t first = 0; first < rows; first += blockRows) {
        const std::size_t count = std::min(blockRows, rows - first);
        ColumnKernels::gatherColumns(&matrix[first * cols], count, cols, count, columns.data());
        addProducts(columns.data(), count, count, cols, gram);
    }
    mirrorUpperTriangle(gram, cols);
    return gram;
}

Matrix gramOfColumns(std::span<const double> columns, std::size_t rows, std::size_t cols) {
    assert(columns.size() == rows * cols);
    Matrix gram(cols * cols, 0.0);
    if (cols == 0) {
        return gram;
    }
    const std::size_t blockRows = std::max(blockEntries / cols, fewestBlockRows);
    for (std::size_t first = 0; first < rows; first += blockRows) {
        addProducts(&columns[first], rows, std::min(blockRows, rows - first), cols, gram);
    }
    mirrorUpperTriangle(gram, cols);
    return gram;
}

Matrix multiply(std::span<const double> a,
                std::size_t aRows,
                std::size_t aCols,
                std::span<const double> b,
                std::size_t bCols) {
    assert(a.size() == aRows * aCols && b.size() == aCols * bCols);
    Matrix product(aRows * bCols, 0.0);
    for (std::size_t i = 0; i < aRows; ++i) {
        const double* factors = a.data() + i * aCols;
        double* out = product.data() + i * bCols;
        if (bCols == 1) {
            // Fitted values of many cases: one running sum in a register.
            *out = std::inner_product(factors, factors + aCols, b.data(), 0.0);
            continue;
        }
        for (std::size_t k = 0; k < aCols; ++k) {
            const double* row = b.data() + k * bCols;
            for (std::size_t j = 0; j < bCols; ++j) {
                out[j] += factors[k] * row[j];
            }
        }
    }
    return product;
}

std::optional<QRFactorization> qrDecompose(std::span<const double> matrix,
                                           std::size_t rows,
                                           std::size_t cols) {
    if (cols < 1 || rows < cols || !hasShape(matrix, rows, cols)) {
        return std::nullopt;
    }
    std::vector<double> columns(rows * cols);
    ColumnKernels::gatherColumns(matrix.data(), rows, cols, rows, columns.data());
    QRFactorization qr{.rows = rows,
                       .cols = cols,
                       .rFactor = Matrix(cols * cols, 0.0),
                       .reflectors = std::vector(cols, std::vector<double>(rows, 0.0)),
                       .reflectorScales = std::vector<double>(cols, 0.0)};
    ColumnRankTest rankTest(rows);
    for (std::size_t k = 0; k < cols; ++k) {
        const std::span<double> active(&columns[k * rows + k], rows - k);
        const double norm =
            std::sqrt(ColumnKernels::dot(active.data(), active.data(), active.size()));
        if (!rankTest.accepts(norm)) {
            return std::nullopt;
        }
        const std::span<double> v(&qr.reflectors[k][k], rows - k);
        const auto scale = makeReflector(active, norm, v);
        if (!scale) {
            return std::nullopt;
        }
        qr.reflectorScales[k] = *scale;
        // Nothing below the diagonal of column k itself is read again.
        reflect(v, *scale, active.data(), 1);
        for (std::size_t j = k + 1; j < cols; ++j) {
            reflect(v, *scale, &columns[j * rows + k], v.size());
        }
    }
    for (std::size_t i = 0; i < cols; ++i) {
        for (std::size_t j = i; j < cols; ++j) {
            qr.rFactor[i * cols + j] = columns[j * rows + i];
        }
    }
    return qr;
}

std::vector<double> QRFactorization::qtb(std::span<const double> b) const {
    assert(b.size() == rows);
    std::vector<double> rotated(b.begin(), b.end());
    for (std::size_t k = 0; k < cols; ++k) {
        if (reflectorScales[k] == 0.0 || k == rows) {
            continue;
        }
        const std::span<const double> v(&reflectors[k][k], rows - k);
        reflect(v, reflectorScales[k], &rotated[k], v.size());
    }
    rotated.resize(cols);
    return rotated;
}

std::optional<std::vector<double>> solveUpperTriangular(std::span<const double> rFactor,
                                                        std::size_t n,
                                                        std::span<const double> b) {
    constexpr double smallestDiagonal = 1e-300;
    if (b.size() != n || (n > 0 && !hasShape(rFactor, n, n)) || (n == 0 && !rFactor.empty())) {
        return std::nullopt;
    }
    std::vector<double> x(b.begin(), b.end());
    for (std::size_t i = n; i-- > 0;) {
        const double diagonal = rFactor[i * n + i];
        if (!(std::abs(diagonal) > smallestDiagonal)) {
            return std::nullopt;
        }
        for (std::size_t j = i + 1; j < n; ++j) {
            x[i] -= rFactor[i * n + j] * x[j];
        }
        x[i] /= diagonal;
    }
    return x;
}

std::optional<Matrix> covarianceFactorFromR(std::span<const double> rFactor, std::size_t n) {
    if (!isSquare(rFactor, n)) {
        return std::nullopt;
    }
    Matrix inverse(n * n);
    std::vector<double> unit(n, 0.0);
    for (std::size_t j = 0; j < n; ++j) {
        unit[j] = 1.0;
        const auto column = solveUpperTriangular(rFactor, n, unit);
        if (!column) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < n; ++i) {
            inverse[i * n + j] = (*column)[i];
        }
        unit[j] = 0.0;
    }
    Matrix covariance(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i; j < n; ++j) {
            covariance[i * n + j] = ColumnKernels::dot(&inverse[i * n], &inverse[j * n], n);
        }
    }
    mirrorUpperTriangle(covariance, n);
    return covariance;
}

std::optional<double> logAbsDeterminant(std::span<const double> matrix, std::size_t n) {
    constexpr double smallestPivot = 1e-18;
    if (!isSquare(matrix, n)) {
        return std::nullopt;
    }
    Matrix lower(n * n, 0.0);
    double logDeterminant = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            const double s =
                matrix[i * n + j] - ColumnKernels::dot(&lower[i * n], &lower[j * n], j);
            if (j < i) {
                lower[i * n + j] = s / lower[j * n + j];
                continue;
            }
            if (s <= smallestPivot) {
                return std::nullopt;
            }
            lower[i * n + i] = std::sqrt(s);
            logDeterminant += 2.0 * std::log(lower[i * n + i]);
        }
    }
    return logDeterminant;
}

}  // namespace sorvane::LinearAlgebra
