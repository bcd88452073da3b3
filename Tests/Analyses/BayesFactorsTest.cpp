#include "SorvaneCore/Analyses/Basics/BayesFactors.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using namespace BayesFactors;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(BayesFactors, FavourTheNullWithoutAnEffect) {
    for (const std::int64_t n : {2, 3, 30, 3000000}) {
        EXPECT_LT(jzsTTest(0.0, n, std::nullopt)->bf10, 1.0) << n;
        EXPECT_LT(jzsTTest(0.0, n, n)->bf10, 1.0) << n;
    }
    EXPECT_LT(oneWayAnovaBF(0.0, 3, 20)->bf10, 1.0);
    EXPECT_LT(correlationBF(0.0, 30)->bf10, 1.0);
}

TEST(BayesFactors, StayFiniteInTheLogarithmWhereTheFactorIsNot) {
    const auto huge = jzsTTest(400.0, 5000, 5000);
    ASSERT_TRUE(huge);
    EXPECT_TRUE(std::isfinite(huge->logBF10));
    EXPECT_EQ(huge->bf10, infinity);
    EXPECT_GT(correlationBF(0.999999, 1000)->logBF10, 1000.0);
}

TEST(BayesFactors, AreAbsentOutsideTheirDomain) {
    EXPECT_FALSE(jzsTTest(nan, 10, std::nullopt));
    EXPECT_FALSE(jzsTTest(infinity, 10, 10));
    EXPECT_FALSE(jzsTTest(1.0, 1, std::nullopt));
    EXPECT_FALSE(jzsTTest(1.0, 10, 1));
    EXPECT_TRUE(jzsTTest(1.0, 10, 2));
    EXPECT_FALSE(correlationBF(1.0, 10));
    EXPECT_FALSE(correlationBF(-1.0, 10));
    EXPECT_FALSE(correlationBF(0.5, 2));
    EXPECT_FALSE(gPriorLinearModel(10, 0, 0.5));
    EXPECT_FALSE(gPriorLinearModel(10, 9, 0.5));
    EXPECT_TRUE(gPriorLinearModel(10, 8, 0.5));
    EXPECT_FALSE(gPriorLinearModel(10, 2, 1.0));
    EXPECT_FALSE(oneWayAnovaBF(-0.1, 3, 10));
    EXPECT_FALSE(oneWayAnovaBF(2.0, 1, 10));
    EXPECT_FALSE(oneWayAnovaBF(2.0, 3, 1));
    EXPECT_FALSE(semApproximateBF(-1.0, 3, 100));
    EXPECT_FALSE(semApproximateBF(3.0, 0, 100));
    EXPECT_FALSE(semApproximateBF(3.0, 3, 1));
    EXPECT_TRUE(std::isnan(semApproximateBF(3.0, 3, 100)->rscale));
}

TEST(BayesFactors, AreNamedByStrengthAndSide) {
    struct Case {
        int line;
        double bf10;
        std::string label;
    };
    const std::vector<Case> cases = {
        {__LINE__, 1.0, "anecdotal evidence for a difference"},
        {__LINE__, 2.999, "anecdotal evidence for a difference"},
        {__LINE__, 3.0, "moderate evidence for a difference"},
        {__LINE__, 10.0, "strong evidence for a difference"},
        {__LINE__, 30.0, "very strong evidence for a difference"},
        {__LINE__, 100.0, "extreme evidence for a difference"},
        {__LINE__, infinity, "extreme evidence for a difference"},
        {__LINE__, 0.5, "anecdotal evidence for no difference"},
        {__LINE__, 0.2, "moderate evidence for no difference"},
        {__LINE__, 0.0, "extreme evidence for no difference"},
        {__LINE__, nan, "no evidence either way"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(evidenceLabel(c.bf10, "a difference", "no difference"), c.label) << c.line;
    }
}

}  // namespace
}  // namespace sorvane
