#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/Basics/RankStatistics.h"
#include "SorvaneCore/Analyses/Basics/ValueOrder.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::closeTo;
using Values = std::vector<double>;

int sign(double x) {
    return (x > 0.0) - (x < 0.0);
}

/// Kendall's tau-b by comparing every pair.
double tauByPairs(const Values& x, const Values& y) {
    double balance = 0.0;
    double untiedX = 0.0;
    double untiedY = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            balance += sign(x[i] - x[j]) * sign(y[i] - y[j]);
            untiedX += x[i] != x[j] ? 1.0 : 0.0;
            untiedY += y[i] != y[j] ? 1.0 : 0.0;
        }
    }
    return balance / std::sqrt(untiedX * untiedY);
}

/// Midranks by comparing every pair.
Values ranksByPairs(const Values& x) {
    Values ranks;
    for (const double value : x) {
        double rank = 0.5;
        for (const double other : x) {
            rank += other < value ? 1.0 : (other == value ? 0.5 : 0.0);
        }
        ranks.push_back(rank);
    }
    return ranks;
}

TEST(ValueOrder, IsTheStableOrder) {
    std::mt19937_64 random(11);
    for (const std::size_t count : {0U, 1U, 2U, 399U, 400U, 5000U}) {
        for (int kind = 0; kind < 5; ++kind) {
            Values values = test::randomValues(random, count, kind == 0 ? 5 : 100000);
            for (std::size_t i = 0; i < count; ++i) {
                if (kind == 1) {
                    values[i] = std::exp(values[i] / 100.0) * (i % 2 == 0 ? 1.0 : -1.0);
                } else if (kind == 2) {
                    values[i] += 1e9 + (i == 7 ? 1e300 : 0.0);
                } else if (kind == 3) {
                    values[i] = std::ldexp(values[i], -1060);
                } else if (kind == 4) {
                    values[i] = i % 3 == 0 ? -0.0 : (i % 3 == 1 ? 0.0 : HUGE_VAL);
                }
            }
            std::vector<std::uint32_t> expected(count);
            std::iota(expected.begin(), expected.end(), 0U);
            std::ranges::stable_sort(expected, {},
                                     [&values](std::uint32_t index) { return values[index]; });
            EXPECT_EQ(ValueOrder::ascending(values), expected) << count << " of kind " << kind;
        }
    }
}

TEST(RankStatistics, ShareRanksAmongTies) {
    EXPECT_EQ(RankStatistics::averageRanks(Values{30, 10, 20, 10}), (Values{4, 1.5, 3, 1.5}));
    EXPECT_EQ(RankStatistics::tieTerm(Values{1, 1, 1, 2, 2, 3}), 4.0);
    EXPECT_EQ(RankStatistics::tieGroupSizes(Values{2, 1, 3, 1, 1, 2}), (Values{3, 2}));
    EXPECT_TRUE(RankStatistics::tieGroupSizes(Values{1, 2}).empty());
    EXPECT_TRUE(RankStatistics::averageRanks(Values{}).empty());
    std::mt19937_64 random(5);
    const Values values = test::randomValues(random, 600, 40);
    EXPECT_EQ(RankStatistics::averageRanks(values), ranksByPairs(values));
}

TEST(RelationshipTests, AreAbsentWithoutPairsOrVariance) {
    using namespace RelationshipTests;
    const Values two = {1, 2};
    const Values constant = {0.1, 0.1, 0.1, 0.1};
    const Values varied = {1, 3, 2, 5};
    EXPECT_FALSE(pearson(two, two));
    EXPECT_FALSE(spearman(two, two));
    EXPECT_FALSE(kendallTauB(two, two));
    EXPECT_FALSE(simpleLinearRegression(two, two));
    EXPECT_FALSE(pearson(constant, varied));
    EXPECT_FALSE(spearman(varied, constant));
    EXPECT_FALSE(kendallTauB(constant, varied));
    EXPECT_FALSE(simpleLinearRegression(constant, varied));
    const Values nearly = {0.3, 0.1 + 0.2, 0.3, 0.1 + 0.2};
    EXPECT_FALSE(pearson(nearly, varied));
    EXPECT_FALSE(spearman(varied, nearly));
    EXPECT_FALSE(kendallTauB(nearly, varied));
    EXPECT_FALSE(kendallTauB(test::plainColumn({0.3, 0.1 + 0.2, 0.3, 0.1 + 0.2}),
                             test::plainColumn({1, 3, 2, 5})));
    EXPECT_FALSE(simpleLinearRegression(nearly, varied));
    EXPECT_FALSE(
        pearson(test::OptionalValues{1.0, std::nullopt, 3.0}, test::OptionalValues{1.0, 2.0, 4.0}));
}

TEST(RelationshipTests, FindAPerfectCorrelation) {
    const Values x = {1, 2, 3, 4, 7};
    const Values y = {10, 20, 30, 40, 70};
    const auto result = RelationshipTests::pearson(x, y);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->r, 1.0);
    EXPECT_LT(result->pValue, 1e-20);
    const Values huge = {1e120, 2e120, 3e120, 4e120, 7e120};
    EXPECT_EQ(RelationshipTests::pearson(huge, huge)->r, 1.0);
    const Values tiny = {1e-200, 2e-200, 3e-200, 4e-200, 7e-200};
    EXPECT_FALSE(RelationshipTests::pearson(tiny, y));
}

TEST(RelationshipTests, ReadUpToTheShorterList) {
    const auto whole = RelationshipTests::pearson(Values{1, 2, 3, 5}, Values{2, 1, 3, 3});
    const auto longer = RelationshipTests::pearson(Values{1, 2, 3, 5, 9}, Values{2, 1, 3, 3});
    EXPECT_EQ(whole, longer);
}

