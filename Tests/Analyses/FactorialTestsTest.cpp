#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/Factorial/ANCOVATests.h"
#include "SorvaneCore/Analyses/Factorial/FactorialANOVATests.h"
#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::cautions;
using test::closeTo;
using test::obstacles;
using Texts = std::vector<std::string>;
using test::OptionalValues;
using Text = std::shared_ptr<const TextColumn>;

const std::string fewDF = "Error degrees of freedom are low (";

std::optional<FactorialANOVAResult> twoWay(const OptionalValues& outcome,
                                           const Texts& a,
                                           const Texts& b) {
    const Text first = TextColumn::of(a);
    const Text second = TextColumn::of(b);
    return FactorialANOVATests::twoWay(
        test::plainColumn(outcome),
        {.factorA = *first, .factorB = *second, .factorAName = "A", .factorBName = "B"});
}

std::optional<ANCOVAResult> ancova(const OptionalValues& outcome,
                                   const Texts& groups,
                                   const std::vector<OptionalValues>& covariates) {
    ANCOVAOptions options{.groupFactorName = "group"};
    std::vector<NumericColumn> columns;
    for (const OptionalValues& covariate : covariates) {
        columns.push_back(test::plainColumn(covariate));
        options.covariateNames.push_back("x" + std::to_string(columns.size()));
    }
    return ANCOVATests::test(test::plainColumn(outcome), *TextColumn::of(groups), columns, options);
}

TEST(FactorialANOVA, FindsTheEffectsOfABalancedDesignWhateverItsOffset) {
    // Cell means 2, 4, 6 and 12 about an offset, two cases each one away from the mean.
    for (const double offset : {0.0, 1e9}) {
        const auto result = twoWay({offset + 1, offset + 3, offset + 3, offset + 5, offset + 5,
                                    offset + 7, offset + 11, offset + 13},
                                   {"a", "a", "a", "a", "b", "b", "b", "b"},
                                   {"x", "x", "y", "y", "x", "x", "y", "y"});
        ASSERT_TRUE(result);
        ASSERT_EQ(result->effects.size(), 3U);
        EXPECT_EQ(result->effects[2].name, "A × B");
        EXPECT_TRUE(closeTo(result->effects[0].sumOfSquares, 72.0));
        EXPECT_TRUE(closeTo(result->effects[1].sumOfSquares, 32.0));
        EXPECT_TRUE(closeTo(result->effects[2].sumOfSquares, 8.0));
        EXPECT_EQ(result->meanSquareError, 2.0);
        EXPECT_EQ(result->dfError, 4);
        EXPECT_TRUE(result->isBalanced);
        EXPECT_TRUE(closeTo(*result->effects[0].f, 36.0));
        EXPECT_TRUE(closeTo(*result->effects[2].partialEtaSquared, 0.5));
    }
}

/// The error squares of a regression on columns.
double errorSquares(const OptionalValues& outcome, const std::vector<OptionalValues>& columns) {
    std::vector<NumericColumn> predictors;
    for (const OptionalValues& column : columns) {
        predictors.push_back(test::plainColumn(column));
    }
    const auto fit = RegressionTests::ordinaryLeastSquares(
        predictors, test::plainColumn(outcome),
        {.predictorNames = Texts(predictors.size()), .confidenceLevel = 0.95});
    return std::pow(fit->residualStandardError, 2.0) * static_cast<double>(fit->dfResidual);
}

TEST(FactorialANOVA, GivesWhatTheErrorGrowsByWithoutATerm) {
    std::mt19937_64 random(8);
    Texts a;
    Texts b;
    OptionalValues outcome;
    // The effect-coded columns of A (two levels), of B (three) and of both.
    std::vector<OptionalValues> columns(5);
    for (int row = 0; row < 60; ++row) {
        const unsigned levelA = row < 6 ? static_cast<unsigned>(row) / 3 : random() % 3 / 2;
        const unsigned levelB = row < 6 ? static_cast<unsigned>(row) % 3 : random() % 5 % 3;
        a.emplace_back(levelA == 0 ? "first" : "second");
        b.emplace_back(1, "xyz"[levelB]);
        outcome.emplace_back(levelA * 3.0 + levelB * levelA + static_cast<double>(random() % 9));
        const double ofA = levelA == 0 ? 1.0 : -1.0;
        const double b1 = levelB == 2 ? -1.0 : (levelB == 0 ? 1.0 : 0.0);
        const double b2 = levelB == 2 ? -1.0 : (levelB == 1 ? 1.0 : 0.0);
        const std::array codes = {ofA, b1, b2, ofA * b1, ofA * b2};
        for (std::size_t j = 0; j < columns.size(); ++j) {
            columns[j].emplace_back(codes[j]);
        }
    }
    const auto result = twoWay(outcome, a, b);
    ASSERT_TRUE(result);
    const double full = errorSquares(outcome, columns);
    const std::array without = {errorSquares(outcome, {columns.begin() + 1, columns.end()}),
                                errorSquares(outcome, {columns[0], columns[3], columns[4]}),
                                errorSquares(outcome, {columns[0], columns[1], columns[2]})};
    for (std::size_t effect = 0; effect < 3; ++effect) {
        EXPECT_TRUE(closeTo(result->effects[effect].sumOfSquares, without[effect] - full,
                            {.relative = 1e-9, .absolute = 1e-9}));
    }
    EXPECT_TRUE(closeTo(result->meanSquareError * 54.0, full));
    EXPECT_EQ(cautions(result->readiness).front().substr(0, 24), "The design is unbalanced");
}

