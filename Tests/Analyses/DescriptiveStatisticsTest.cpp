#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::closeTo;
using Values = std::vector<double>;

std::vector<std::string> messages(const AnalysisReadiness& readiness) {
    std::vector<std::string> result;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        result.push_back(issue.message);
    }
    return result;
}

TEST(AnalysisReadiness, TakesTheWorstStatusWhateverTheOrder) {
    using Status = AnalysisReadinessStatus;
    const auto caution = AnalysisReadinessIssue::caution("c");
    const auto blocked = AnalysisReadinessIssue::blocked("b");
    EXPECT_EQ(AnalysisReadiness::of("m", 1, 1, {}).status, Status::ready);
    EXPECT_EQ(AnalysisReadiness::of("m", 1, 1, {caution}).status, Status::caution);
    EXPECT_EQ(AnalysisReadiness::of("m", 1, 1, {caution, blocked}).status, Status::blocked);
    EXPECT_EQ(AnalysisReadiness::of("m", 1, 1, {blocked, caution}).status, Status::blocked);
}

TEST(DescriptiveStatistics, AreAbsentBelowTheirSmallestSample) {
    using namespace DescriptiveStatistics;
    EXPECT_FALSE(mean(Values{}));
    EXPECT_FALSE(median(Values{}));
    EXPECT_FALSE(variance(Values{4.0}));
    EXPECT_EQ(variance(Values{4.0}, VarianceDenominator::population), 0.0);
    EXPECT_FALSE(standardError(Values{4.0}));
    EXPECT_FALSE(quartiles(Values{4.0}));
    EXPECT_FALSE(skewness(Values{1.0, 2.0}));
    EXPECT_FALSE(skewness(Values{2.0, 2.0, 2.0}));
    EXPECT_FALSE(mode(Values{1.0, 2.0, 3.0}));
    EXPECT_FALSE(confidenceIntervalForMean(Values{1.0, 2.0}, 1.0));
    EXPECT_FALSE(confidenceIntervalForMean(Values{1.0, 2.0}, 0.0));
}

TEST(DescriptiveStatistics, TakeQuartilesAsMediansOfHalves) {
    using DescriptiveStatistics::quartiles;
    EXPECT_EQ(quartiles(Values{5, 3, 1, 2, 4}), (Quartiles{.q1 = 1.5, .q3 = 4.5}));
    EXPECT_EQ(quartiles(Values{1, 2, 3, 4}), (Quartiles{.q1 = 1.5, .q3 = 3.5}));
    EXPECT_EQ(quartiles(Values{1, 2, 9}), (Quartiles{.q1 = 1.0, .q3 = 9.0}));
    EXPECT_EQ(DescriptiveStatistics::median(Values{4, 1, 3, 2}), 2.5);
}

TEST(DescriptiveStatistics, GiveAllModesAscending) {
    EXPECT_EQ(DescriptiveStatistics::mode(Values{3, 2, 2, 3, 1}), (Values{2, 3}));
    EXPECT_EQ(DescriptiveStatistics::mode(Values{0.0, -0.0, 1.0}), (Values{0.0}));
}

TEST(DescriptiveStatistics, KeepTheDigitsOfASmallSpreadOnALargeOffset) {
    Values small;
    Values shifted;
    for (int i = 0; i < 1000; ++i) {
        small.push_back(std::ldexp(static_cast<double>(i * i % 97), -20));
        shifted.push_back(small.back() + 1e9);
    }
    EXPECT_TRUE(closeTo(*DescriptiveStatistics::variance(shifted),
                        *DescriptiveStatistics::variance(small), {.relative = 1e-12}));
    EXPECT_TRUE(closeTo(*DescriptiveStatistics::summary(shifted).skewness,
                        *DescriptiveStatistics::summary(small).skewness, {.relative = 1e-7}));
}

TEST(DescriptiveStatistics, GiveEqualValuesNoVariance) {
    const Values same(1001, 0.1);
    EXPECT_EQ(DescriptiveStatistics::mean(same), 0.1);
    EXPECT_EQ(DescriptiveStatistics::variance(same), 0.0);
    EXPECT_EQ(DescriptiveStatistics::summary(same).variance, 0.0);
    EXPECT_FALSE(DescriptiveStatistics::summary(same).skewness);
}

