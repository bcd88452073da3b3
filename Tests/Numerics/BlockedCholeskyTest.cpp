#include "SorvaneCore/Numerics/BlockedCholesky.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

/// min(i, j) + 1, whose factor is a triangle of ones; sizes beside those of blocks and tiles.
TEST(BlockedCholesky, FactorsAndSolvesAtAnySize) {
    for (const std::size_t n : {1U, 2U, 7U, 47U, 48U, 49U, 97U, 250U, 333U}) {
        SCOPED_TRACE(n);
        std::vector<double> matrix(n * n, -7.0);
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j <= i; ++j) {
                matrix[i * n + j] = static_cast<double>(j) + 1.0;
            }
        }
        ASSERT_TRUE(BlockedCholesky::factor(matrix, n));
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) {
                EXPECT_TRUE(
                    test::closeTo(matrix[i * n + j], j <= i ? 1.0 : -7.0, {.relative = 1e-9}));
            }
        }
        std::vector<double> sums(2 * n);
        for (std::size_t i = 0; i < n; ++i) {
            sums[2 * i] = static_cast<double>(i) + 1.0;
            sums[2 * i + 1] = 2.0;
        }
        BlockedCholesky::solveLower(matrix, n, sums, 2);
        EXPECT_TRUE(test::closeTo(sums[2 * n - 2], 1.0, {.relative = 1e-9}));
        EXPECT_TRUE(test::closeTo(sums[1], 2.0, {.relative = 1e-9}));
        std::vector<double> ones(n, 1.0);
        BlockedCholesky::solveLowerTransposed(matrix, n, ones, 1);
        EXPECT_TRUE(test::closeTo(ones[n - 1], 1.0, {.relative = 1e-9}));
        EXPECT_TRUE(test::closeTo(ones[0], n == 1 ? 1.0 : 0.0, {.relative = 0, .absolute = 1e-9}));
    }
}

TEST(BlockedCholesky, RefusesWhatIsNotPositiveDefinite) {
    std::vector<double> singular = {1.0, 1.0, 1.0, 1.0};
    EXPECT_FALSE(BlockedCholesky::factor(singular, 2));
    std::vector<double> unknown = {std::nan("")};
    EXPECT_FALSE(BlockedCholesky::factor(unknown, 1));
}

}  // namespace
}  // namespace sorvane
