#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// Least squares for designs of many rows and few columns, reduced to a triangle in one pass.
namespace sorvane::TallLeastSquares {

/// What a least-squares fit needs of a design and its response: R, Q'b and the residual squares.
struct Reduction {
    std::size_t rows = 0;
    std::size_t cols = 0;
    /// cols by cols, row-major, upper triangular with a positive diagonal.
    std::vector<double> rFactor;
    /// The first `cols` entries of Q'b.
    std::vector<double> qtb;
    /// The squares of b that the columns leave.
    double residualSumOfSquares = 0.0;

    bool operator==(const Reduction&) const = default;
};
BOOST_DESCRIBE_STRUCT(Reduction, (), (rows, cols, rFactor, qtb, residualSumOfSquares))

/// Reduces a row-major design and a response; the coefficients are
/// `LinearAlgebra::solveUpperTriangular(rFactor, cols, qtb)`.
///
/// Input      a design of rows * cols entries, b of length `rows`
/// Method     Householder QR of row blocks, each stacked under the R of the rows before it. The
///            diagonal of the last R holds the norms that `ColumnRankTest` reads
/// Returns    R and Q'b as `LinearAlgebra::qrDecompose` has them but for the signs of whole rows
/// Failure    as `qrDecompose`: fewer rows than columns, or a collinear column -> absent; a design
///            with an entry that is not finite is absent as well
/// Accuracy   backward stable; agrees with `qrDecompose` to rounding times the condition number.
///            The rank decision can differ only for a column within rounding of the tolerance
/// Cost       O(rows * cols^2), about 30 ms for a million rows of 11 columns; memory of one block
[[nodiscard]] std::optional<Reduction> reduceRows(std::span<const double> design,
                                                  std::size_t rows,
                                                  std::size_t cols,
                                                  std::span<const double> b);

/// The same for a design that is held as separate columns, each as long as b.
[[nodiscard]] std::optional<Reduction> reduceColumns(
    std::span<const std::span<const double>> columns, std::span<const double> b);

}  // namespace sorvane::TallLeastSquares
