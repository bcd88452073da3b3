#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/LatentVariables/FactorAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/LatentVariableSupport.h"
#include "SorvaneCore/Analyses/LatentVariables/OmegaReliabilityAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalAxis.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalComponentsAnalyzer.h"
#include "SorvaneCore/Analyses/LatentVariables/VarimaxRotation.h"
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

std::vector<NumericColumn> columns(const std::vector<OptionalValues>& items) {
    std::vector<NumericColumn> result;
    for (const OptionalValues& item : items) {
        result.push_back(test::plainColumn(item));
    }
    return result;
}

OptionalValues negated(OptionalValues values) {
    for (std::optional<double>& value : values) {
        value = -*value;
    }
    return values;
}

const OptionalValues item1 = {1, 2, 4, 3, 5, 6, 8, 7};
const OptionalValues item2 = {2, 1, 3, 5, 4, 7, 6, 8};
const OptionalValues item3 = {1, 3, 2, 4, 7, 5, 8, 6};
const OptionalValues item4 = {8, 1, 7, 2, 5, 4, 3, 6};

TEST(LatentVariables, RefuseWhatHasNothingToCorrelate) {
    struct Case {
        int line;
        std::vector<OptionalValues> items;
    };
    const std::vector<Case> cases = {
        {__LINE__, {}},
        {__LINE__, {item1}},
        {__LINE__, {{}, {}, {}}},
        {__LINE__, {item1, item2, {1, 2}}},
        {__LINE__, {item1, item2, OptionalValues(8, 0.1)}},
        {__LINE__, {{1, 2, 3}, {1, std::nullopt, 4}, {3, 1, 2}}},
    };
    for (const Case& each : cases) {
        const std::vector<NumericColumn> items = columns(each.items);
        EXPECT_FALSE(PrincipalComponentsAnalyzer::analyze(items)) << each.line;
        EXPECT_FALSE(FactorAnalyzer::analyze(items, 1)) << each.line;
        EXPECT_FALSE(OmegaReliabilityAnalyzer::analyze(items)) << each.line;
    }
    const std::vector<NumericColumn> items = columns({item1, item2, item3});
    EXPECT_FALSE(FactorAnalyzer::analyze(items, 0));
    EXPECT_FALSE(FactorAnalyzer::analyze(items, 3));
    EXPECT_TRUE(FactorAnalyzer::analyze(items, 2));
}

TEST(LatentVariables, SayWhatTheirSampleIsGoodFor) {
    const std::string few = "Fewer than three complete cases are available.";
    const std::string unstable =
        "Cases used is below 100; latent-variable estimates are unstable at this sample size.";
    const std::string perItem = "Fewer than five cases per item; results are descriptive only.";
    struct Case {
        int line;
        std::int64_t items;
        std::int64_t cases;
        Texts obstacles;
        Texts cautions;
    };
    const std::vector<Case> table = {
        {__LINE__, 1, 200, {"Omega needs at least two item columns."}, {}},
        {__LINE__, 0, 2, {"Omega needs at least two item columns.", few}, {}},
        {__LINE__, 2, 2, {few}, {perItem}},
        {__LINE__, 2, 99, {}, {unstable}},
        {__LINE__, 20, 99, {}, {unstable, perItem}},
        {__LINE__, 20, 100, {}, {}},
        {__LINE__, 21, 104, {}, {perItem}},
    };
    for (const Case& each : table) {
        const AnalysisReadiness readiness =
            LatentVariableSupport::readiness("Omega", each.items, 300, each.cases);
        EXPECT_EQ(obstacles(readiness), each.obstacles) << each.line;
        EXPECT_EQ(cautions(readiness), each.cautions) << each.line;
        EXPECT_EQ(readiness.validCases, each.cases) << each.line;
        EXPECT_EQ(readiness.totalRows, 300) << each.line;
    }
}

TEST(PrincipalComponentsAnalyzer, HoldsTheEigenvaluesOfDependentItemsAtZero) {
    const auto result = PrincipalComponentsAnalyzer::analyze(
        columns({item1, item2, item1, negated(item2)}), {.computeScores = true});
    ASSERT_TRUE(result);
    EXPECT_GE(result->eigenvalues.back(), 0.0);
    EXPECT_TRUE(closeTo(result->cumulativeProportion.back(), 1.0));
    EXPECT_EQ(result->kaiserComponentCount, 1);
    ASSERT_EQ(result->componentScores->size(), 8U);
    double squares = 0.0;
    for (const std::vector<double>& row : *result->componentScores) {
        squares += row[0] * row[0];
    }
    EXPECT_TRUE(closeTo(squares / 7.0, result->eigenvalues[0]));
    EXPECT_FALSE(PrincipalComponentsAnalyzer::analyze(columns({item1, item2}))->componentScores);
}

