#include "SorvaneCore/Analyses/NonparametricTests.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/MathDistributions.h"
#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using namespace NonparametricTests;  // NOLINT(google-build-using-namespace)
using test::closeTo;
using Values = std::vector<double>;

double tail(double z) {
    return 2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(z)));
}

TEST(MannWhitney, KeepsTheSignOfTheFirstGroup) {
    // U1 = 8.5 of 9; one tie of two, so the variance is 9/12 (7 - 6/30).
    const auto higher = mannWhitneyU(Values{4, 5, 6}, Values{1, 2, 4});
    const auto lower = mannWhitneyU(Values{1, 2, 4}, Values{4, 5, 6});
    ASSERT_TRUE(higher && lower);
    EXPECT_EQ(higher->u, 0.5);
    EXPECT_EQ(lower->u, 0.5);
    EXPECT_TRUE(closeTo(higher->z, 4.0 / std::sqrt(0.75 * 6.8)));
    EXPECT_EQ(lower->z, -higher->z);
    EXPECT_TRUE(closeTo(higher->pValue, tail(higher->z)));
    EXPECT_TRUE(closeTo(higher->effectSizeR, higher->z / std::sqrt(6.0)));
}

TEST(MannWhitney, IsAbsentWithoutValuesOrVariance) {
    EXPECT_FALSE(mannWhitneyU(Values{}, Values{1, 2}));
    EXPECT_FALSE(mannWhitneyU(Values{1, 2}, Values{}));
    EXPECT_FALSE(mannWhitneyU(Values{0.1, 0.1}, Values{0.1}));
    EXPECT_FALSE(mannWhitneyU(Values(10, 0.3), Values(10, 0.1 + 0.2)));
    // Here the tied variance comes out as a rounding error above 0.
    EXPECT_FALSE(mannWhitneyU(Values(300001, 7.0), Values(310007, 7.0)));
}

TEST(MannWhitney, CountsThePairsThatTheFirstGroupWins) {
    std::mt19937_64 random(3);
    const Values first = test::randomValues(random, 60, 12);
    const Values second = test::randomValues(random, 45, 15);
    double wins = 0.0;
    for (const double a : first) {
        for (const double b : second) {
            wins += a > b ? 1.0 : (a == b ? 0.5 : 0.0);
        }
    }
    const auto result = mannWhitneyU(first, second);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->u, std::min(wins, 60.0 * 45.0 - wins));
    EXPECT_EQ(result->z > 0.0, wins > 60.0 * 45.0 / 2.0);
}

TEST(SignedRank, DropsZerosAndLeavesTiesInTheVariance) {
    // Differences 0, 2, -2, 3: ranks 1.5, 1.5, 3.
    const auto result = wilcoxonSignedRank(Values{1, 1, 5, 2}, Values{1, 3, 3, 5});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->n, 3);
    EXPECT_EQ(result->wPlus, 4.5);
    EXPECT_TRUE(closeTo(result->z, 1.5 / std::sqrt(3.5)));
    EXPECT_TRUE(closeTo(result->pValue, tail(result->z)));
    EXPECT_TRUE(closeTo(result->effectSizeR, result->z / std::sqrt(3.0)));
}

TEST(SignedRank, DropsDifferencesThatRoundingAloneTellsFromZero) {
    const double sum = 0.1 + 0.2;
    ASSERT_NE(sum, 0.3);
    EXPECT_EQ(wilcoxonSignedRank(Values{0.3, 1, 1e6 * sum, 5, 2}, Values{sum, 3, 3e5, 3, 5}),
              wilcoxonSignedRank(Values{1, 5, 2}, Values{3, 3, 5}));
    EXPECT_FALSE(wilcoxonSignedRank(Values{0.3, sum}, Values{sum, 0.3}));
    const auto small = wilcoxonSignedRank(Values{1e12, 1e-12}, Values{1e12 + 0.01, 2e-12});
    ASSERT_TRUE(small) << "each pair has digits of its own";
    EXPECT_EQ(small->n, 2);
}

TEST(SignedRank, ReadsTheCompletePairsOfColumns) {
    const auto column = test::plainColumn;
    const auto whole = wilcoxonSignedRank(Values{1, 5, 2}, Values{3, 3, 5});
    const auto gaps = wilcoxonSignedRank(column({1.0, 9.0, 5.0, std::nullopt, 2.0}),
                                         column({3.0, std::nullopt, 3.0, 4.0, 5.0}));
    EXPECT_TRUE(whole);
    EXPECT_EQ(whole, gaps);
    EXPECT_FALSE(wilcoxonSignedRank(Values{1, 2}, Values{1, 2}));
    EXPECT_FALSE(wilcoxonSignedRank(Values{}, Values{}));
    EXPECT_FALSE(wilcoxonSignedRank(Values{1, 2}, Values{3}));
    EXPECT_FALSE(wilcoxonSignedRank(column({1.0, 2.0}), column({3.0})));
}

TEST(Friedman, RanksWithinSubjectsWithoutATieCorrection) {
    // Rank sums 3, 6.5, 8.5.
    const std::vector<Values> rows = {{1, 2, 3}, {4, 7, 7}, {2, 5, 9}};
    const auto result = friedman(rows);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->subjects, 3);
    EXPECT_EQ(result->conditions, 3);
    EXPECT_EQ(result->degreesOfFreedom, 2);
    EXPECT_TRUE(closeTo(result->chiSquare, (9.0 + 42.25 + 72.25) / 3.0 - 36.0));
    EXPECT_TRUE(closeTo(result->kendallsW, result->chiSquare / 6.0));
    const std::vector<NumericColumn> columns = {test::plainColumn({1.0, 4.0, 1.0, 2.0}),
                                                test::plainColumn({2.0, 7.0, std::nullopt, 5.0}),
                                                test::codedColumn({3.0, 7.0, 5.0, 9.0})};
    EXPECT_EQ(friedman(columns), result);
}

TEST(Friedman, IsAbsentWithoutConditionsOrForRaggedRows) {
    EXPECT_FALSE(friedman(std::vector<Values>{}));
    EXPECT_FALSE(friedman(std::vector<Values>{{1}, {2}}));
    EXPECT_FALSE(friedman(std::vector<Values>{{1, 2}, {2}}));
    EXPECT_FALSE(friedman(std::vector<NumericColumn>{}));
    const std::vector<NumericColumn> never = {test::plainColumn({1.0, std::nullopt}),
                                              test::plainColumn({std::nullopt, 2.0})};
    EXPECT_FALSE(friedman(never));
    const auto equal = friedman(std::vector<Values>{{1, 2, 3}, {3, 2, 1}});
    ASSERT_TRUE(equal);
    EXPECT_EQ(equal->chiSquare, 0.0);
    EXPECT_EQ(equal->pValue, 1.0);
    EXPECT_EQ(friedman(std::vector<Values>(10, {0.3, 0.1 + 0.2, 0.3}))->chiSquare, 0.0);
}

}  // namespace

}  // namespace sorvane
