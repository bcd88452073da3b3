#include "SorvaneCore/Numerics/LinearAlgebra.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Tests/Numerics/SpecialValues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using test::closeTo;
using Matrix = std::vector<double>;

using test::notANumber;

/// A well-conditioned matrix without pattern.
Matrix sample(std::size_t rows, std::size_t cols) {
    Matrix matrix(rows * cols);
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        const auto step = static_cast<double>(i + 1);
        matrix[i] = std::sin(step * step * 0.37) + (i % (cols + 1) == 0 ? 2.0 : 0.0);
    }
    return matrix;
}

void expectAllClose(const Matrix& got, const Matrix& expected, double tolerance = 1e-12) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_TRUE(closeTo(got[i], expected[i], {.relative = tolerance, .absolute = tolerance}))
            << "entry " << i;
    }
}

Matrix identity(std::size_t n) {
    Matrix matrix(n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        matrix[i * n + i] = 1.0;
    }
    return matrix;
}

TEST(LinearAlgebra, InvertsWithRowExchange) {
    EXPECT_EQ(LinearAlgebra::invert(Matrix{5.0}, 1), Matrix{0.2});
    EXPECT_EQ(LinearAlgebra::invert(Matrix{0, 2, 4, 0}, 2), (Matrix{0, 0.25, 0.5, 0}));
    const Matrix a = sample(7, 7);
    expectAllClose(LinearAlgebra::multiply(a, 7, 7, LinearAlgebra::invert(a, 7).value(), 7),
                   identity(7));
}

TEST(LinearAlgebra, InverseNeedsPivotsStrictlyAboveAnAbsoluteLimit) {
    EXPECT_FALSE(LinearAlgebra::invert(Matrix{1e-12}, 1));
    EXPECT_TRUE(LinearAlgebra::invert(Matrix{1.0000001e-12}, 1));
    EXPECT_FALSE(LinearAlgebra::invert(Matrix{1e-13, 0, 0, 1e-13}, 2));
    EXPECT_FALSE(LinearAlgebra::invert(Matrix{notANumber, 1, 1, 1}, 2));
    EXPECT_FALSE(LinearAlgebra::invert(Matrix{1, 1, 1}, 2));
    EXPECT_FALSE(LinearAlgebra::invert(Matrix{}, 0));
    EXPECT_FALSE(LinearAlgebra::invert(Matrix{1}, std::numeric_limits<std::size_t>::max()));
}

TEST(LinearAlgebra, GramMatrixIsTheProductWithTheTranspose) {
    // Sizes around the row blocks, the groups of four columns and the four lanes of a sum.
    for (const std::size_t cols : {1, 4, 6, 11}) {
        for (const std::size_t rows : {0, 1, 3, 371, 373, 4099}) {
            const Matrix x = sample(rows, cols);
            Matrix transposed(x.size());
            for (std::size_t i = 0; i < x.size(); ++i) {
                transposed[(i % cols) * rows + i / cols] = x[i];
            }
            expectAllClose(LinearAlgebra::gramMatrix(x, rows, cols),
                           LinearAlgebra::multiply(transposed, cols, rows, x, cols), 1e-11);
        }
    }
    EXPECT_EQ(LinearAlgebra::multiply(Matrix{1, 2, 3, 4, 5, 6}, 2, 3, Matrix{1, 10, 100}, 1),
              (Matrix{321, 654}));
}

TEST(LinearAlgebra, QRGivesTheLeastSquaresFit) {
    // The same column by column: y = 1 + 2x with residuals orthogonal to both columns.
    const Matrix x{1, 0, 1, 1, 1, 2, 1, 3};
    const auto qr = LinearAlgebra::qrDecompose(x, 4, 2).value();
    expectAllClose(qr.rFactor, {-2, -3, 0, -std::sqrt(5.0)});
    expectAllClose(qr.reflectors[0], {3, 1, 1, 1});
    EXPECT_TRUE(closeTo(qr.reflectorScales[0], 2.0 / 12.0));
    EXPECT_EQ(qr.reflectors[1][0], 0.0);
    const auto b = LinearAlgebra::solveUpperTriangular(qr.rFactor, 2,
                                                       qr.qtb(Matrix{1 + 1, 3 - 3, 5 + 3, 7 - 1}));
    expectAllClose(b.value(), {1, 2});
    expectAllClose(LinearAlgebra::covarianceFactorFromR(qr.rFactor, 2).value(),
                   {0.7, -0.3, -0.3, 0.2});
}

