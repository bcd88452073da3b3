#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/Basics/CronbachAlpha.h"
#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Analyses/Reliability/ReliabilityScaleTables.h"
#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::closeTo;
using test::OptionalValues;
using Rule = ReliabilityMissingDataRule;
using Columns = std::vector<std::vector<double>>;

ReliabilityOptions optionsFor(std::size_t itemCount, Rule rule = Rule::listwiseDeletion) {
    ReliabilityOptions options{.constructName = "C", .missingDataRule = rule};
    for (std::size_t j = 0; j < itemCount; ++j) {
        options.itemNames.push_back("q" + NumberText::integer(static_cast<std::int64_t>(j)));
    }
    return options;
}

ReliabilityResult analyzed(const std::vector<OptionalValues>& items,
                           const ReliabilityOptions& options) {
    std::vector<NumericColumn> columns;
    for (const OptionalValues& item : items) {
        columns.push_back(test::plainColumn(item));
    }
    return ReliabilityAnalyzer::analyze(columns, options);
}

ItemMatrix matrixOf(const std::vector<OptionalValues>& items) {
    ItemMatrix matrix{.rows = items[0].size(), .items = items.size()};
    for (std::size_t i = 0; i < matrix.rows; ++i) {
        for (const OptionalValues& item : items) {
            matrix.cells.push_back(item[i]);
        }
    }
    return matrix;
}

/// The prepared items row by row, as the rules are worded.
Columns preparedByRows(const std::vector<OptionalValues>& items,
                       const ReliabilityOptions& options) {
    Columns result(items.size());
    for (std::size_t i = 0; i < items[0].size(); ++i) {
        std::vector<double> present;
        for (const OptionalValues& item : items) {
            if (item[i]) {
                present.push_back(*item[i]);
            }
        }
        if (!keepsRow(options.missingDataRule, present.size(), items.size(),
                      options.minimumItemCompletion)) {
            continue;
        }
        for (std::size_t j = 0; j < items.size(); ++j) {
            result[j].push_back(items[j][i] ? *items[j][i] : *DescriptiveStatistics::mean(present));
        }
    }
    return result;
}

std::vector<double> sumsWithout(const Columns& items, std::size_t deleted) {
    std::vector<double> sums(items[0].size(), 0.0);
    for (std::size_t j = 0; j < items.size(); ++j) {
        for (std::size_t i = 0; i < sums.size() && j != deleted; ++i) {
            sums[i] += items[j][i];
        }
    }
    return sums;
}

std::optional<double> alphaWithout(const Columns& items, std::size_t deleted) {
    std::vector<NumericColumn> rest;
    for (std::size_t j = 0; j < items.size(); ++j) {
        if (j != deleted) {
            rest.push_back(test::plainColumn({items[j].begin(), items[j].end()}));
        }
    }
    return CronbachAlpha::of(rest);
}

testing::AssertionResult sameOptional(std::optional<double> got, std::optional<double> expected) {
    if (got.has_value() != expected.has_value()) {
        return testing::AssertionFailure() << "present in one only";
    }
    return got ? closeTo(*got, *expected, {.relative = 1e-10, .absolute = 1e-12})
               : testing::AssertionSuccess();
}

