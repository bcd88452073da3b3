#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// Dense matrices of doubles: flat row-major lists with their dimensions beside them, element (i,
/// j) of an n by m matrix at i * m + j.
///
/// Failure    a list whose length does not fit its dimensions, or a matrix that fails a numerical
///            test -> absent; no function gives a reason
/// Accuracy   the tests decide what users are told, so their thresholds are fixed; several are
///            absolute and therefore depend on the units of the data
namespace sorvane::LinearAlgebra {

/// A Householder factorization A = QR of a matrix with at least as many rows as columns.
struct QRFactorization {
    std::size_t rows = 0;
    std::size_t cols = 0;
    /// cols by cols, row-major, zero below the diagonal.
    std::vector<double> rFactor;
    /// The vector of each step, of length `rows`, zero before the position of the step.
    std::vector<std::vector<double>> reflectors;
    /// 2 / (v'v) of each step.
    std::vector<double> reflectorScales;

    /// The first `cols` entries of Q'b.
    ///
    /// Input      b of length `rows`
    /// Cost       O(rows * cols)
    std::vector<double> qtb(std::span<const double> b) const;

    bool operator==(const QRFactorization&) const = default;
};
BOOST_DESCRIBE_STRUCT(QRFactorization, (), (rows, cols, rFactor, reflectors, reflectorScales))

/// Eigenvalues in descending order, each with its unit eigenvector.
struct SymmetricEigen {
    std::vector<double> values;
    std::vector<std::vector<double>> vectors;

    bool operator==(const SymmetricEigen&) const = default;
};
BOOST_DESCRIBE_STRUCT(SymmetricEigen, (), (values, vectors))

/// The inverse of a square matrix.
///
/// Method     Gauss-Jordan elimination with partial pivoting; on ties the topmost row is the pivot
/// Failure    a pivot not above 1e-12 in absolute value -> absent. The test is absolute: a
///            well-conditioned matrix with all entries below 1e-12 counts as singular. A NaN that
///            comes up as a pivot fails it
/// Cost       O(n^3)
[[nodiscard]] std::optional<std::vector<double>> invert(std::span<const double> matrix,
                                                        std::size_t n);

/// X'X, cols by cols and exactly symmetric.
///
/// Input      X of rows * cols entries; no rows give zeros
/// Method     row blocks that stay in the cache, turned into columns; sums in a fixed order
/// Cost       O(rows * cols^2), about 20 ms for a million rows of 11 columns
[[nodiscard]] std::vector<double> gramMatrix(std::span<const double> matrix,
                                             std::size_t rows,
                                             std::size_t cols);

/// The same of a matrix that is given column after column.
[[nodiscard]] std::vector<double> gramOfColumns(std::span<const double> columns,
                                                std::size_t rows,
                                                std::size_t cols);

/// The product of two row-major matrices, aRows by bCols.
///
/// Input      a of aRows * aCols entries, b of aCols * bCols
/// Cost       O(aRows * aCols * bCols)
[[nodiscard]] std::vector<double> multiply(std::span<const double> a,
                                           std::size_t aRows,
                                           std::size_t aCols,
                                           std::span<const double> b,
                                           std::size_t bCols);

/// The QR factorization of a matrix of full column rank.
///
/// Method     Householder reflections without column exchange; the entry that a step leaves on the
///            diagonal has the sign opposite to the one it found, zero counting as positive
/// Failure    fewer rows than columns, or a column that `ColumnRankTest` refuses because it is
///            collinear with earlier ones -> absent; so does a column with a NaN in it
/// Accuracy   backward stable      Cost O(rows * cols^2), twice the memory of the matrix
[[nodiscard]] std::optional<QRFactorization> qrDecompose(std::span<const double> matrix,
                                                         std::size_t rows,
                                                         std::size_t cols);

/// The solution x of Rx = b by back substitution, R upper triangular n by n.
///
/// Failure    a diagonal entry not above 1e-300 in absolute value, NaN included -> absent
/// Cost       O(n^2)
[[nodiscard]] std::optional<std::vector<double>> solveUpperTriangular(
    std::span<const double> rFactor, std::size_t n, std::span<const double> b);

/// The inverse of R'R, exactly symmetric: the unscaled coefficient covariance of a least-squares
/// fit.
///
/// Input      R upper triangular, n by n
/// Failure    as `solveUpperTriangular` -> absent
/// Cost       O(n^3)
[[nodiscard]] std::optional<std::vector<double>> covarianceFactorFromR(
    std::span<const double> rFactor, std::size_t n);

/// All eigenvalues and eigenvectors of a symmetric matrix.
///
/// Method     cyclic Jacobi, row by row, at most 100 sweeps. Each vector is signed so that its
///            component of largest absolute value (the first of equals) is positive; equal values
///            keep the order of their columns; values are not clipped at zero
/// Failure    squares above the diagonal that do not sum to less than 1e-18 -> absent. That is
///            absolute too: entries beyond about 1e7 can fail by rounding alone
/// Cost       O(n^3) a sweep, five to ten sweeps as a rule
[[nodiscard]] std::optional<SymmetricEigen> symmetricEigen(std::span<const double> matrix,
                                                           std::size_t n);

/// The log determinant of a symmetric positive definite matrix, of which the lower triangle is
/// read.
///
/// Method     Cholesky
/// Returns    NaN where the matrix holds one
/// Failure    not numerically positive definite (a squared pivot of 1e-18 or less) -> absent, also
///            where the absolute determinant exists
/// Cost       O(n^3)
[[nodiscard]] std::optional<double> logAbsDeterminant(std::span<const double> matrix,
                                                      std::size_t n);

}  // namespace sorvane::LinearAlgebra
