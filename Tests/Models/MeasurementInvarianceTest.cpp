#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/Structural/InvarianceWording.h"
#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::cautions;
using test::closeTo;
using test::obstacles;
using Texts = std::vector<std::string>;
using Values = test::OptionalValues;

/// Four items of one factor; in the second group the factor mean is 0.5 higher, and so is the last
/// item's intercept by as much as is asked for.
struct Study {
    std::vector<Values> items = std::vector<Values>(4);
    Texts groups{};

    Study(std::size_t n, double interceptShift) {
        std::mt19937_64 random(8);
        const auto noise = [&random] {
            double sum = -6.0;
            for (int i = 0; i < 12; ++i) {
                sum += static_cast<double>(random() >> 11) * 0x1p-53;
            }
            return sum;
        };
        for (std::size_t i = 0; i < n; ++i) {
            const bool isSecond = i % 2 == 1;
            groups.emplace_back(isSecond ? "b" : "a");
            const double factor = noise() + (isSecond ? 0.5 : 0.0);
            for (std::size_t j = 0; j < 4; ++j) {
                const double shift = isSecond && j == 3 ? interceptShift : 0.0;
                items[j].emplace_back(3.0 + 0.8 * factor + shift + 0.6 * noise());
            }
        }
    }

    std::optional<InvarianceResult> tested() const {
        std::vector<NumericColumn> columns;
        InvarianceOptions options{.groupFactorName = "group"};
        for (const Values& item : items) {
            columns.push_back(test::plainColumn(item));
            options.itemNames.push_back("i" + std::to_string(columns.size()));
        }
        return MeasurementInvariance::test(columns, *TextColumn::of(groups), options);
    }
};

TEST(MeasurementInvariance, FindsTheItemThatWorksOtherwise) {
    const auto result = Study(600, 0.8).tested();
    ASSERT_TRUE(result);
    ASSERT_EQ(result->comparisons.size(), 2U);
    EXPECT_TRUE(result->comparisons[0].isWithinCutoffs);
    EXPECT_FALSE(result->comparisons[1].isWithinCutoffs);
    const auto hint =
        std::ranges::find(result->hints, InvarianceLevel::scalar, &InvarianceHint::level);
    ASSERT_NE(hint, result->hints.end());
    EXPECT_EQ(hint->itemName, "i4");
    EXPECT_EQ(hint->groupName, "b");
    EXPECT_TRUE(closeTo(hint->expectedChange, 0.8, {.absolute = 0.25}));
    EXPECT_NE(InvarianceWording::summary(*result).find("compatible with metric invariance."),
              std::string::npos);
}

TEST(MeasurementInvariance, EstimatesTheFactorMeanUnderScalarInvariance) {
    const auto result = Study(600, 0.0).tested();
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->comparisons[1].isWithinCutoffs);
    ASSERT_EQ(result->latentMeans.size(), 1U);
    EXPECT_TRUE(closeTo(result->latentMeans[0].difference, 0.5, {.absolute = 0.2}));
    const InvarianceFit& scalar = result->fits[2];
    EXPECT_EQ(scalar.groups[0].intercepts, scalar.groups[1].intercepts);
    EXPECT_EQ(scalar.groups[0].loadings.front(), 1.0);
    EXPECT_EQ(scalar.groups[0].factorMean, 0.0);
}

TEST(MeasurementInvariance, ChiSquareDoesNotDependOnUnitsOrKeys) {
    Study study(200, 0.0);
    const auto plain = study.tested();
    for (auto& value : study.items[0]) {
        value = 1e5 - 1e-3 * *value;
    }
    const auto turned = study.tested();
    for (std::size_t level = 0; level < 3; ++level) {
        EXPECT_TRUE(closeTo(turned->fits[level].chiSquare, plain->fits[level].chiSquare,
                            {.relative = 1e-6}));
    }
    EXPECT_TRUE(closeTo(turned->latentMeans[0].difference, -plain->latentMeans[0].difference,
                        {.relative = 1e-5}));
}

TEST(MeasurementInvariance, SaysWhatStandsInItsWay) {
    Study oneGroup(60, 0.0);
    oneGroup.groups.assign(60, "a");
    Study twoItems(60, 0.0);
    twoItems.items.resize(2);
    Study thin(60, 0.0);
    thin.groups.assign(60, "a");
    for (const std::size_t row : {1U, 2U, 3U}) {
        thin.groups[row] = "b";
    }
    Study constant(60, 0.0);
    for (std::size_t row = 1; row < 60; row += 2) {
        constant.items[2][row] = 3.0;
    }
    struct Case {
        int line;
        const Study& study;
        std::string obstacle;
    };
    const std::vector<Case> cases = {
        {__LINE__, oneGroup,
         "Measurement invariance needs two or more groups; only 1 group(s) had complete data."},
        {__LINE__, twoItems,
         "A factor needs at least three items to be identified in each group. Add items."},
        {__LINE__, thin,
         "The group \"b\" has only 3 complete case(s) for 4 items. Collect more cases, or leave "
         "the "
         "group out."},
        {__LINE__, constant,
         "The items are perfectly collinear, or one does not vary, in the group \"b\". Drop a "
         "redundant item."},
    };
    for (const Case& each : cases) {
        const auto result = each.study.tested();
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(result->fits.empty()) << each.line;
    }
    Study uneven(60, 0.0);
    uneven.items[0].pop_back();
    EXPECT_FALSE(uneven.tested());
}

TEST(MeasurementInvariance, TellsOfSmallGroupsAndDroppedRows) {
    Study study(120, 0.0);
    study.items[0][0] = std::nullopt;
    const Texts told = cautions(study.tested()->readiness);
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[0],
              "The group \"b\" has only 60 cases; differences in fit are imprecise with fewer than "
              "100 cases in a group.");
    EXPECT_EQ(told[2], "1 row(s) were dropped because an item or the group was missing.");
}

}  // namespace

}  // namespace sorvane