void expectDefinition(const ReliabilityResult& result, const Columns& prepared) {
    const std::size_t k = prepared.size();
    ASSERT_EQ(result.casesUsed, static_cast<std::int64_t>(prepared[0].size()));
    EXPECT_TRUE(sameOptional(result.alpha, alphaWithout(prepared, k)));
    for (std::size_t j = 0; j < k; ++j) {
        const ReliabilityItemStatistic& item = result.itemStatistics[j];
        EXPECT_TRUE(sameOptional(item.mean, DescriptiveStatistics::mean(prepared[j])));
        EXPECT_TRUE(sameOptional(item.standardDeviation,
                                 DescriptiveStatistics::standardDeviation(prepared[j])));
        EXPECT_TRUE(sameOptional(item.alphaIfDeleted, alphaWithout(prepared, j)));
        const auto r = RelationshipTests::pearson(prepared[j], sumsWithout(prepared, j));
        EXPECT_TRUE(sameOptional(item.correctedItemTotalCorrelation,
                                 r ? std::optional(r->r) : std::nullopt));
        for (std::size_t i = 0; i < k; ++i) {
            const auto pair = RelationshipTests::pearson(prepared[i], prepared[j]);
            EXPECT_TRUE(sameOptional(
                result.interItemCorrelationMatrix[i][j],
                i == j ? std::optional(1.0) : (pair ? std::optional(pair->r) : std::nullopt)));
        }
    }
}

TEST(ReliabilityAnalyzer, AgreesWithItsDefinitionUnderEveryRule) {
    std::mt19937_64 random(41);
    for (const std::size_t count : {2U, 5U, 300U, 1500U}) {
        for (const std::size_t k : {2U, 5U, 9U}) {
            std::vector<OptionalValues> items;
            for (std::size_t j = 0; j < k; ++j) {
                items.push_back(test::randomAnswers(random, count, 5, true));
            }
            for (const Rule rule : {Rule::listwiseDeletion, Rule::availableItemMean,
                                    Rule::excludeIfMissingMoreThanThreshold}) {
                ReliabilityOptions options = optionsFor(k, rule);
                options.minimumItemCompletion = 0.6;
                const Columns prepared = preparedByRows(items, options);
                if (prepared[0].empty()) {
                    continue;
                }
                const ReliabilityResult result = analyzed(items, options);
                expectDefinition(result, prepared);
                EXPECT_EQ(ReliabilityAnalyzer::analyze(matrixOf(items), options), result);
                std::vector<NumericColumn> coded;
                for (const OptionalValues& item : items) {
                    coded.push_back(test::codedColumn(item));
                }
                EXPECT_EQ(ReliabilityAnalyzer::analyze(coded, options), result);
                EXPECT_EQ(ReliabilityAnalyzer::readiness(coded, options), result.readiness);
            }
        }
    }
}

TEST(ReliabilityAnalyzer, KeepsItsDigitsFarFromZeroAndFromTheFirstRows) {
    std::mt19937_64 random(43);
    std::vector<OptionalValues> items;
    Columns prepared(4);
    for (std::size_t j = 0; j < 4; ++j) {
        items.push_back(test::randomAnswers(random, 2000, 5, false));
        for (std::size_t i = 0; i < 2000; ++i) {
            *items[j][i] =
                *items[j][i] / 1024.0 + (i < 256 ? -1e9 : 1e9 - (i % 2 == 0 ? 1.0 : 0.0));
            prepared[j].push_back(*items[j][i]);
        }
    }
    expectDefinition(analyzed(items, optionsFor(4)), prepared);
    for (std::size_t j = 0; j < 4; ++j) {
        items[j].erase(items[j].begin(), items[j].begin() + 256);
        prepared[j].erase(prepared[j].begin(), prepared[j].begin() + 256);
    }
    expectDefinition(analyzed(items, optionsFor(4)), prepared);
}

TEST(ReliabilityAnalyzer, HasNoAlphaForATotalThatDoesNotVary) {
    std::mt19937_64 random(47);
    std::vector<OptionalValues> items = {test::randomAnswers(random, 900, 5, false),
                                         test::randomAnswers(random, 900, 5, false)};
    items.emplace_back(900);
    for (std::size_t i = 0; i < 900; ++i) {
        items[2][i] = 12.0 - *items[0][i] - *items[1][i];
    }
    const ReliabilityResult ipsative = analyzed(items, optionsFor(3));
    EXPECT_FALSE(ipsative.alpha);
    EXPECT_EQ(ipsative.scaleScoreStandardDeviation, 0.0);
    EXPECT_TRUE(closeTo(*ipsative.itemStatistics[1].correctedItemTotalCorrelation, -1.0));

    items.push_back(test::randomAnswers(random, 900, 5, false));
    const ReliabilityResult rest = analyzed(items, optionsFor(4));
    EXPECT_TRUE(rest.alpha);
    EXPECT_FALSE(rest.itemStatistics[3].alphaIfDeleted) << "the other three always sum to 12";
    EXPECT_FALSE(rest.itemStatistics[3].correctedItemTotalCorrelation);
}

