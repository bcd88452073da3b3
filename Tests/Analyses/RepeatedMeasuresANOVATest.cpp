#include "SorvaneCore/Analyses/Factorial/RepeatedMeasuresANOVA.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::cautions;
using test::closeTo;
using test::obstacles;
using Texts = std::vector<std::string>;
using Conditions = std::vector<test::OptionalValues>;

std::optional<RMANOVAResult> compared(const Conditions& conditions) {
    std::vector<NumericColumn> columns;
    Texts names;
    for (const test::OptionalValues& condition : conditions) {
        columns.push_back(test::plainColumn(condition));
        names.push_back("c" + std::to_string(columns.size()));
    }
    return RepeatedMeasuresANOVA::test(columns, names);
}

TEST(RepeatedMeasuresANOVA, IsThePairedTestForTwoConditions) {
    const auto result = compared({{3, 5, 4, 8, std::nullopt}, {4, 9, 5, 9, 1}});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->n, 4);
    EXPECT_TRUE(closeTo(result->f, std::pow(result->pairwise[0].t, 2.0)));
    EXPECT_TRUE(closeTo(result->pValue, result->pairwise[0].pValue));
    EXPECT_EQ(result->pairwise[0].meanDifference, -1.75);
    EXPECT_EQ(result->mauchlyW, 1.0);
    EXPECT_EQ(result->mauchlyChiSquare, 0.0);
    EXPECT_EQ(result->mauchlyDF, 0);
    EXPECT_EQ(result->mauchlyP, 1.0);
    EXPECT_TRUE(result->sphericityAssumed);
    EXPECT_EQ(result->greenhouseGeisserEpsilon, 1.0);
    EXPECT_EQ(result->huynhFeldtEpsilon, 1.0);
    EXPECT_EQ(result->ggP, result->pValue);
    const Texts expected = {
        "1 subject(s) were dropped because they were missing a measurement in at least one "
        "condition. Repeated-measures ANOVA uses only subjects with complete data across all "
        "conditions.",
        "Only 4 complete subjects. Mauchly's test and the F test are imprecise with a small "
        "sample; treat this as exploratory."};
    EXPECT_EQ(cautions(result->readiness), expected);
}

TEST(RepeatedMeasuresANOVA, DoesNotDependOnTheScaleOfTheValues) {
    std::mt19937_64 random(2);
    Conditions conditions(4);
    for (int subject = 0; subject < 30; ++subject) {
        const auto level = static_cast<double>(random() % 20);
        double spread = 3.0;
        for (test::OptionalValues& condition : conditions) {
            condition.emplace_back(level + spread * static_cast<double>(random() % 11));
            spread *= 2.0;
        }
    }
    const auto plain = compared(conditions);
    ASSERT_TRUE(plain);
    EXPECT_LT(plain->mauchlyP, 0.0005);
    EXPECT_FALSE(plain->sphericityAssumed);
    EXPECT_EQ(cautions(plain->readiness),
              (Texts{"Sphericity is violated (Mauchly p = 0.000). Use the Greenhouse-Geisser or "
                     "Huynh-Feldt corrected p value, not the uncorrected one."}));
    EXPECT_GT(plain->greenhouseGeisserEpsilon, 1.0 / 3.0);
    EXPECT_LT(plain->greenhouseGeisserEpsilon, plain->huynhFeldtEpsilon);
    for (const double factor : {1e-13, 1e9}) {
        Conditions scaled = conditions;
        for (test::OptionalValues& condition : scaled) {
            for (std::optional<double>& value : condition) {
                *value *= factor;
            }
        }
        const auto result = compared(scaled);
        EXPECT_TRUE(closeTo(result->f, plain->f, {.relative = 1e-10}));
        EXPECT_TRUE(closeTo(result->mauchlyW, plain->mauchlyW, {.relative = 1e-10}));
        EXPECT_TRUE(closeTo(result->huynhFeldtEpsilon, plain->huynhFeldtEpsilon));
    }
}

TEST(RepeatedMeasuresANOVA, HasNoMauchlyForCollinearConditions) {
    // The third is the mean of the others; so are fewer subjects than conditions.
    for (const Conditions& conditions :
         {Conditions{{1.1, 2.3, 3.2, 5.7}, {2.2, 2.9, 4.4, 4.1}, {1.65, 2.6, 3.8, 4.9}},
          Conditions{{1.1, 2.3}, {2.2, 2.9}, {1.6, 2.4}}}) {
        const auto result = compared(conditions);
        ASSERT_TRUE(result);
        EXPECT_TRUE(std::isnan(result->mauchlyW));
        EXPECT_TRUE(std::isnan(result->mauchlyP));
        EXPECT_FALSE(result->sphericityAssumed);
        EXPECT_TRUE(std::isfinite(result->ggP));
        EXPECT_EQ(cautions(result->readiness).back(),
                  "Mauchly's sphericity test could not be computed; the Greenhouse-Geisser "
                  "corrected p value is used as the conservative default.");
    }
}

TEST(RepeatedMeasuresANOVA, IsBlockedWithoutErrorVariance) {
    struct Case {
        int line;
        Conditions conditions;
        std::string obstacle;
    };
    const std::string same =
        "There is no variation across conditions, so the repeated-measures F cannot be computed.";
    const std::string separate =
        "The within-subject error variance is zero, so the F ratio is undefined (the conditions "
        "separate every subject perfectly). This usually means too few subjects or duplicated "
        "rows; check the data.";
    const std::vector<Case> cases = {
        {__LINE__, {{0.1, 0.7, 0.3}, {0.1, 0.7, 0.3}}, same},
        {__LINE__, {{5.5, 5.5}, {5.5, 5.5}, {5.5, 5.5}}, same},
        {__LINE__, {{0.1, 0.7, 0.3}, {0.4, 1.0, 0.6}, {1.2, 1.8, 1.4}}, separate},
        {__LINE__, {{0.1, 0.2, 0.3}, {0.2, 0.3, 0.4}, {0.1, 0.2, 0.1 + 0.2}}, separate},
    };
    for (const Case& each : cases) {
        const auto result = compared(each.conditions);
        ASSERT_TRUE(result) << each.line;
        EXPECT_TRUE(std::isnan(result->f)) << each.line;
        EXPECT_TRUE(std::isnan(result->ggP)) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(std::isnan(result->mauchlyW) || result->k == 2) << each.line;
        for (const RMPairwise& pair : result->pairwise) {
            EXPECT_FALSE(std::isfinite(pair.t)) << each.line;
            EXPECT_EQ(std::isnan(pair.t), pair.meanDifference == 0.0) << each.line;
        }
    }
}

TEST(RepeatedMeasuresANOVA, IsAbsentWithoutSubjectsOrConditions) {
    EXPECT_FALSE(compared({}));
    EXPECT_FALSE(compared({{1, 2, 3}}));
    EXPECT_FALSE(compared({{1, 2}, {3, std::nullopt}}));
    EXPECT_FALSE(compared({{1, 2, 3}, {3, 4}}));
    EXPECT_FALSE(compared({{1, HUGE_VAL, 2}, {3, 4, 5}}));
}

}  // namespace

}  // namespace sorvane
