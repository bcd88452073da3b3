#include "SorvaneCore/Analyses/Categorical/CategoricalTests.h"

#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/Categorical/CrossTabulation.h"
#include "SorvaneCore/Analyses/Categorical/FisherExactTests.h"
#include "SorvaneCore/Analyses/Categorical/GoodnessOfFit.h"
#include "SorvaneCore/Analyses/Categorical/McNemarTests.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::cautions;
using test::closeTo;
using Texts = std::vector<std::string>;
using Counts = std::vector<std::int64_t>;
using Table = std::vector<Counts>;

std::shared_ptr<const TextColumn> column(const Texts& cells) {
    return TextColumn::of(cells);
}

TEST(CategoricalTests, OrderCategoriesByTheFirstCompletePair) {
    const auto rows = column({"b", "A", "a", "b", " NA ", "a"});
    const auto columns = column({"", "y", "x", "x", "x", "y"});
    const auto table = CrossTabulation::crosstab(*rows, *columns);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->rowLabels, (Texts{"A", "a", "b"}));
    EXPECT_EQ(table->columnLabels, (Texts{"y", "x"}));
    EXPECT_EQ(table->counts, (Table{{1, 0}, {1, 1}, {0, 1}}));
    EXPECT_EQ(table->rowTotals, (Counts{1, 2, 1}));
    EXPECT_EQ(table->columnTotals, (Counts{2, 2}));
    EXPECT_EQ(table->cellPercentages[1], (std::vector<double>{25, 25}));
    EXPECT_EQ(table->rowPercentages[1], (std::vector<double>{50, 50}));
    EXPECT_EQ(table->columnPercentages[2], (std::vector<double>{0, 50}));
    EXPECT_EQ(cautions(table->readiness), (Texts{"2 pairs were excluded as missing."}));
    EXPECT_EQ(table->readiness.totalRows, 6);
    EXPECT_EQ(table->readiness.validCases, 4);
    EXPECT_EQ(CategoricalTests::chiSquare(*rows, *columns)->observed, table->counts);
}

TEST(CategoricalTests, CountTheSmallExpectedCells) {
    const auto result =
        CategoricalTests::chiSquare(*column({"a", "a", "b", "b"}), *column({"x", "x", "y", "y"}));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->statistic, 4.0);
    EXPECT_EQ(result->cramersV, 1.0);
    EXPECT_EQ(result->warnings, (Texts{"4 of 4 expected cells are below 5; interpret the "
                                       "chi-square result cautiously."}));
}

TEST(CategoricalTests, HaveNothingToCompareInOneCategory) {
    const auto one = column({"a", "a", "a"});
    const auto two = column({"x", "y", "x"});
    const auto result = CategoricalTests::chiSquare(*one, *two);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->degreesOfFreedom, 0);
    EXPECT_EQ(result->cramersV, 0.0);
    EXPECT_TRUE(std::isnan(result->pValue));
    EXPECT_EQ(cautions(CrossTabulation::crosstab(*one, *two)->readiness),
              (Texts{"One variable has only a single observed category; the table has no cross "
                     "dimension to compare."}));
    EXPECT_FALSE(CategoricalTests::chiSquare(*one, *column({"x"})));
    EXPECT_FALSE(CategoricalTests::chiSquare(*column({"a", ""}), *column({"NA", "x"})));
    EXPECT_FALSE(CrossTabulation::crosstab(*column({}), *column({})));
}

TEST(CategoricalTests, ReadColumnsWithoutCodesAlike) {
    TextList cells;
    for (const char* cell : {"a", "b", "a", "c", "b"}) {
        cells.append(cell);
    }
    const TextColumn plain(cells, {});
    const auto coded = column({"a", "b", "a", "c", "b"});
    EXPECT_EQ(CategoricalTests::chiSquare(plain, *coded),
              CategoricalTests::chiSquare(*coded, *coded));
    EXPECT_EQ(GoodnessOfFit::chiSquare(plain, {}), GoodnessOfFit::chiSquare(*coded, {}));
}

TEST(FisherExact, FollowsTheHypergeometricDistribution) {
    // Of the 20 tables of these margins this one and its mirror image are the least probable.
    const auto result = FisherExactTests::test({.a = 0, .b = 3, .c = 3, .d = 0});
    ASSERT_TRUE(result);
    EXPECT_TRUE(closeTo(result->pValue, 0.1));
    EXPECT_TRUE(closeTo(result->oneSidedPValue, 0.05));
    EXPECT_EQ(result->oddsRatio, 0.0);
    const Texts expected = {
        "The table has only 6 observations. Fisher's exact test stays valid on small samples, but "
        "a tiny table still carries little statistical power.",
        "At least one cell is empty, so the odds ratio is undefined or infinite. The exact p-value "
        "is still valid; interpret the effect size with care."};
    EXPECT_EQ(cautions(result->readiness), expected);
    EXPECT_FALSE(FisherExactTests::test({.a = 3, .b = 0, .c = 0, .d = 3})->oddsRatio);
    const auto twenty = FisherExactTests::test({.a = 5, .b = 5, .c = 5, .d = 5});
    EXPECT_TRUE(twenty->readiness.issues.empty());
    EXPECT_EQ(twenty->pValue, 1.0);
    EXPECT_EQ(twenty->oddsRatio, 1.0);
}