TEST(FactorialANOVA, NamesEffectsByOrderThenByPosition) {
    OptionalValues outcome;
    std::vector<Text> columns;
    for (const int halving : {4, 2, 1}) {
        Texts cells;
        for (int row = 0; row < 16; ++row) {
            cells.emplace_back(row / halving % 2 == 0 ? "low" : "high");
        }
        columns.push_back(TextColumn::of(cells));
    }
    for (int row = 0; row < 16; ++row) {
        outcome.emplace_back(row * row % 7);
    }
    const std::vector<const TextColumn*> factors = {columns[0].get(), columns[1].get(),
                                                    columns[2].get()};
    const Texts names = {"A", "B", "C"};
    const auto result = FactorialANOVATests::nWay(test::plainColumn(outcome), factors, names);
    ASSERT_TRUE(result);
    Texts effects;
    for (const FactorialANOVAEffect& effect : result->effects) {
        effects.push_back(effect.name);
    }
    EXPECT_EQ(effects, (Texts{"A", "B", "C", "A × B", "A × C", "B × C", "A × B × C"}));
    EXPECT_FALSE(FactorialANOVATests::nWay(test::plainColumn(outcome), factors, Texts{"A"}));
    EXPECT_FALSE(FactorialANOVATests::nWay(test::plainColumn(outcome), std::span(factors).first(1),
                                           Texts{"A"}));
}

TEST(FactorialANOVA, IsBlockedByEmptyCells) {
    const auto result = twoWay({1.0, 2.0, 3.0, std::nullopt, 5.0}, {"a", "a", "b", "b", "a"},
                               {"x", "y", "x", "y", "x"});
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->effects.empty());
    EXPECT_TRUE(std::isnan(result->meanSquareError));
    EXPECT_EQ(obstacles(result->readiness),
              (Texts{"1 factor-level combination(s) have no data. A factorial ANOVA with an "
                     "interaction cannot estimate every cell when cells are empty. Drop the "
                     "interaction, collapse levels, or collect data for the empty cells."}));
    EXPECT_EQ(cautions(result->readiness),
              (Texts{"1 row(s) were dropped by listwise deletion because the outcome or a factor "
                     "was missing."}));
    EXPECT_EQ(result->readiness.validCases, 4);
    // Three by three levels on four rows: more cells than could be filled.
    const auto sparse = twoWay({1, 2, 3, 4}, {"a", "b", "c", "a"}, {"x", "y", "z", "x"});
    EXPECT_EQ(obstacles(sparse->readiness).front().substr(0, 2), "6 ");
}

TEST(FactorialANOVA, TellsOfCellsThatAreTooSmall) {
    const Texts a = {"a", "a", "b", "b", "a", "a", "b"};
    const Texts b = {"x", "y", "x", "y", "x", "y", "x"};
    const std::string single =
        "The smallest cell has 1 case(s). The interaction cannot be estimated with "
        "single-observation cells. Collapse levels or collect more data.";
    const auto one = twoWay({1, 2, 3, 4, 6, 7, 5}, a, b);
    EXPECT_EQ(cautions(one->readiness).back(), single);
    EXPECT_EQ(cautions(one->readiness).front(),
              fewDF + "3); F tests and p values are imprecise on a small sample.");
    EXPECT_EQ(one->effects.size(), 3U);
    const auto singles = twoWay({1, 2, 3, 4}, {"a", "a", "b", "b"}, {"x", "y", "x", "y"});
    EXPECT_EQ(obstacles(singles->readiness), Texts{single});
    EXPECT_TRUE(singles->effects.empty());
    const auto two = twoWay({1, 2, 3, 4, 6, 7, 5, 9}, {"a", "a", "b", "b", "a", "a", "b", "b"},
                            {"x", "y", "x", "y", "x", "y", "x", "y"});
    EXPECT_EQ(cautions(two->readiness).back(),
              "The smallest cell has only 2 cases. Cell means and the interaction test are "
              "unstable with thin cells; treat this as exploratory.");
    const auto exact = twoWay({1, 2, 3, 4, 1, 2, 3, 4}, {"a", "a", "b", "b", "a", "a", "b", "b"},
                              {"x", "y", "x", "y", "x", "y", "x", "y"});
    EXPECT_FALSE(exact->effects[0].f);
    EXPECT_EQ(exact->effects[0].partialEtaSquared, 1.0);
    EXPECT_FALSE(twoWay({1, 2, 3}, {"a", "a", "a"}, {"x", "y", "x"}));
    EXPECT_FALSE(twoWay({1, 2, 3}, {"a", "b", "a"}, {"x", "y"}));
    EXPECT_FALSE(
        twoWay({1, HUGE_VAL, 3, 4, 5}, {"a", "a", "b", "b", "a"}, {"x", "y", "x", "y", "x"}));
}

