#include "SorvaneCore/Numerics/NormalQuantile.h"

#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NormalCritical.h"
#include "Tests/Numerics/SpecialValues.h"

namespace sorvane {
namespace {

using test::infinity;

TEST(NormalQuantile, EndsAndSymmetry) {
    EXPECT_EQ(inverseStandardNormalCDF(0.0), -infinity);
    EXPECT_EQ(inverseStandardNormalCDF(1.5), infinity);
    EXPECT_EQ(inverseStandardNormalCDF(0.5), 0.0);
    for (const double p : {0.001, 0.02425, 0.024251, 0.3}) {
        EXPECT_NEAR(inverseStandardNormalCDF(p), -inverseStandardNormalCDF(1.0 - p), 1e-12);
    }
    EXPECT_TRUE(std::isnan(inverseStandardNormalCDF(std::nan(""))));
}

TEST(NormalCritical, SettingsAgreeInsideAndDifferAtTheEnds) {
    using enum NormalCriticalSetting;
    for (const double alpha : {0.001, 0.05, 0.2, 0.9}) {
        EXPECT_NEAR(normalCritical(alpha, wide), inverseStandardNormalCDF(1.0 - alpha / 2), 1e-10);
        EXPECT_NEAR(normalCritical(alpha, narrow), normalCritical(alpha, wide), 1e-12);
    }
    EXPECT_TRUE(std::isnan(normalCritical(0.0, wide)));
    EXPECT_TRUE(std::isnan(normalCritical(1.0, wide)));
    EXPECT_EQ(normalCritical(0.0, narrow), 8.0);
    EXPECT_NEAR(normalCritical(1.5, narrow), 0.0, 1e-20);
    EXPECT_GT(normalCritical(1e-16, wide), 8.2);
}

}  // namespace
}  // namespace sorvane