TEST(FisherExact, NeedsFourMarginsAndTwoCategoriesEach) {
    for (const FourCells& counts : {FourCells{0, 0, 1, 1}, FourCells{0, 1, 0, 1},
                                    FourCells{-1, 3, 3, 3}, FourCells{1, 1, 0, 0}}) {
        EXPECT_FALSE(FisherExactTests::test(counts));
    }
    const auto two = column({"a", "b", "a", ""});
    EXPECT_EQ(FisherExactTests::test(*two, *column({"y", "n", "n", "y"}))->observed,
              (Table{{1, 1}, {0, 1}}));
    EXPECT_FALSE(FisherExactTests::test(*two, *column({"x", "y", "z", "y"})));
    EXPECT_FALSE(FisherExactTests::test(*two, *column({"x", "x", "x", "y"})));
}

TEST(McNemar, RecommendsTheExactTestForFewDiscordantPairs) {
    const auto tie = McNemarTests::test({.a = 5, .b = 1, .c = 1, .d = 4});
    ASSERT_TRUE(tie);
    EXPECT_EQ(tie->statistic, 0.0);
    EXPECT_EQ(tie->exactPValue, 1.0);
    EXPECT_EQ(cautions(tie->readiness),
              (Texts{"There are only 2 discordant pairs. Use the exact binomial p-value; the "
                     "chi-square approximation is unreliable when discordant pairs are few."}));
    EXPECT_TRUE(McNemarTests::test({.a = 0, .b = 24, .c = 0, .d = 0})->usesExactRecommended);
    EXPECT_FALSE(McNemarTests::test({.a = 0, .b = 24, .c = 1, .d = 0})->usesExactRecommended);
    EXPECT_TRUE(closeTo(McNemarTests::test({.a = 0, .b = 4, .c = 0, .d = 0})->exactPValue, 0.125));
    EXPECT_FALSE(McNemarTests::test({.a = 7, .b = 0, .c = 0, .d = 7}));
    EXPECT_FALSE(McNemarTests::test({.a = 7, .b = -1, .c = 3, .d = 7}));
}

TEST(McNemar, KeepsTheSameAnswerOnTheDiagonal) {
    // The first answer after is not the first before.
    const auto result = McNemarTests::test(*column({"yes", "no", "no", "yes", ""}),
                                           *column({"no", "no", "no", "yes", "yes"}));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->observed, (Table{{1, 1}, {0, 2}}));
    EXPECT_EQ(result->readiness.totalRows, 5);
    EXPECT_EQ(result->readiness.validCases, 4);
    EXPECT_TRUE(McNemarTests::test(*column({"yes", "yes"}), *column({"no", "yes"})));
    EXPECT_FALSE(McNemarTests::test(*column({"yes", "no"}), *column({"1", "0"})));
}

TEST(GoodnessOfFit, TakesEqualProportionsUnlessThereIsOneForEveryCategory) {
    const Counts observed = {3, 5, 1};
    const std::vector<double> two = {1, 1};
    const std::vector<double> shares = {2, 5, 2};
    const auto equal = GoodnessOfFit::chiSquare(observed, {}, two);
    ASSERT_TRUE(equal);
    EXPECT_EQ(equal->expected, (std::vector<double>{3, 3, 3}));
    EXPECT_TRUE(closeTo(equal->statistic, 8.0 / 3.0));
    EXPECT_EQ(equal->categoryLabels, (Texts{"Category 1", "Category 2", "Category 3"}));
    const Texts labels = {"low", "middle", "high"};
    const auto given = GoodnessOfFit::chiSquare(observed, labels, shares);
    EXPECT_EQ(given->expected, (std::vector<double>{2, 5, 2}));
    EXPECT_EQ(given->categoryLabels, labels);
    EXPECT_EQ(given->warnings, (Texts{"2 of 3 expected cells are below 5. The chi-square "
                                      "approximation may be unreliable; consider combining "
                                      "categories or an exact test."}));
    EXPECT_EQ(
        cautions(given->readiness),
        (Texts{"2 of 3 expected cells are below 5; the chi-square approximation may not hold.",
               "Total count 9 is small relative to 3 categories; treat the result as "
               "exploratory."}));
}

TEST(GoodnessOfFit, NeedsCategoriesCountsAndPositiveProportions) {
    const std::vector<double> withZero = {1, 0};
    EXPECT_FALSE(GoodnessOfFit::chiSquare(Counts{5}, {}, {}));
    EXPECT_FALSE(GoodnessOfFit::chiSquare(Counts{0, 0}, {}, {}));
    EXPECT_FALSE(GoodnessOfFit::chiSquare(Counts{5, -1}, {}, {}));
    EXPECT_FALSE(GoodnessOfFit::chiSquare(Counts{5, 5}, {}, withZero));
    EXPECT_FALSE(GoodnessOfFit::chiSquare(*column({"a", "", "a"}), {}));
}

}  // namespace

}  // namespace sorvane