TEST(PrincipalComponentsAnalyzer, UsesTheRowsInWhichEveryItemIsAnswered) {
    OptionalValues gap = item1;
    gap.insert(gap.begin() + 3, std::nullopt);
    OptionalValues other = item2;
    other.insert(other.begin() + 3, 99.0);
    const auto with = PrincipalComponentsAnalyzer::analyze(columns({gap, other}));
    const auto without = PrincipalComponentsAnalyzer::analyze(columns({item1, item2}));
    EXPECT_EQ(with->eigenvalues, without->eigenvalues);
    EXPECT_EQ(with->casesUsed, 8);
    EXPECT_EQ(with->readiness->totalRows, 9);
}

TEST(FactorAnalyzer, TurnsNothingWithOneFactorAndTellsOfCommunalitiesAboveOne) {
    const auto result =
        FactorAnalyzer::analyze(columns({item1, negated(item2), negated(item3)}), 1);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->varimaxLoadings, result->loadings);
    EXPECT_GT(result->communalities[0], 1.0001);
    EXPECT_EQ(result->uniquenesses[0], 0.0);
    EXPECT_TRUE(closeTo(result->communalities[1] + result->uniquenesses[1], 1.0));
    EXPECT_TRUE(cautions(*result->readiness).back().starts_with("A Heywood case occurred: "));
}

TEST(PrincipalAxis, StartsWithoutAnInverseAtTheLargestCorrelations) {
    const std::array<double, 9> singular = {1.0, 1.0, 0.5, 1.0, 1.0, 0.5, 0.5, 0.5, 1.0};
    const auto solution = PrincipalAxis::extract(singular, 3, 1, 1e-7);
    ASSERT_TRUE(solution);
    EXPECT_TRUE(solution->converged);
    EXPECT_TRUE(closeTo(solution->communalities[0], 1.0, {.absolute = 1e-5}));
    EXPECT_TRUE(closeTo(solution->communalities[2], 0.25, {.absolute = 1e-5}));
}

TEST(VarimaxRotation, FindsTheSimpleStructureAndItsSigns) {
    const double c = std::cos(0.4);
    const double s = std::sin(0.4);
    std::vector<std::vector<double>> turned;
    for (const auto& [x, y] :
         {std::array{-0.9, 0.0}, {-0.8, 0.0}, {0.0, 0.7}, {0.0, 0.6}, {0, 0}}) {
        turned.push_back({c * x - s * y, s * x + c * y});
    }
    const auto rotated = varimaxRotation(turned);
    const std::vector<std::vector<double>> expected = {
        {0.9, 0.0}, {0.8, 0.0}, {0.0, 0.7}, {0.0, 0.6}, {0.0, 0.0}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        for (std::size_t k = 0; k < 2; ++k) {
            EXPECT_TRUE(closeTo(rotated[i][k], expected[i][k], {.absolute = 1e-9})) << i << k;
        }
    }
    EXPECT_TRUE(varimaxRotation({}).empty());
}

TEST(OmegaReliabilityAnalyzer, ComparesItselfWithAlpha) {
    struct Case {
        int line;
        std::vector<OptionalValues> items;
        std::string note;
    };
    const std::vector<Case> cases = {
        {__LINE__,
         {item1, item1},
         "Omega and alpha agree here, consistent with near-equal loadings."},
        {__LINE__,
         {item1, item2, item4},
         "Omega exceeds alpha, consistent with unequal loadings where alpha underestimates "
         "reliability."},
    };
    for (const Case& each : cases) {
        const auto result = OmegaReliabilityAnalyzer::analyze(columns(each.items));
        ASSERT_TRUE(result) << each.line;
        ASSERT_EQ(result->reportingNotes.size(), 4U) << each.line;
        EXPECT_EQ(result->reportingNotes.back(), each.note) << each.line;
    }
}

TEST(OmegaReliabilityAnalyzer, TurnsLoadingsThatAreMostlyNegative) {
    // The first item loads highest and would be positive by the rule for eigenvectors.
    const auto turned =
        OmegaReliabilityAnalyzer::analyze(columns({item1, negated(item2), negated(item3)}));
    ASSERT_TRUE(turned);
    EXPECT_LT(turned->loadings[0], 0.0);
    EXPECT_GT(turned->loadings[1], 0.0);
    // Half of them positive is enough.
    const auto even = OmegaReliabilityAnalyzer::analyze(
        columns({item1, negated(item2), negated(item3), negated(item4)}));
    EXPECT_GT(even->loadings[0], 0.0);
}

}  // namespace

}  // namespace sorvane