TEST(LinearAlgebra, QRRefusesCollinearShortAndMissingColumns) {
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{1, 1, 2, 2, 3, 3}, 3, 2));
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{1, 2}, 1, 2));
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{}, 3, 0));
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{0, 0}, 2, 1));
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{1, 0, 1, notANumber, 1, 2}, 3, 2));
    // What is left of the second column against 1 * 2 rows * 1e-12.
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{1, 0, 0, 1.9e-12}, 2, 2));
    EXPECT_TRUE(LinearAlgebra::qrDecompose(Matrix{1, 0, 0, 2.1e-12}, 2, 2));
    // The largest norm so far is that of a later column.
    EXPECT_FALSE(LinearAlgebra::qrDecompose(Matrix{1, 0, 0, 0, 1e9, 0, 0, 0, 1e-3}, 3, 3));
}

TEST(LinearAlgebra, TriangularSolveRefusesAVanishingDiagonal) {
    EXPECT_FALSE(LinearAlgebra::solveUpperTriangular(Matrix{1e-300}, 1, Matrix{1}));
    EXPECT_FALSE(LinearAlgebra::solveUpperTriangular(Matrix{notANumber}, 1, Matrix{1}));
    EXPECT_FALSE(LinearAlgebra::solveUpperTriangular(Matrix{1, 1, 0, 1}, 2, Matrix{1}));
    EXPECT_FALSE(LinearAlgebra::covarianceFactorFromR(Matrix{1, 1, 0, 0}, 2));
}

TEST(LinearAlgebra, EigenvectorsComeSortedAndSigned) {
    const auto diagonal =
        LinearAlgebra::symmetricEigen(Matrix{-1, 0, 0, 0, 7, 0, 0, 0, 7}, 3).value();
    EXPECT_EQ(diagonal.values, (Matrix{7, 7, -1}));
    EXPECT_EQ(diagonal.vectors, (std::vector<Matrix>{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}));
    const auto pair = LinearAlgebra::symmetricEigen(Matrix{1, 0.3, 0.3, 1}, 2).value();
    const double half = std::sqrt(0.5);
    expectAllClose(pair.values, {1.3, 0.7});
    expectAllClose(pair.vectors[0], {half, half});

    const Matrix a = LinearAlgebra::gramMatrix(sample(40, 12), 40, 12);
    const auto eigen = LinearAlgebra::symmetricEigen(a, 12).value();
    for (std::size_t k = 0; k < 12; ++k) {
        Matrix scaled = eigen.vectors[k];
        double largest = 0.0;
        for (double& v : scaled) {
            largest = std::abs(v) > std::abs(largest) ? v : largest;
            v *= eigen.values[k];
        }
        EXPECT_GT(largest, 0.0);
        EXPECT_TRUE(k == 0 || eigen.values[k - 1] >= eigen.values[k]);
        expectAllClose(LinearAlgebra::multiply(a, 12, 12, eigen.vectors[k], 1), scaled, 1e-11);
    }
}

TEST(LinearAlgebra, EigenvaluesAreAbsentWhenTheRemainderStays) {
    EXPECT_FALSE(LinearAlgebra::symmetricEigen(Matrix{1, notANumber, notANumber, 1}, 2));
    EXPECT_FALSE(LinearAlgebra::symmetricEigen(Matrix{}, 0));
    EXPECT_EQ(LinearAlgebra::symmetricEigen(Matrix{-3}, 1)->values, Matrix{-3});
}

TEST(LinearAlgebra, LogDeterminantNeedsAPositiveDefiniteMatrix) {
    EXPECT_TRUE(
        closeTo(LinearAlgebra::logAbsDeterminant(Matrix{4, 2, 2, 5}, 2).value(), std::log(16.0)));
    EXPECT_FALSE(LinearAlgebra::logAbsDeterminant(Matrix{1, 2, 2, 1}, 2));
    EXPECT_FALSE(LinearAlgebra::logAbsDeterminant(Matrix{1e-18}, 1));
}

}  // namespace
}  // namespace sorvane
