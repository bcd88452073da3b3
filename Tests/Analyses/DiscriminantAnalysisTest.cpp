#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"

#include <cmath>
#include <limits>
#include <random>

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

std::optional<DiscriminantResult> fitted(const std::vector<OptionalValues>& variables,
                                         const Texts& groups,
                                         DiscriminantPriors priors = {}) {
    std::vector<NumericColumn> columns;
    DiscriminantOptions options{.groupFactorName = "group", .priors = priors};
    for (const OptionalValues& variable : variables) {
        columns.push_back(test::plainColumn(variable));
        options.predictorNames.push_back("x" + std::to_string(columns.size()));
    }
    return DiscriminantAnalysis::fit(columns, *TextColumn::of(groups), options);
}

TEST(DiscriminantAnalysis, LeavesEachCaseOutAsARefitWould) {
    std::mt19937_64 random(7);
    std::vector<OptionalValues> variables(2, OptionalValues(24));
    Texts groups;
    for (std::size_t i = 0; i < 24; ++i) {
        groups.emplace_back(1, static_cast<char>('a' + (i % 5 == 4 ? 1 : i % 3)));
        for (OptionalValues& variable : variables) {
            variable[i] = static_cast<double>(random() % 97) + 9.0 * static_cast<double>(i % 3);
        }
    }
    const auto whole = fitted(variables, groups, DiscriminantPriors::equal);
    ASSERT_TRUE(whole);
    std::int64_t right = 0;
    for (std::size_t out = 0; out < 24; ++out) {
        std::vector<OptionalValues> others = variables;
        for (OptionalValues& variable : others) {
            variable[out] = std::nullopt;
        }
        const auto rule = fitted(others, groups, DiscriminantPriors::equal);
        // In the space of all functions the nearest centroid has the highest posterior.
        double nearest = std::numeric_limits<double>::infinity();
        std::string place;
        for (const DiscriminantGroup& group : rule->groups) {
            double distance = 0.0;
            for (std::size_t k = 0; k < rule->functions.size(); ++k) {
                const DiscriminantFunction& function = rule->functions[k];
                const double score = function.constant +
                                     function.rawCoefficients[0] * *variables[0][out] +
                                     function.rawCoefficients[1] * *variables[1][out];
                distance += (score - group.centroid[k]) * (score - group.centroid[k]);
            }
            if (distance < nearest) {
                nearest = distance;
                place = group.name;
            }
        }
        right += place == groups[out] ? 1 : 0;
    }
    EXPECT_TRUE(closeTo(whole->leaveOneOut.accuracy, static_cast<double>(right) / 24.0));
}

TEST(DiscriminantAnalysis, ScoresCasesAboutTheirCentroids) {
    const auto result = fitted({firstOutcome, secondOutcome}, twoGroups);
    ASSERT_TRUE(result);
    ASSERT_EQ(result->functions.size(), 1U);
    double squares = 0.0;
    for (const DiscriminantGroup& group : result->groups) {
        ASSERT_EQ(group.scores.front().size(), 4U);
        for (const double score : group.scores.front()) {
            squares += (score - group.centroid.front()) * (score - group.centroid.front());
        }
    }
    EXPECT_TRUE(closeTo(squares, 6.0));
}

TEST(DiscriminantAnalysis, PlacesTheOnlyCaseOfAGroupElsewhere) {
    Texts groups = twoGroups;
    groups[7] = "c";
    const auto result = fitted({firstOutcome, secondOutcome}, groups);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->leaveOneOut.counts[2][2], 0);
    EXPECT_EQ(result->leaveOneOut.groupAccuracy[2], 0.0);
    const Texts told = cautions(result->readiness);
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told[1],
              "The smallest group has 1 case(s) for 2 variables. With no more cases per group than "
              "variables, the coefficients fit chance features of the sample; treat this as "
              "exploratory.");
}

TEST(DiscriminantAnalysis, SaysWhatStandsInItsWay) {
    struct Case {
        int line;
        std::vector<OptionalValues> variables;
        Texts groups;
        std::string obstacle;
    };
    const std::string singular =
        "The within-groups covariance is singular (the variables are perfectly collinear within "
        "groups, or one does not vary there). Drop a redundant variable or collect more cases.";
    const std::vector<Case> cases = {
        {__LINE__,
         {firstOutcome, secondOutcome},
         Texts(8, "a"),
         "Discriminant analysis needs two or more groups; only 1 group(s) had complete data."},
        {__LINE__,
         {firstOutcome, secondOutcome},
         Texts(8, ""),
         "Discriminant analysis needs two or more groups; only 0 group(s) had complete data."},
        {__LINE__,
         {{1, 2, 3, 5}, {2, 1, 4, 4}},
         {"a", "a", "b", "b"},
         "Too few complete cases (4) for 2 variables across 2 groups. Collect more cases or reduce "
         "the number of variables."},
        {__LINE__, {firstOutcome, firstOutcome}, twoGroups, singular},
        {__LINE__, {firstOutcome, {1, 1, 1, 1, 2, 2, 2, 2}}, twoGroups, singular},
    };
    for (const Case& each : cases) {
        const auto result = fitted(each.variables, each.groups);
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(result->functions.empty()) << each.line;
    }
    EXPECT_FALSE(fitted({firstOutcome}, twoGroups));
    EXPECT_FALSE(fitted({firstOutcome, {1, 2}}, twoGroups));
}

}  // namespace

}  // namespace sorvane