TEST(RelationshipTests, AgreeWithTheirDefinitionsInAllForms) {
    std::mt19937_64 random(17);
    for (const std::size_t count : {3U, 17U, 40U, 700U}) {
        for (const unsigned levels : {2U, 7U, 1000U}) {
            const test::OptionalValues x = test::randomAnswers(random, count, levels, count > 3);
            test::OptionalValues y = test::randomAnswers(random, count, levels, count > 3);
            Values denseX;
            Values denseY;
            for (std::size_t i = 0; i < count; ++i) {
                if (x[i] && y[i]) {
                    *y[i] += *x[i];
                    denseX.push_back(*x[i]);
                    denseY.push_back(*y[i]);
                }
            }
            const auto kendall = RelationshipTests::kendallTauB(x, y);
            if (!kendall) {
                continue;
            }
            EXPECT_TRUE(closeTo(kendall->r, tauByPairs(denseX, denseY)));
            const auto spearman = RelationshipTests::spearman(x, y);
            EXPECT_TRUE(
                closeTo(spearman->r,
                        RelationshipTests::pearson(ranksByPairs(denseX), ranksByPairs(denseY))->r));
            for (const auto form : {test::codedColumn, test::plainColumn}) {
                EXPECT_EQ(RelationshipTests::kendallTauB(form(x), form(y)), kendall);
                EXPECT_EQ(RelationshipTests::spearman(form(x), form(y)), spearman);
                EXPECT_EQ(RelationshipTests::pearson(form(x), form(y)),
                          RelationshipTests::pearson(denseX, denseY));
                EXPECT_EQ(RelationshipTests::simpleLinearRegression(form(x), form(y)),
                          RelationshipTests::simpleLinearRegression(denseX, denseY));
            }
        }
    }
}

TEST(RelationshipTests, CorrectTauButNotItsTestForTies) {
    const Values x = {1, 1, 2, 3};
    const Values y = {1, 2, 2, 4};
    const auto result = RelationshipTests::kendallTauB(x, y);
    ASSERT_TRUE(result);
    EXPECT_TRUE(closeTo(result->r, 4.0 / 5.0));
    const double z = 3.0 * 4.0 / std::sqrt(4.0 * 3.0 * 13.0 / 2.0);
    EXPECT_TRUE(closeTo(result->pValue, 2.0 * (1.0 - MathDistributions::standardNormalCDF(z))));
}

TEST(RelationshipTests, RegressYOnX) {
    const auto line = RelationshipTests::simpleLinearRegression(Values{1e9 + 1, 1e9 + 2, 1e9 + 4},
                                                                Values{3, 5, 9});
    ASSERT_TRUE(line);
    EXPECT_TRUE(closeTo(line->slope, 2.0));
    EXPECT_TRUE(closeTo(line->intercept, -2e9 + 1.0));
    EXPECT_TRUE(closeTo(line->rSquared, 1.0));
    EXPECT_EQ(line->n, 3);
}

TEST(RelationshipTests, HoldCovariatesConstant) {
    std::mt19937_64 random(23);
    const test::OptionalValues z = test::randomAnswers(random, 60, 30, false);
    test::OptionalValues x = test::randomAnswers(random, 60, 30, false);
    test::OptionalValues y = test::randomAnswers(random, 60, 30, false);
    for (std::size_t i = 0; i < 60; ++i) {
        *y[i] += *z[i] - *x[i] / 2.0;
        *x[i] += *z[i];
    }
    const double xy = RelationshipTests::pearson(x, y)->r;
    const double xz = RelationshipTests::pearson(x, z)->r;
    const double yz = RelationshipTests::pearson(y, z)->r;
    const std::vector<NumericColumn> covariates = {test::plainColumn(z)};
    const auto result = RelationshipTests::partialCorrelation(test::plainColumn(x),
                                                              test::plainColumn(y), covariates);
    ASSERT_TRUE(result);
    EXPECT_TRUE(closeTo(result->r, (xy - xz * yz) / std::sqrt((1.0 - xz * xz) * (1.0 - yz * yz))));
    EXPECT_EQ(result->n, 60);
    const double t = result->r * std::sqrt(57.0 / (1.0 - result->r * result->r));
    EXPECT_TRUE(closeTo(result->pValue, MathDistributions::studentTPValue(t, 57.0)));
}

TEST(RelationshipTests, RefuseAPartialCorrelationThatCannotBeHad) {
    const auto column = [](test::OptionalValues rows) {
        return test::plainColumn(rows);
    };
    const NumericColumn x = column({1.0, 2.0, 3.0, 5.0, 4.0});
    const NumericColumn y = column({2.0, 1.0, 4.0, 3.0, 7.0});
    const std::vector<NumericColumn> one = {column({1.0, 0.0, 0.0, 1.0, 3.0})};
    EXPECT_TRUE(RelationshipTests::partialCorrelation(x, y, one));
    const std::vector<NumericColumn> gap = {column({1.0, 0.0, std::nullopt, 1.0, 3.0})};
    EXPECT_FALSE(RelationshipTests::partialCorrelation(x, y, gap));
    const std::vector<NumericColumn> same = {x};
    EXPECT_FALSE(RelationshipTests::partialCorrelation(x, y, same));
    const std::vector<NumericColumn> shorter = {column({1.0, 0.0, 2.0, 4.0})};
    EXPECT_FALSE(RelationshipTests::partialCorrelation(x, y, shorter));
    const std::vector<NumericColumn> constant = {column({1.0, 1.0, 1.0, 1.0, 1.0})};
    EXPECT_FALSE(RelationshipTests::partialCorrelation(x, y, constant));
}

}  // namespace

}  // namespace sorvane
