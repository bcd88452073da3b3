#include "SorvaneCore/Analyses/MultivariateANOVA.h"

#include <cmath>

#include <gtest/gtest.h>

#include "Tests/Analyses/EightCases.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::cautions;
using test::closeTo;
using test::firstOutcome;
using test::obstacles;
using test::secondOutcome;
using test::twoGroups;
using Texts = std::vector<std::string>;
using test::OptionalValues;

std::optional<MANOVAResult> compared(const std::vector<OptionalValues>& outcomes,
                                     const Texts& groups) {
    std::vector<NumericColumn> columns;
    MANOVAOptions options{.groupFactorName = "group"};
    for (const OptionalValues& outcome : outcomes) {
        columns.push_back(test::plainColumn(outcome));
        options.dependentNames.push_back("y" + std::to_string(columns.size()));
    }
    return MultivariateANOVA::test(columns, *TextColumn::of(groups), options);
}

TEST(MultivariateANOVA, AgreesOnFForTwoGroups) {
    const auto result = compared({firstOutcome, secondOutcome}, twoGroups);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->groups, (Texts{"b", "a"}));
    EXPECT_TRUE(closeTo(result->pillai.approxF, result->wilks.approxF));
    EXPECT_TRUE(closeTo(result->hotellingLawley.approxF, result->wilks.approxF));
    EXPECT_TRUE(closeTo(result->roy.approxF, result->wilks.approxF));
    EXPECT_EQ(result->wilks.dfNumerator, 2.0);
    EXPECT_EQ(result->wilks.dfDenominator, 5.0);
    // Hotelling's T2 is 8 times the distance between the means: F = T2 (8 - 2 - 1) / (2 * 6).
    // Within groups the squares are 2 and 2, 8.75 and 8.75, the products 1 and -2.
    const double e11 = 4.0;
    const double e22 = 17.5;
    const double e12 = -1.0;
    const double squared =
        (16.0 * e22 - 2.0 * 4.0 * 1.5 * e12 + 2.25 * e11) / (e11 * e22 - e12 * e12);
    EXPECT_TRUE(closeTo(result->hotellingLawley.statistic, 2.0 * squared));
    EXPECT_TRUE(closeTo(result->wilks.approxF, 2.0 * squared * 5.0 / 2.0));
}

TEST(MultivariateANOVA, DoesNotDependOnUnitsOrOffsets) {
    OptionalValues scaled;
    for (const std::optional<double>& value : firstOutcome) {
        scaled.emplace_back(1e-9 * *value);
    }
    OptionalValues moved;
    for (const std::optional<double>& value : secondOutcome) {
        moved.emplace_back(1e6 + *value);
    }
    const auto plain = compared({firstOutcome, secondOutcome}, twoGroups);
    const auto other = compared({scaled, moved}, twoGroups);
    EXPECT_TRUE(closeTo(other->pillai.statistic, plain->pillai.statistic, {.relative = 1e-9}));
}

TEST(MultivariateANOVA, TellsOfThinGroups) {
    OptionalValues gaps = firstOutcome;
    gaps[0] = std::nullopt;
    const auto result = compared({gaps, secondOutcome}, twoGroups);
    ASSERT_TRUE(result);
    const Texts expected = {
        "1 row(s) were dropped because an outcome or the group was missing.",
        "Error degrees of freedom are low (5); the F approximations are imprecise on a small "
        "sample.",
        "The smallest group has only 3 cases. The MANOVA test statistics are unstable with thin "
        "cells; treat this as exploratory."};
    EXPECT_EQ(cautions(result->readiness), expected);
    gaps[1] = std::nullopt;
    EXPECT_EQ(cautions(compared({gaps, secondOutcome}, twoGroups)->readiness).back(),
              "The smallest group has 2 case(s) for 2 outcomes. With fewer cases per group than "
              "outcomes plus one, the within-groups covariance is unstable; treat this as "
              "exploratory.");
}

TEST(MultivariateANOVA, SaysWhatStandsInItsWay) {
    struct Case {
        int line;
        std::vector<OptionalValues> outcomes;
        Texts groups;
        std::string obstacle;
    };
    OptionalValues sum;
    for (std::size_t i = 0; i < firstOutcome.size(); ++i) {
        sum.emplace_back(0.3 * *firstOutcome[i] + 0.7 * *secondOutcome[i]);
    }
    const std::string singular =
        "The within-groups error matrix is singular (the outcomes are perfectly collinear within "
        "groups). Drop a redundant outcome or collect more cases.";
    const std::vector<Case> cases = {
        {__LINE__,
         {firstOutcome, secondOutcome},
         Texts(8, "a"),
         "A MANOVA needs two or more groups; only 1 group(s) had complete data."},
        {__LINE__,
         {firstOutcome, secondOutcome},
         Texts(8, "NA"),
         "A MANOVA needs two or more groups; only 0 group(s) had complete data."},
        {__LINE__,
         {{1, 2, 3, 5}, {2, 1, 4, 4}},
         {"a", "a", "b", "b"},
         "Too few complete cases (4) for 2 outcomes across 2 groups. The within-groups error "
         "matrix cannot be inverted; collect more cases or reduce the number of outcomes."},
        {__LINE__, {firstOutcome, secondOutcome, sum}, twoGroups, singular},
        {__LINE__, {firstOutcome, OptionalValues(8, 0.1)}, twoGroups, singular},
    };
    for (const Case& each : cases) {
        const auto result = compared(each.outcomes, each.groups);
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(std::isnan(result->wilks.statistic)) << each.line;
        EXPECT_EQ(result->wilks.name, "Wilks' lambda") << each.line;
    }
    EXPECT_FALSE(compared({firstOutcome}, twoGroups));
    EXPECT_FALSE(compared({firstOutcome, {1, 2}}, twoGroups));
}

}  // namespace

}  // namespace sorvane
