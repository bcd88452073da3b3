#include "SorvaneCore/Prepare/DataCleaning.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "Tests/Prepare/OptionalNumbers.h"

namespace sorvane {
namespace {

using test::none;
using test::Numbers;
using Rows = std::vector<std::int64_t>;

TEST(DataCleaning, ABoundIsInRange) {
    const NumericColumn values(Numbers{1, none, 5, 0, 6, 55});
    const OutOfRangeReport both = DataCleaning::outOfRange(values, 1, 5);
    EXPECT_EQ(both.belowIndices, Rows{3});
    EXPECT_EQ(both.aboveIndices, (Rows{4, 5}));
    EXPECT_EQ(both.flaggedCount, 3);
    EXPECT_EQ(both.observedMin, 0.0);
    EXPECT_EQ(both.observedMax, 55.0);
    EXPECT_EQ(DataCleaning::outOfRange(values, none, 5).flaggedCount, 2);
    EXPECT_EQ(DataCleaning::outOfRange(NumericColumn(Numbers{none}), 1, 5), OutOfRangeReport());
    EXPECT_EQ(DataCleaning::clampToMissing(values, 1, none), (Numbers{1, none, 5, none, 6, 55}));
    EXPECT_EQ(DataCleaning::clampToMissing(values, none, 5), (Numbers{1, none, 5, 0, none, none}));
}

TEST(DataCleaning, FencesAreInside) {
    // Quartiles 2 and 4: fences -1 and 7.
    const OutlierReport quartiles = DataCleaning::outliers(
        NumericColumn(Numbers{2, 3, 4, 2, 3, 4, none, 7, -1, 7.5}), OutlierMethod::iqr);
    EXPECT_EQ(quartiles.lowerFence, -1.0);
    EXPECT_EQ(quartiles.upperFence, 7.0);
    EXPECT_EQ(quartiles.flaggedIndices, Rows{9});

    Numbers far(20, 10.0);
    far[4] = 11.0;
    far[9] = 500.0;
    const OutlierReport deviations =
        DataCleaning::outliers(NumericColumn(far), OutlierMethod::zScore);
    EXPECT_EQ(deviations.flaggedIndices, Rows{9});
    far[9] = -500.0;
    EXPECT_EQ(DataCleaning::outliers(NumericColumn(far), OutlierMethod::zScore).flaggedIndices,
              Rows{9})
        << "on either side";

    // R: quantile(v, c(.25, .75)) are 4 and 5.5; mean(v) + c(-3, 3) * sd(v).
    const NumericColumn known(Numbers{2, 4, 4, 4, 5, 5, 7, 9, none});
    const OutlierReport fences = DataCleaning::outliers(known, OutlierMethod::iqr);
    EXPECT_EQ(fences.lowerFence, 1.75);
    EXPECT_EQ(fences.upperFence, 7.75);
    EXPECT_EQ(fences.flaggedIndices, Rows{7});
    const OutlierReport reach = DataCleaning::outliers(known, OutlierMethod::zScore);
    EXPECT_NEAR(reach.lowerFence.value_or(0.0), -1.41426980589819, 1e-12);
    EXPECT_NEAR(reach.upperFence.value_or(0.0), 11.41426980589819, 1e-12);
    EXPECT_EQ(reach.flaggedCount, 0);
    for (const OutlierMethod method : {OutlierMethod::iqr, OutlierMethod::zScore}) {
        for (const Numbers& quiet : {Numbers{}, Numbers{5}, Numbers{5, 5, 5}}) {
            EXPECT_EQ(DataCleaning::outliers(NumericColumn(quiet), method).flaggedCount, 0);
        }
    }
}

TEST(DataCleaning, EqualRowsFormGroupsInOrderOfTheirFirst) {
    const TextTable table = TextTable::fromRows(
        {{"b", "1"}, {"a", "1"}, {"b", "1"}, {"A", "1"}, {"a ", "1"}, {"a", "1"}, {"b", "1"}}, 2);
    const DuplicateReport report = DataCleaning::duplicateRows(table);
    EXPECT_EQ(report.groups, (std::vector<Rows>{{0, 2, 6}, {1, 5}}));
    EXPECT_EQ(report.duplicateGroupCount, 2);
    EXPECT_EQ(report.totalDuplicateRows, 5);
    const std::vector<std::size_t> second = {1};
    EXPECT_EQ(DataCleaning::duplicateRows(table, second).totalDuplicateRows, 7);
    EXPECT_EQ(DataCleaning::duplicateRows(TextTable()).duplicateGroupCount, 0);
}

TEST(DataCleaning, KeysAreJoinedByTheUnitSeparator) {
    const TextTable table = TextTable::fromRows({{"a\x1F"
                                                  "b",
                                                  "c"},
                                                 {"a",
                                                  "b\x1F"
                                                  "c"},
                                                 {"ab", "c"}},
                                                2);
    EXPECT_EQ(DataCleaning::duplicateRows(table).groups, (std::vector<Rows>{{0, 1}}));
}

TEST(DataCleaning, FindsEqualRowsWhereNearlyEveryCellDiffers) {
    constexpr std::int64_t count = 40000;
    std::vector<std::vector<std::string>> rows;
    for (std::int64_t row = 0; row < count; ++row) {
        // The last row is the first one again.
        const std::string cell = NumberText::integer(row == count - 1 ? 0 : row);
        rows.push_back({cell, "respondent number " + cell});
    }
    EXPECT_EQ(DataCleaning::duplicateRows(TextTable::fromRows(rows, 2)).groups,
              (std::vector<Rows>{{0, count - 1}}));
}

}  // namespace
}  // namespace sorvane
