#include "SorvaneCore/Analyses/KernelDensity.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

TEST(KernelDensity, TakesTheWidthOfSilvermansRule) {
    // The quartiles are the medians of the halves, 2.5 and 6.5.
    const std::vector<double> values = {1, 2, 3, 4, 5, 6, 7, 8};
    const double deviation = std::sqrt(6.0);
    EXPECT_NEAR(KernelDensity::bandwidth(values),
                0.9 * std::min(deviation, 4.0 / 1.34) * std::pow(8.0, -0.2), 1e-12);
    const std::vector<double> mostlyEqual = {3, 3, 3, 3, 3, 3, 3, 9};
    EXPECT_GT(KernelDensity::bandwidth(mostlyEqual), 0.0) << "no quartile range";
    const std::vector<double> equal = {3, 3, 3};
    EXPECT_GT(KernelDensity::bandwidth(equal), 0.0);
    EXPECT_GT(KernelDensity::bandwidth(std::vector<double>()), 0.0);
}

TEST(KernelDensity, HoldsAnAreaOfOne) {
    const std::vector<double> values = {-1.0, 0.5, 2.0, 2.0, 7.0};
    const KernelDensity::Grid grid{.lower = -10.0, .upper = 16.0, .points = 521};
    const DensityCurve curve = KernelDensity::estimate(values, 0.8, grid);
    ASSERT_EQ(curve.x.size(), 521U);
    EXPECT_EQ(curve.x.back(), 16.0);
    double area = 0.0;
    for (const double y : curve.y) {
        area += y * (curve.x[1] - curve.x[0]);
    }
    EXPECT_NEAR(area, 1.0, 1e-6);
    const std::vector<double> one = {2.0};
    EXPECT_NEAR(KernelDensity::estimate(one, 0.5, {.lower = 2.0, .upper = 3.0, .points = 2}).y[0],
                1.0 / (0.5 * std::sqrt(2.0 * std::numbers::pi)), 1e-12);
    EXPECT_TRUE(KernelDensity::estimate({}, 1.0, grid).x.empty());
}

}  // namespace
}  // namespace sorvane
