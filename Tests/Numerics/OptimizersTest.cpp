#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/BFGSMinimizer.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/NelderMeadOptimizer.h"
#include "Tests/Numerics/SpecialValues.h"

namespace sorvane {
namespace {

using Point = std::span<const double>;

using test::notANumber;

double valley(Point x) {
    return std::pow(1.0 - x[0], 2.0) + 100.0 * std::pow(x[1] - x[0] * x[0], 2.0);
}

/// Its minimum is -1 at (3, -2).
double bowl(Point x) {
    return std::pow(x[0] - 3.0, 2.0) + 10.0 * std::pow(x[1] + 2.0, 2.0) - 1.0;
}

TEST(Newton, FindsTheMaximumOfAConcaveFunction) {
    // a ln x - x, largest at a.
    const std::vector<double> start = {1.0};
    const auto result = IRLS::newton(
        1, start, {}, [](Point x) { return std::vector{5.0 / x[0] - 1.0}; },
        [](Point x) { return std::vector{5.0 / (x[0] * x[0])}; });
    EXPECT_TRUE(result.converged);
    EXPECT_NEAR(result.parameters[0], 5.0, 1e-14);
    EXPECT_NEAR(result.inverseNegativeHessian[0], 5.0, 1e-9);
}

TEST(Newton, SaysWhyItStops) {
    const std::vector<double> start = {4.0, 7.0};
    const auto slope = [](Point) {
        return std::vector{1.0, 1.0};
    };
    const auto flat = [](Point) {
        return std::vector{1.0, 1.0, 1.0, 1.0};
    };
    const auto unit = [](Point) {
        return std::vector{1.0, 0.0, 0.0, 1.0};
    };
    const auto singular = IRLS::newton(2, start, {}, slope, flat);
    EXPECT_EQ(singular.stop, OptimizerStop::singular);
    EXPECT_EQ(singular.parameters, start);
    EXPECT_FALSE(singular.converged);
    const auto endless = IRLS::newton(2, start, {.maxIterations = 3}, slope, unit);
    EXPECT_EQ(endless.stop, OptimizerStop::iterationLimit);
    EXPECT_EQ(endless.parameters, (std::vector{7.0, 10.0}));
    EXPECT_EQ(endless.iterations, 3);
    EXPECT_EQ(IRLS::newton(3, start, {}, slope, unit).stop, OptimizerStop::badArguments);
    EXPECT_EQ(IRLS::newton(0, {}, {}, slope, unit).stop, OptimizerStop::badArguments);
    const auto nan = [](Point) {
        return std::vector{notANumber, 0.0};
    };
    EXPECT_FALSE(IRLS::newton(2, start, {}, nan, unit).converged);
}

TEST(BFGSMinimizer, FindsMinima) {
    const std::vector<double> start = {-1.2, 1.0};
    const auto quadratic = BFGSMinimizer::minimize(start, bowl, {});
    EXPECT_TRUE(quadratic.converged);
    EXPECT_LE(quadratic.iterations, 15);
    EXPECT_NEAR(quadratic.objective, -1.0, 1e-12);
    const auto curved = BFGSMinimizer::minimize(start, valley, {});
    EXPECT_TRUE(curved.converged);
    EXPECT_NEAR(curved.parameters[0], 1.0, 1e-6);
    EXPECT_NEAR(curved.parameters[1], 1.0, 1e-6);
    EXPECT_FALSE(BFGSMinimizer::minimize(start, valley, {.maxIterations = 3}).converged);
}

TEST(BFGSMinimizer, BacksOutOfWhereTheObjectiveIsNotFinite) {
    // The first full step lands below zero.
    const auto barrier = [](Point x) {
        return x[0] - std::log(x[0]) + 50.0 * std::pow(x[0] - 1.0, 2.0);
    };
    const auto result = BFGSMinimizer::minimize(std::vector{2.0}, barrier, {});
    EXPECT_TRUE(result.converged);
    EXPECT_NEAR(result.parameters[0], 1.0, 1e-6);
    const auto nowhere =
        BFGSMinimizer::minimize(std::vector{2.0}, [](Point) { return notANumber; }, {});
    EXPECT_EQ(nowhere.objective, 1e12);
}

TEST(NelderMead, FindsMinima) {
    const auto curved = NelderMeadOptimizer::minimize(std::vector{-1.2, 1.0}, 1000, valley);
    EXPECT_TRUE(curved.converged);
    EXPECT_NEAR(curved.parameters[0], 1.0, 1e-4);
    // From a zero coordinate, with a wall of NaN beside the way.
    const auto walled = [](Point x) {
        return x[1] > 0.05 ? notANumber : bowl(x);
    };
    const auto result = NelderMeadOptimizer::minimize(std::vector{0.0, 0.0}, 1000, walled);
    EXPECT_TRUE(result.converged);
    EXPECT_NEAR(result.objective, -1.0, 1e-9);
    const auto brief = NelderMeadOptimizer::minimize(std::vector{-1.2, 1.0}, 5, valley);
    EXPECT_FALSE(brief.converged);
    EXPECT_EQ(brief.iterations, 5);
}

TEST(NelderMead, MovesAsTold) {
    std::vector<double> asked;
    NelderMeadOptimizer::minimize(std::vector{2.0}, 1, [&asked](Point x) {
        asked.push_back(x[0]);
        return x[0] * x[0];
    });
    // The vertex a tenth away is worst; its reflection is best, so that the expansion is asked for.
    ASSERT_EQ(asked.size(), 4U);
    EXPECT_DOUBLE_EQ(asked[1], 2.2);
    EXPECT_DOUBLE_EQ(asked[2], 1.8);
    EXPECT_DOUBLE_EQ(asked[3], 1.6);
}

}  // namespace
}  // namespace sorvane