TEST(ANCOVA, MovesMeansAlongTheSlopeToTheGrandMean) {
    // y = 2x within both groups, 5 higher in the second, whose x is 4 higher.
    for (const double offset : {0.0, 1e8}) {
        const auto result =
            ancova({3, 3, 5, 17, 15, 18}, {"a", "a", "a", "b", "b", "b"},
                   {{offset + 1, offset + 2, offset + 3, offset + 6, offset + 5, offset + 7}});
        ASSERT_TRUE(result);
        const double slope = result->covariateEffects[0].coefficient;
        EXPECT_TRUE(closeTo(slope, 5.0 / 4.0));
        EXPECT_TRUE(closeTo(result->adjustedMeans[0].adjustedMean, 11.0 / 3.0 + 2.0 * slope));
        EXPECT_TRUE(closeTo(result->adjustedMeans[1].adjustedMean, 50.0 / 3.0 - 2.0 * slope));
        EXPECT_EQ(result->groupDFNumerator, 1);
        EXPECT_EQ(result->groupDFDenominator, 3);
        // With two groups the test of the groups is that of their dummy beside the covariate.
        const std::vector<NumericColumn> predictors = {test::plainColumn({1, 2, 3, 6, 5, 7}),
                                                       test::plainColumn({0, 0, 0, 1, 1, 1})};
        const auto fit = RegressionTests::ordinaryLeastSquares(
            predictors, test::plainColumn({3, 3, 5, 17, 15, 18}),
            {.predictorNames = {"x", "g"}, .confidenceLevel = 0.95});
        EXPECT_TRUE(
            closeTo(result->groupF, std::pow(fit->coefficients[2].t, 2.0), {.relative = 1e-10}));
        EXPECT_TRUE(
            closeTo(result->covariateEffects[0].standardError, fit->coefficients[1].standardError));
    }
}

TEST(ANCOVA, TellsOfItsRowsAndItsLimits) {
    const auto result = ancova({3, 3, 5, 17, 15, 18, 1}, {"a", "a", "a", "b", "b", "b", "NA"},
                               {{1, 2, 3, 6, 5, 7, 1}});
    const Texts expected = {
        "1 row(s) were dropped because the outcome, group, or a covariate was missing.",
        fewDF + "3); standard errors and p-values are imprecise on a small sample.",
        "The smallest group has only 3 cases. Adjusted means and the group F test are unstable "
        "with thin cells; treat this as exploratory.",
        "Adjusting for covariates controls for the variables you measured, not for everything that "
        "differs between groups. ANCOVA is statistical control, not causal proof; an adjusted "
        "group difference does not establish that the group caused it."};
    EXPECT_EQ(cautions(result->readiness), expected);
    EXPECT_EQ(result->readiness.totalRows, 7);
    EXPECT_EQ(result->readiness.usableGroups, 2);
}

TEST(ANCOVA, IsAbsentWithoutADesignOfFullRank) {
    const OptionalValues y = {3, 3, 5, 17, 15, 18};
    const Texts groups = {"a", "a", "a", "b", "b", "b"};
    EXPECT_FALSE(ancova(y, groups, {{0.1, 0.1, 0.1, 0.7, 0.7, 0.7}}));
    EXPECT_FALSE(ancova(y, groups, {{1, 2, 3, 6, 5, 7}, {2, 3, 4, 5, 4, 6}}));
    EXPECT_FALSE(ancova(y, groups, {}));
    EXPECT_FALSE(ancova(y, {"a", "a", "a", "a", "a", "a"}, {{1, 2, 3, 6, 5, 7}}));
    EXPECT_FALSE(ancova({3, 3, 5}, {"a", "a", "b"}, {{1, 2, 3}}));
    EXPECT_FALSE(ancova(y, groups, {{1, 2, 3}}));
    const double third = 0.1 + 0.2;
    EXPECT_FALSE(ancova(y, groups, {{0.3, third, 0.3, third, 0.3, third}}));
    EXPECT_FALSE(ancova({0.3, third, 0.3, third, third, 0.3}, groups, {{1, 2, 3, 6, 5, 7}}));
    EXPECT_FALSE(ancova({3, HUGE_VAL, 5, 17, 15, 18}, groups, {{1, 2, 3, 6, 5, 7}}));
}

}  // namespace

}  // namespace sorvane