TEST(ReliabilityAnalyzer, HasNoCorrelationsForAConstantItem) {
    std::mt19937_64 random(53);
    std::vector<OptionalValues> items = {test::randomAnswers(random, 600, 5, false),
                                         OptionalValues(600, 0.1),
                                         test::randomAnswers(random, 600, 5, false)};
    const ReliabilityResult result = analyzed(items, optionsFor(3));
    EXPECT_FALSE(result.itemStatistics[1].correctedItemTotalCorrelation);
    EXPECT_EQ(result.itemStatistics[1].standardDeviation, 0.0);
    EXPECT_EQ(result.itemStatistics[1].mean, 0.1);
    EXPECT_FALSE(result.interItemCorrelationMatrix[0][1]);
    EXPECT_EQ(result.interItemCorrelationMatrix[1][1], 1.0);
    EXPECT_EQ(result.averageInterItemCorrelation, result.interItemCorrelationMatrix[0][2]);
}

TEST(ReliabilityAnalyzer, ReversesItemsWithBothBounds) {
    const std::vector<OptionalValues> items = {{1.0, 2.0, 5.0, 9.0}, {5.0, 4.0, 1.0, std::nullopt}};
    ReliabilityOptions options = optionsFor(2);
    options.reverseCoded = {{.item = "q1", .minimum = 1.0, .maximum = 5.0},
                            {.item = "q0", .minimum = 1.0, .maximum = std::nullopt},
                            {.item = "elsewhere", .minimum = 1.0, .maximum = 5.0}};
    const ReliabilityResult result = analyzed(items, options);
    EXPECT_EQ(result.casesUsed, 3);
    EXPECT_EQ(result.interItemCorrelationMatrix[0][1], 1.0);
    EXPECT_EQ(result.itemStatistics[1].mean, result.itemStatistics[0].mean);
    EXPECT_EQ(result.itemStatistics[1].missingCount, 1);
}

