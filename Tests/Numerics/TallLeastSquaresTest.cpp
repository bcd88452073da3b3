#include "SorvaneCore/Numerics/TallLeastSquares.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

struct Design {
    std::vector<std::vector<double>> columns;
    std::vector<double> rowMajor;
    std::vector<double> response;
};

/// An intercept and predictors of unlike scales; the last is `gap` away from the sum of the others.
Design makeDesign(std::size_t rows, std::size_t cols, double gap) {
    Design design;
    design.columns.assign(cols, std::vector<double>(rows, 1.0));
    for (std::size_t i = 0; i < rows; ++i) {
        const auto t = static_cast<double>(i + 1);
        double sum = 0.0;
        for (std::size_t j = 1; j < cols; ++j) {
            const auto scale = static_cast<double>(j * j);
            const double wave = std::sin(t * t * scale * 0.1);
            design.columns[j][i] = j + 1 == cols ? sum + gap * wave : scale * (wave + 0.5);
            sum += design.columns[j][i];
        }
        for (const auto& column : design.columns) {
            design.rowMajor.push_back(column[i]);
        }
        design.response.push_back(std::cos(t * 0.7) + t / static_cast<double>(rows));
    }
    return design;
}

std::optional<TallLeastSquares::Reduction> reduceRows(const Design& d) {
    return TallLeastSquares::reduceRows(d.rowMajor, d.response.size(), d.columns.size(),
                                        d.response);
}

TEST(TallLeastSquares, AgreesWithTheWholeFactorization) {
    // Below, at and above whole row blocks; as many rows as columns; one and several column groups.
    for (const std::size_t cols : {1, 2, 4, 9}) {
        for (const std::size_t rows : {9, 255, 256, 257, 2000}) {
            const Design d = makeDesign(rows, cols, 1.0);
            const auto tall = reduceRows(d).value();
            const auto qr = LinearAlgebra::qrDecompose(d.rowMajor, rows, cols).value();
            const auto qtb = qr.qtb(d.response);
            double squaresLeft = 0.0;
            for (const double y : d.response) {
                squaresLeft += y * y;
            }
            for (std::size_t k = 0; k < cols; ++k) {
                const double sign = std::copysign(1.0, qr.rFactor[k * cols + k]);
                for (std::size_t j = 0; j < cols; ++j) {
                    EXPECT_TRUE(test::closeTo(tall.rFactor[k * cols + j],
                                              sign * qr.rFactor[k * cols + j],
                                              {.relative = 1e-10, .absolute = 1e-10}));
                }
                EXPECT_TRUE(test::closeTo(tall.qtb[k], sign * qtb[k],
                                          {.relative = 1e-9, .absolute = 1e-10}));
                squaresLeft -= qtb[k] * qtb[k];
            }
            EXPECT_NEAR(tall.residualSumOfSquares, squaresLeft, 1e-9);
            const std::vector<std::span<const double>> columns(d.columns.begin(), d.columns.end());
            EXPECT_EQ(TallLeastSquares::reduceColumns(columns, d.response), tall);
        }
    }
}

TEST(TallLeastSquares, DecidesOnRankAsTheWholeFactorization) {
    // The tolerance grows with the rows: the same gap passes at 500 rows and fails at 50000.
    for (const std::size_t rows : {500, 50000}) {
        for (const double gap : {0.0, 1e-9, 1e-8, 1e-7, 1e-6, 1e-5, 1e-4}) {
            const Design d = makeDesign(rows, 5, gap);
            EXPECT_EQ(reduceRows(d).has_value(),
                      LinearAlgebra::qrDecompose(d.rowMajor, rows, 5).has_value())
                << rows << " rows, gap " << gap;
        }
    }
    EXPECT_TRUE(reduceRows(makeDesign(500, 5, 1e-7)));
    EXPECT_FALSE(reduceRows(makeDesign(50000, 5, 1e-7)));
}

TEST(TallLeastSquares, RefusesShortMismatchedAndMissingData) {
    EXPECT_FALSE(reduceRows(makeDesign(3, 4, 1.0)));
    Design d = makeDesign(20, 3, 1.0);
    EXPECT_FALSE(TallLeastSquares::reduceRows(d.rowMajor, 19, 3, d.response));
    d.columns[1].pop_back();
    const std::vector<std::span<const double>> ragged(d.columns.begin(), d.columns.end());
    EXPECT_FALSE(TallLeastSquares::reduceColumns(ragged, d.response));
    d.rowMajor[7] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(reduceRows(d));
}

}  // namespace
}  // namespace sorvane