TEST(DescriptiveStatistics, SummariseAllFormsAlike) {
    std::mt19937_64 random(3);
    const test::OptionalValues rows = test::randomAnswers(random, 700, 9, true);
    const DescriptiveOptions options{.variableName = "item", .confidenceLevel = 0.9};
    const DescriptiveSummary byRows = DescriptiveStatistics::summary(rows, options);
    EXPECT_EQ(DescriptiveStatistics::summary(test::codedColumn(rows), options), byRows);
    EXPECT_EQ(DescriptiveStatistics::summary(test::plainColumn(rows), options), byRows);

    const Values present = test::plainColumn(rows).present();
    EXPECT_EQ(byRows.validN, static_cast<std::int64_t>(present.size()));
    EXPECT_TRUE(closeTo(*byRows.mean, *DescriptiveStatistics::mean(present)));
    EXPECT_TRUE(closeTo(*byRows.variance, *DescriptiveStatistics::variance(present)));
    EXPECT_TRUE(closeTo(*byRows.skewness, *DescriptiveStatistics::skewness(present)));
    EXPECT_EQ(byRows.median, DescriptiveStatistics::median(present));
    EXPECT_EQ(byRows.modes, DescriptiveStatistics::mode(present));
    const auto interval = DescriptiveStatistics::confidenceIntervalForMean(present, 0.9);
    EXPECT_TRUE(closeTo(*byRows.confidenceIntervalLower, interval->lower));
}

TEST(DescriptiveStatistics, MergeDifferentTextsOfOneNumber) {
    const std::vector<std::string> cells = {"1", "1.0", " 1", "2", "NA", "x", "2"};
    const NumericColumn column(TextColumn::of(cells));
    const DescriptiveSummary summary = DescriptiveStatistics::summary(column);
    EXPECT_EQ(summary.totalN, 7);
    EXPECT_EQ(summary.missingN, 2);
    EXPECT_EQ(summary.modes, (Values{1.0}));
    EXPECT_EQ(summary.median, 1.0);
}

TEST(DescriptiveStatistics, SayWhatTheUserMustKnow) {
    const std::string exploratory =
        "Valid N is below 30; treat descriptive shape checks as exploratory.";
    struct Case {
        int line;
        std::size_t valid;
        std::size_t missing;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases = {
        {__LINE__,
         0,
         2,
         {"No non-missing numeric values are available.", "2 values were excluded as missing."}},
        {__LINE__,
         1,
         0,
         {"Only one valid value is available; spread and confidence intervals cannot be "
          "estimated."}},
        {__LINE__, 2, 1, {exploratory, "1 values were excluded as missing."}},
        {__LINE__, 29, 0, {exploratory}},
        {__LINE__, 30, 0, {}},
    };
    for (const Case& c : cases) {
        test::OptionalValues rows(c.valid, 1.5);
        rows.resize(c.valid + c.missing);
        const DescriptiveSummary summary = DescriptiveStatistics::summary(rows);
        EXPECT_EQ(messages(summary.readiness), c.expected) << "line " << c.line;
        EXPECT_EQ(summary.readiness.totalRows, static_cast<std::int64_t>(rows.size()));
        EXPECT_EQ(summary.mean.has_value(), c.valid > 0) << "line " << c.line;
        EXPECT_EQ(summary.variance.has_value(), c.valid > 1) << "line " << c.line;
    }
}

TEST(DescriptiveStatistics, CountTextsByFrequencyThenText) {
    const std::vector<std::string> cells = {"b", "N/A", "a", "", "b", " a", "c", "a", " null "};
    const std::vector<FrequencyTableEntry> expected = {{"a", 2}, {"b", 2}, {" a", 1}, {"c", 1}};
    EXPECT_EQ(DescriptiveStatistics::frequencyTable(cells), expected);
    EXPECT_EQ(DescriptiveStatistics::frequencyTable(*TextColumn::of(cells)), expected);
}

TEST(DescriptiveStatistics, NameSummariesInOrder) {
    const std::vector<NumericColumn> columns = {test::plainColumn({1.0, 2.0}),
                                                test::plainColumn({std::nullopt})};
    const std::vector<std::string> names = {"first"};
    const auto summaries = DescriptiveStatistics::summaries(columns, names);
    ASSERT_EQ(summaries.size(), 2U);
    EXPECT_EQ(summaries[0].variableName, "first");
    EXPECT_EQ(summaries[0].methodMetadata.variableName, "first");
    EXPECT_FALSE(summaries[1].variableName);
    EXPECT_EQ(summaries[1].readiness.status, AnalysisReadinessStatus::blocked);
}

TEST(DescriptiveStatistics, HaveNoSkewnessWhereTheSpreadOverflows) {
    const Values values{1e200, 2e200, 3e200, -9e200};
    const DescriptiveSummary summary = DescriptiveStatistics::summary(values);
    EXPECT_TRUE(std::isinf(*summary.standardDeviation));
    EXPECT_TRUE(std::isinf(*DescriptiveStatistics::standardDeviation(values)));
    EXPECT_FALSE(summary.skewness);
    EXPECT_FALSE(DescriptiveStatistics::skewness(values));
}

TEST(DescriptiveStatistics, SurviveValuesThatAreNotFinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const DescriptiveSummary summary =
        DescriptiveStatistics::summary(Values{1.0, nan, infinity, -infinity, nan});
    EXPECT_TRUE(std::isnan(*summary.mean));
    EXPECT_FALSE(summary.skewness);
    EXPECT_TRUE(DescriptiveStatistics::median(Values{nan, 1.0, nan, 3.0, 2.0}));
}

}  // namespace

}  // namespace sorvane
