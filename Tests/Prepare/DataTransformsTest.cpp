#include "SorvaneCore/Prepare/DataTransforms.h"

#include <tuple>

#include <gtest/gtest.h>

#include "SorvaneCore/Prepare/BinnedVariableBuilder.h"
#include "SorvaneCore/Prepare/ComputedVariableBuilder.h"
#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneCore/Prepare/ScaleScoreBuilder.h"
#include "Tests/Prepare/OptionalNumbers.h"

namespace sorvane {
namespace {

using test::none;
using test::Numbers;
using Texts = std::vector<std::string>;
using DataTransforms::Unmatched;

/// Through text, so that the levels of a dictionary are worked on as well.
NumericColumn coded(const Texts& cells) {
    return NumericColumn(TextColumn::of(cells));
}

Texts cellsOf(const TextColumn& column) {
    Texts cells;
    for (std::size_t row = 0; row < column.size(); ++row) {
        cells.emplace_back(column[row]);
    }
    return cells;
}

TEST(DataTransforms, AggregatesWhatIsPresent) {
    const std::vector<NumericColumn> columns = {coded({"1", "na", "3", ""}),
                                                coded({"5", "4", "x"})};
    using enum AggregateOp;
    struct Case {
        int line;
        AggregateOp op;
        double completion;
        Numbers expected;
    };
    const std::vector<Case> cases = {
        {__LINE__, sum, 0.0, {6.0, 4.0, 3.0, none}},
        {__LINE__, mean, 0.0, {3.0, 4.0, 3.0, none}},
        {__LINE__, minimum, 0.5, {1.0, 4.0, 3.0, none}},
        {__LINE__, maximum, 0.6, {5.0, none, none, none}},
        {__LINE__, count, 1.0, {2.0, 1.0, 1.0, 0.0}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(DataTransforms::rowAggregate(columns, each.op, each.completion), each.expected)
            << "line " << each.line;
    }
}

TEST(DataTransforms, AggregatesMoreRowsThanABlockHolds) {
    Texts cells;
    for (int row = 0; row < 3000; ++row) {
        cells.push_back(row % 2 == 0 ? "1" : "2");
    }
    const std::vector<NumericColumn> columns = {coded(cells), coded(cells)};
    const Numbers sums = DataTransforms::rowAggregate(columns, AggregateOp::sum, 1.0);
    ASSERT_EQ(sums.size(), 3000U);
    EXPECT_EQ(sums[2998], 2.0);
    EXPECT_EQ(sums[2999], 4.0);
}

TEST(DataTransforms, CombinesPairsOnlyWhereBothAreThere) {
    const NumericColumn a = coded({"6", "1", "", "4", "9"});
    const NumericColumn b = coded({"3", "0", "2", "na"});
    EXPECT_EQ(DataTransforms::pairCombine(a, b, PairOp::difference),
              (Numbers{3.0, 1.0, none, none, none}));
    EXPECT_EQ(DataTransforms::pairCombine(a, b, PairOp::ratio),
              (Numbers{2.0, none, none, none, none}));
}

TEST(DataTransforms, TheFirstRuleThatFitsDecides) {
    const NumericColumn column = coded({"1", "2", "1.0", "98", "", "7"});
    const std::vector<ValueRecodeRule> values = {{.sources = {98, 1}, .output = none},
                                                 {.sources = {1, 2}, .output = 20.0}};
    EXPECT_EQ(DataTransforms::recodeValues(column, values, Unmatched::kept),
              (Numbers{none, 20.0, none, none, none, 7.0}));
    EXPECT_EQ(DataTransforms::recodeValues(column, values, Unmatched::missing),
              (Numbers{none, 20.0, none, none, none, none}));

    const std::vector<RangeRecodeRule> bands = {
        {.lower = 1, .upper = 2, .upperInclusive = false, .output = 10.0},
        {.lower = 2, .upper = 7, .lowerInclusive = false, .output = 30.0},
        {.lower = 0, .upper = 50, .output = 40.0}};
    EXPECT_EQ(DataTransforms::recodeRanges(column, bands, Unmatched::kept),
              (Numbers{10.0, 40.0, 10.0, 98.0, none, 30.0}));
}

TEST(DataTransforms, AReversalLeavesNothingOffTheScale) {
    EXPECT_EQ(DataTransforms::reverseCode(coded({"1", "5", "3.5", "6", "0", ""}), 1, 5),
              (Numbers{5.0, 1.0, 2.5, none, none, none}));
    EXPECT_EQ(DataTransforms::reverseCode(coded({"0", "4", "-1", "na", "1", "3"}), 0, 4),
              (Numbers{4.0, 0.0, none, none, 3.0, 1.0}))
        << "a scale that begins at nought";
}

TEST(ComputedVariableBuilder, RoundsTheRequiredAnswersUp) {
    const std::vector<NumericColumn> items = {coded({"1", "1", ""}), coded({"2", "", ""}),
                                              coded({"4", "4", ""})};
    using enum ComputedVariableMethod;
    using ComputedVariableBuilder::textValues;
    EXPECT_EQ(textValues(items, sum, 0.67), (Texts{"7", "", ""}));
    EXPECT_EQ(textValues(items, mean, 0.66), (Texts{"2.3333", "2.5", ""}));
    EXPECT_EQ(textValues(items, sum, -3.0), (Texts{"7", "5", ""}));
    EXPECT_EQ(textValues(items, validCount, 1.0), (Texts{"3", "2", "0"}));

    // So many answers are enough, and one less is not; 0.56 times 25 is above 14 in doubles.
    for (const auto& [percent, count, answers] : {std::tuple(50, 5, 3), std::tuple(56, 25, 15),
                                                  std::tuple(70, 10, 7), std::tuple(67, 3, 3)}) {
        std::vector<NumericColumn> columns;
        for (int item = 0; item < count; ++item) {
            columns.push_back(coded({item < answers ? "1" : "", item < answers - 1 ? "1" : ""}));
        }
        EXPECT_EQ(ComputedVariableBuilder::numericValues(columns, mean, percent / 100.0),
                  (Numbers{1.0, none}))
            << percent << " % of " << count;
    }
}

TEST(ScaleScoreBuilder, ProratesSumsAndKnowsItsRules) {
    using enum ReliabilityMissingDataRule;
    struct Case {
        int line;
        Numbers row;
        ScaleScoreOptions options;
        std::optional<double> expected;
    };
    using enum ScaleScoreMethod;
    const std::vector<Case> cases = {
        {__LINE__, {2, none, 4}, {availableItemMean, sum, 0.5}, 9.0},
        {__LINE__, {2, none, 4}, {availableItemMean, mean, 0.7}, none},
        {__LINE__, {2, none, 4}, {excludeIfMissingMoreThanThreshold, mean, 0.5}, 3.0},
        {__LINE__, {2, none, 4}, {listwiseDeletion, sum, 0.0}, none},
        {__LINE__, {2, 3, 4}, {listwiseDeletion, mean, 2.0}, 3.0},
        {__LINE__, {none, none}, {availableItemMean, mean, 0.0}, none},
        {__LINE__, {}, {listwiseDeletion, mean, 0.0}, none},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(ScaleScoreBuilder::score(each.row, each.options), each.expected)
            << "line " << each.line;
    }
    // Four of five items at 0.8: enough for the score.
    const Numbers four = {1, 1, 1, 1, none};
    EXPECT_EQ(ScaleScoreBuilder::score(four, {availableItemMean, sum, 0.8}), 5.0);
}

TEST(BinnedVariableBuilder, CutsAtEdgesAndKeepsRowsInPlace) {
    using BinnedVariableBuilder::equalWidth;
    using BinnedVariableBuilder::quantile;
    EXPECT_EQ(cellsOf(*equalWidth(coded({"0", "5", "10", "na", "4.9", "inf"}), 2)),
              (Texts{"0 to 5", "5 to 10", "5 to 10", "", "0 to 5", ""}));
    EXPECT_EQ(cellsOf(*equalWidth(coded({"0", "0.4", "0.8", "1.2", "2.4", "2.8", "4"}), 10)),
              (Texts{"0 to 0.4", "0.4 to 0.8", "0.8 to 1.2", "0.8 to 1.2", "2 to 2.4", "2.4 to 2.8",
                     "3.6 to 4"}))
        << "the quotient is truncated as it stands in doubles, such as 1.2 / 0.4 below 3";
    EXPECT_EQ(cellsOf(*equalWidth(coded({"3", "", "3.0"}), 4)), (Texts{"3", "", "3"}));
    EXPECT_EQ(cellsOf(*equalWidth(coded({"", "x"}), 4)), (Texts{"", ""}));
    EXPECT_EQ(cellsOf(*equalWidth(coded({"1", "2"}), 0)), (Texts{"1 to 2", "1 to 2"}));
    EXPECT_EQ(cellsOf(*equalWidth(coded({"-1e308", "1e308"}), 2)).size(), 2U);

    EXPECT_EQ(cellsOf(*quantile(coded({"7", "7", "1", "", "7"}), 2)),
              (Texts{"1: 1 to 7", "2: 7 to 7", "1: 1 to 7", "", "2: 7 to 7"}));
    EXPECT_EQ(cellsOf(*quantile(coded({"2", "1"}), 5)), (Texts{"2: 2 to 2", "1: 1 to 1"}));
    EXPECT_EQ(cellsOf(*quantile(coded({""}), 3)), Texts{""});
    EXPECT_EQ(cellsOf(*quantile(coded({"7", "6", "5", "4", "3", "2", "1"}), 3)),
              (Texts{"3: 6 to 7", "3: 6 to 7", "2: 4 to 5", "2: 4 to 5", "1: 1 to 3", "1: 1 to 3",
                     "1: 1 to 3"}))
        << "the lower bands take what does not divide";
}

TEST(DerivedValueFormatter, WritesFourDecimalsAtMost) {
    const std::vector<std::pair<double, std::string>> cases = {
        {0.1, "0.1"}, {1e-5, "0"},    {3.0, "3"},      {7.0 / 3.0, "2.3333"},
        {2.5, "2.5"}, {-1.5, "-1.5"}, {1.0 / 0.0, ""}, {1e15, "1000000000000000"}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(DerivedValueFormatter::text(value), text);
    }
    const Numbers values = {2.5, none, 2.5, 0.1};
    EXPECT_EQ(cellsOf(*DerivedValueFormatter::column(values)), (Texts{"2.5", "", "2.5", "0.1"}));
}

}  // namespace
}  // namespace sorvane
