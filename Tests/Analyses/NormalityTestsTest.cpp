#include "SorvaneCore/Analyses/Basics/NormalityTests.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/StemAndLeaf.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::closeTo;
using Values = std::vector<double>;

/// Expected normal scores: as normal as a sample can look.
Values normalScores(std::size_t count) {
    Values values;
    for (std::size_t i = 1; i <= count; ++i) {
        values.push_back(
            inverseStandardNormalCDF(static_cast<double>(i) / static_cast<double>(count + 1)));
    }
    return values;
}

TEST(NormalityTests, AreAbsentOutsideTheirSampleSizes) {
    using namespace NormalityTests;
    EXPECT_FALSE(shapiroWilk(Values{1, 2}));
    EXPECT_TRUE(shapiroWilk(Values{1, 2, 4}));
    EXPECT_FALSE(lillieforsKS(Values{1, 2, 4}));
    EXPECT_TRUE(lillieforsKS(Values{1, 2, 4, 5}));
    EXPECT_TRUE(shapiroWilk(normalScores(5000)));
    EXPECT_FALSE(shapiroWilk(normalScores(5001)));
    EXPECT_TRUE(lillieforsKS(normalScores(5001)));
    EXPECT_FALSE(shapiroWilk(Values(9, 0.1)));
    EXPECT_FALSE(lillieforsKS(Values(9, 0.1)));
}

TEST(NormalityTests, CountOnlyFiniteValues) {
    const double infinity = HUGE_VAL;
    const Values finite = {1, 2, 4, 5, 3};
    const std::vector<std::optional<double>> rows = {1.0, NAN,      2.0, std::nullopt,
                                                     4.0, infinity, 5.0, 3.0};
    const NormalityReport report = NormalityTests::report(rows);
    EXPECT_EQ(report.shapiroWilk, NormalityTests::shapiroWilk(finite));
    EXPECT_EQ(report.lillieforsKS, NormalityTests::lillieforsKS(finite));
    EXPECT_EQ(report.shapiroWilk->n, 5);
}

TEST(NormalityTests, DoNotDependOnTheOffset) {
    Values values = {3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7};
    const auto before = NormalityTests::shapiroWilk(values);
    for (double& value : values) {
        value += 1e12;
    }
    const auto after = NormalityTests::shapiroWilk(values);
    EXPECT_TRUE(closeTo(after->statistic, before->statistic, {.relative = 1e-9}));
    EXPECT_TRUE(closeTo(after->pValue, before->pValue, {.relative = 1e-9}));
}

TEST(NormalityTests, HoldTheirProbabilities) {
    const auto best = NormalityTests::shapiroWilk(Values{-1, 0, 1});
    EXPECT_TRUE(closeTo(best->statistic, 1.0));
    EXPECT_TRUE(closeTo(best->pValue, 1.0));
    const auto worst = NormalityTests::shapiroWilk(Values{0, 0, 1});
    EXPECT_TRUE(closeTo(worst->statistic, 0.75));
    EXPECT_TRUE(closeTo(worst->pValue, 0.0, {.absolute = 1e-8}));
    Values outlier(40, 0.0);
    outlier.back() = 1e6;
    EXPECT_LT(NormalityTests::shapiroWilk(outlier)->pValue, 1e-12);
    EXPECT_EQ(NormalityTests::lillieforsKS(outlier)->pValue, 0.0);
    EXPECT_EQ(NormalityTests::lillieforsKS(normalScores(50))->pValue, 1.0);
}