TEST(ReliabilityAnalyzer, ComparesCompletionAsEachRuleIsWorded) {
    struct Case {
        int line;
        Rule rule;
        std::size_t present;
        std::size_t items;
        double minimum;
        bool kept;
    };
    const std::vector<Case> cases = {
        {__LINE__, Rule::listwiseDeletion, 4, 4, 0.5, true},
        {__LINE__, Rule::listwiseDeletion, 3, 4, 0.5, false},
        {__LINE__, Rule::availableItemMean, 2, 4, 0.5, true},
        {__LINE__, Rule::availableItemMean, 1, 4, 0.5, false},
        {__LINE__, Rule::availableItemMean, 4, 5, 0.8, false},
        {__LINE__, Rule::excludeIfMissingMoreThanThreshold, 4, 5, 0.8, true},
        {__LINE__, Rule::availableItemMean, 0, 4, 0.0, false},
        {__LINE__, Rule::excludeIfMissingMoreThanThreshold, 0, 4, 0.0, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(keepsRow(c.rule, c.present, c.items, c.minimum), c.kept) << "line " << c.line;
    }
}

TEST(ReliabilityAnalyzer, ScoresTheScaleByMeanOrSum) {
    const std::vector<OptionalValues> items = {{1.0, 2.0, 4.0}, {3.0, 2.0, 6.0}};
    ReliabilityOptions options = optionsFor(2);
    EXPECT_EQ(analyzed(items, options).scaleScoreMean, 3.0);
    options.scaleScoreMethod = ScaleScoreMethod::sum;
    const ReliabilityResult sums = analyzed(items, options);
    EXPECT_EQ(sums.scaleScoreMean, 6.0);
    EXPECT_TRUE(closeTo(*sums.scaleScoreStandardDeviation, std::sqrt(12.0)));
    EXPECT_EQ(sums.methodMetadata->scaleScoreMethod, ScaleScoreMethod::sum);
}

TEST(ReliabilityAnalyzer, LeavesASpreadThatOverflowsInfinite) {
    const OptionalValues item{1e200, 2e200, 3e200, -9e200};
    const ReliabilityResult result = analyzed({item, {1, 2, 4, 3}, item}, optionsFor(3));
    EXPECT_TRUE(std::isinf(*result.scaleScoreStandardDeviation));
    EXPECT_TRUE(std::isinf(*result.itemStatistics[0].standardDeviation));
    EXPECT_FALSE(result.alpha);
    EXPECT_FALSE(result.interItemCorrelationMatrix[0][2]);
}

TEST(ReliabilityAnalyzer, WarnsOfASmallSampleOfTwoItems) {
    std::mt19937_64 random(59);
    const OptionalValues first = test::randomAnswers(random, 29, 5, false);
    OptionalValues second = first;
    second[3] = 6.0 - *second[3];
    const ReliabilityResult result = analyzed({first, second}, optionsFor(2));
    const std::vector<std::string> warnings = {
        "Reliability evidence does not prove validity.",
        "Sample size is below 30; treat reliability as unstable and descriptive.",
        "Fewer than 3 items gives limited reliability evidence.",
        "Very high alpha can indicate item redundancy; inspect item content."};
    EXPECT_EQ(result.warnings, warnings);
    EXPECT_EQ(result.recommendedAction,
              "Add or review items before treating this as a stable scale.");
    EXPECT_FALSE(result.itemStatistics[0].alphaIfDeleted);
    EXPECT_EQ(result.interpretation,
              "Cronbach's alpha is " + NumberText::fixed(*result.alpha, 3) +
                  ", which is very high internal consistency evidence for these 2 items. Because "
                  "the sample is small, this should be reported as unstable descriptive evidence. "
                  "This does not establish that the construct is valid.");
    EXPECT_EQ(result.readiness->status, AnalysisReadinessStatus::caution);
}

TEST(ReliabilityAnalyzer, ExplainsWhatCannotBeComputed) {
    const ReliabilityResult result =
        analyzed({{1.0, std::nullopt}, {std::nullopt, std::nullopt}, {2.0, std::nullopt}},
                 optionsFor(3, Rule::availableItemMean));
    EXPECT_FALSE(result.alpha);
    EXPECT_EQ(result.casesUsed, 0);
    EXPECT_FALSE(result.itemStatistics[0].mean);
    EXPECT_EQ(result.itemStatistics[1].missingCount, 2);
    EXPECT_FALSE(result.averageInterItemCorrelation);
    EXPECT_EQ(result.interpretation, "Reliability could not be estimated with the available data.");
    EXPECT_EQ(
        result.recommendedAction,
        "Check missing data, item coding, and item eligibility before reporting reliability.");
    const std::vector<AnalysisReadinessIssue> issues = {
        AnalysisReadinessIssue::blocked("Fewer than two complete or prepared cases are available."),
        AnalysisReadinessIssue::caution(
            "Missing item responses are imputed from available item means; report this rule.")};
    EXPECT_EQ(result.readiness->issues, issues);
    EXPECT_EQ(result.warnings[2],
              "Missing item responses were handled with available-item mean; report this rule with "
              "the scale score.");
    const ReliabilityResult nothing = analyzed({}, optionsFor(0));
    EXPECT_EQ(nothing.readiness->issues.size(), 3U);
    EXPECT_EQ(nothing.readiness->status, AnalysisReadinessStatus::blocked);
}

TEST(ReliabilityAnalyzer, DeletesItemsFromRawMatricesRowByRow) {
    const std::vector<OptionalValues> items = {
        {1.0, 2.0, 3.0, 5.0, std::nullopt}, {2.0, 2.0, 4.0, 4.0, 1.0}, {1.0, 3.0, 3.0, 6.0, 2.0}};
    const ItemMatrix matrix = matrixOf(items);
    const auto deleted = ReliabilityAnalyzer::alphaIfDeleted(matrix);
    const std::vector<NumericColumn> pair = {test::plainColumn(items[1]),
                                             test::plainColumn(items[2])};
    EXPECT_EQ(deleted[0], CronbachAlpha::of(pair)) << "all five rows";
    const auto correlations = ReliabilityAnalyzer::correctedItemTotalCorrelations(matrix);
    const ReliabilityResult listwise = ReliabilityAnalyzer::analyze(matrix, optionsFor(3));
    for (std::size_t j = 0; j < 3; ++j) {
        EXPECT_TRUE(sameOptional(correlations[j],
                                 listwise.itemStatistics[j].correctedItemTotalCorrelation));
    }
    EXPECT_TRUE(sameOptional(ReliabilityAnalyzer::cronbachAlpha(matrix), listwise.alpha));
    EXPECT_TRUE(ReliabilityAnalyzer::alphaIfDeleted({.rows = 0, .items = 3}).empty());
}

TEST(ReliabilityScaleTables, FollowFromTheResult) {
    std::mt19937_64 random(61);
    std::vector<OptionalValues> items;
    for (int j = 0; j < 4; ++j) {
        items.push_back(test::randomAnswers(random, 80, 7, false));
    }
    const ReliabilityResult result = analyzed(items, optionsFor(4));
    const Columns prepared = preparedByRows(items, optionsFor(4));
    const auto rows = ReliabilityScaleTables::itemTotalStatistics(result);
    for (std::size_t j = 0; j < 4; ++j) {
        const std::vector<double> rest = sumsWithout(prepared, j);
        EXPECT_TRUE(sameOptional(rows[j].scaleMeanIfDeleted, DescriptiveStatistics::mean(rest)));
        EXPECT_TRUE(
            sameOptional(rows[j].scaleVarianceIfDeleted, DescriptiveStatistics::variance(rest)));
    }
    const auto scale = ReliabilityScaleTables::scaleStatistics(result);
    EXPECT_EQ(scale.n, 80);
    EXPECT_TRUE(closeTo(*scale.variance, std::pow(*scale.standardDeviation, 2.0)));
    const auto summary = ReliabilityScaleTables::summaryItemStatistics(result);
    EXPECT_EQ(summary[2].label, "Inter-item correlations");
    EXPECT_TRUE(sameOptional(summary[2].mean, result.averageInterItemCorrelation));
}

TEST(ReliabilityScaleTables, LeaveOutWhatIsUndefined) {
    ReliabilityResult result{.itemStatistics = {{.mean = 0.0, .standardDeviation = 2.0}},
                             .interItemCorrelationMatrix = {{1.0}}};
    auto summary = ReliabilityScaleTables::summaryItemStatistics(result);
    EXPECT_FALSE(summary[0].maximumOverMinimum) << "the minimum is 0";
    EXPECT_EQ(summary[0].variance, 0.0) << "a single value";
    EXPECT_EQ(summary[1].mean, 4.0);
    EXPECT_FALSE(summary[2].mean) << "no pair of items";
    result.itemStatistics.push_back({.mean = std::nullopt, .standardDeviation = 1.0});
    const auto rows = ReliabilityScaleTables::itemTotalStatistics(result);
    EXPECT_FALSE(rows[0].scaleMeanIfDeleted);
    EXPECT_FALSE(rows[0].scaleVarianceIfDeleted) << "the matrix does not fit";
}

}  // namespace

}  // namespace sorvane