TEST(NormalityTests, WarnByTheSizeOfTheSample) {
    const std::string always =
        "Normality is an assumption check, not a goal. A non-significant result does not prove the "
        "data are normal.";
    const std::string low =
        "With N at 19, the test has low power to detect non-normality. Read the result as "
        "exploratory.";
    const std::string high =
        "With N at 300, this test is over-sensitive and may flag trivial departures from "
        "normality. Pair it with a histogram, Q-Q plot, and skewness or kurtosis.";
    struct Case {
        int line;
        std::size_t count;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases = {{__LINE__, 19, {always, low}},
                                     {__LINE__, 20, {always}},
                                     {__LINE__, 299, {always}},
                                     {__LINE__, 300, {always, high}}};
    for (const Case& c : cases) {
        const auto result = NormalityTests::lillieforsKS(normalScores(c.count));
        EXPECT_EQ(result->readiness.status, AnalysisReadinessStatus::caution);
        std::vector<std::string> messages;
        for (const AnalysisReadinessIssue& issue : result->readiness.issues) {
            messages.push_back(issue.message);
        }
        EXPECT_EQ(messages, c.expected) << "line " << c.line;
    }
    Values skewed;
    for (int i = 0; i < 25; ++i) {
        skewed.push_back(std::exp(0.3 * i));
    }
    const auto result = NormalityTests::shapiroWilk(skewed);
    EXPECT_EQ(result->readiness.issues.back().message,
              "p is below 0.05, so the data depart from normality at this sample size. Consider "
              "whether the departure is large enough to matter for your analysis.");
    EXPECT_EQ(result->readiness.minimumRequired,
              "at least 3 values (Shapiro-Wilk supports n 3 to 5000)");
}

TEST(StemAndLeaf, IsAbsentWithoutARange) {
    EXPECT_FALSE(StemAndLeaf::plot(Values{3}));
    EXPECT_FALSE(StemAndLeaf::plot(Values{3, 3, 3}));
    EXPECT_FALSE(StemAndLeaf::plot(Values{0, 0}));
    EXPECT_FALSE(StemAndLeaf::plot(Values{3, HUGE_VAL}));
    EXPECT_FALSE(StemAndLeaf::plot(Values{-1.7e308, 1.7e308}));
}

TEST(StemAndLeaf, KeepsEmptyStemsAndSortsLeaves) {
    const auto plot = StemAndLeaf::plot(Values{47, 12, 19, 11});
    const std::vector<StemAndLeafRow> rows = {{1, {1, 2, 9}}, {2, {}}, {3, {}}, {4, {7}}};
    EXPECT_EQ(plot->rows, rows);
    EXPECT_EQ(plot->stemUnit, 10.0);
    EXPECT_EQ(plot->leafUnit, 1.0);
    EXPECT_EQ(plot->n, 4);
}

TEST(StemAndLeaf, TruncatesQuotientsAsTheyStandInDoubles) {
    const auto tenths = StemAndLeaf::plot(Values{0.3, 1.2, 1.9, 2.3, 2.8, 4.1});
    const std::vector<StemAndLeafRow> ones = {
        {0, {2}}, {1, {1, 8}}, {2, {2, 7}}, {3, {}}, {4, {0}}};
    EXPECT_EQ(tenths->rows, ones) << "2.3 / 0.1 is a little less than 23";
}

TEST(StemAndLeaf, SharesStemZeroAcrossTheSign) {
    const auto plot = StemAndLeaf::plot(Values{-15, -5, 5, 12});
    const std::vector<StemAndLeafRow> rows = {{-2, {}}, {-1, {5}}, {0, {5, 5}}, {1, {2}}};
    EXPECT_EQ(plot->rows, rows);
    const auto below = StemAndLeaf::plot(Values{-15, -5});
    const std::vector<StemAndLeafRow> rowsBelow = {{-2, {}}, {-1, {5}}};
    EXPECT_EQ(below->rows, rowsBelow) << "a value just below zero has no row of its own";
}

TEST(StemAndLeaf, RaisesTheUnitForAWideRange) {
    const auto plot = StemAndLeaf::plot(Values{-9.5, 9.5});
    EXPECT_EQ(plot->stemUnit, 10.0) << "19 stems of 1 are too many";
    EXPECT_EQ(StemAndLeaf::plot(Values{-8, 8})->stemUnit, 1.0);
}

}  // namespace

}  // namespace sorvane
