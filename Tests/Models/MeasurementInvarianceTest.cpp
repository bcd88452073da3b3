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

TEST(MeasurementInvariance, ChiSquareCountsCasesAndKnowsNoOrder) {
    const Study study(160, 0.4);
    const auto plain = study.tested();
    Study turned = study;
    Study twice = study;
    for (std::size_t j = 0; j < 4; ++j) {
        std::ranges::reverse(turned.items[j]);
        twice.items[j].insert(twice.items[j].end(), study.items[j].begin(), study.items[j].end());
    }
    std::ranges::reverse(turned.groups);
    twice.groups.insert(twice.groups.end(), study.groups.begin(), study.groups.end());
    const auto other = turned.tested();
    const auto doubled = twice.tested();
    EXPECT_EQ(other->groups, (Texts{"b", "a"})) << "the other group is the reference now";
    for (std::size_t level = 0; level < 3; ++level) {
        const InvarianceFit& fit = plain->fits[level];
        EXPECT_TRUE(closeTo(other->fits[level].chiSquare, fit.chiSquare, {.relative = 1e-6}));
        EXPECT_TRUE(closeTo(other->fits[level].srmr, fit.srmr, {.relative = 1e-4}));
        EXPECT_TRUE(
            closeTo(doubled->fits[level].chiSquare, 2.0 * fit.chiSquare, {.relative = 1e-6}));
        EXPECT_EQ(doubled->fits[level].degreesOfFreedom, fit.degreesOfFreedom);
    }
    EXPECT_LT(plain->latentMeans[0].difference * other->latentMeans[0].difference, 0.0);
}

TEST(MeasurementInvariance, TheConfiguralModelReproducesMeansAndVariances) {
    const Study study(200, 0.3);
    const auto result = study.tested();
    ASSERT_TRUE(result);
    for (std::size_t g = 0; g < 2; ++g) {
        const InvarianceGroupEstimates& group = result->fits[0].groups[g];
        EXPECT_EQ(group.loadings[0], 1.0);
        for (std::size_t j = 0; j < 4; ++j) {
            double mean = 0.0;
            for (std::size_t i = g; i < 200; i += 2) {
                mean += *study.items[j][i] / 100.0;
            }
            double variance = 0.0;
            for (std::size_t i = g; i < 200; i += 2) {
                variance += (*study.items[j][i] - mean) * (*study.items[j][i] - mean) / 100.0;
            }
            EXPECT_TRUE(closeTo(group.intercepts[j], mean, {.relative = 1e-6}));
            EXPECT_TRUE(closeTo(group.loadings[j] * group.loadings[j] * group.factorVariance +
                                    group.residualVariances[j],
                                variance, {.relative = 1e-5}));
        }
    }
}

TEST(MeasurementInvariance, HintsStandInTheUnitsOfTheirItemForEachGroupOfMany) {
    Study study(300, 0.8);
    const auto two = study.tested();
    EXPECT_EQ(two->hints.size(), 2U * 4U) << "of two groups, freeing the one frees the other";
    for (auto& value : study.items[3]) {
        value = 10.0 * *value;
    }
    const auto scaled = study.tested();
    const auto ofLastItem = [](const InvarianceResult& result) {
        return *std::ranges::find_if(result.hints, [](const InvarianceHint& hint) {
            return hint.itemName == "i4" && hint.level == InvarianceLevel::scalar;
        });
    };
    EXPECT_TRUE(closeTo(ofLastItem(*scaled).expectedChange, 10.0 * ofLastItem(*two).expectedChange,
                        {.relative = 1e-5}));
    for (std::size_t i = 0; i < 300; i += 3) {
        study.groups[i] = "c";
    }
    EXPECT_EQ(study.tested()->hints.size(), 2U * 4U * 3U);
}

TEST(MeasurementInvariance, CautionsBeginAtTheirBounds) {
    const auto told = [](const Study& study) {
        Texts found = cautions(study.tested()->readiness);
        for (std::string& text : found) {
            text = text.substr(0, text.find_first_of(".;("));
        }
        return found;
    };
    EXPECT_EQ(told(Study(200, 0.0)), Texts{});
    EXPECT_EQ(told(Study(199, 0.0)), Texts{"The group \"b\" has only 99 cases"});
    for (const double steps : {4.0, 5.0}) {
        Study coarse(200, 0.0);
        for (auto& value : coarse.items[1]) {
            value = std::clamp(std::floor(2.0 + (*value - 3.0) * 1.5), 0.0, steps - 1.0);
        }
        EXPECT_EQ(told(coarse),
                  steps == 4.0 ? Texts{"\"i2\" has fewer than five distinct values"} : Texts{});
    }
    // Two items of another factor.
    Study twoFactors(240, 0.0);
    const Study other(244, 0.0);
    for (std::size_t i = 0; i < 240; ++i) {
        for (const std::size_t j : {2U, 3U}) {
            twoFactors.items[j][i] = *other.items[j][i + 4] + 0.3 * (*twoFactors.items[0][i] - 3.0);
        }
    }
    const Texts poor = told(twoFactors);
    ASSERT_FALSE(poor.empty());
    EXPECT_EQ(poor.front(), "The configural model fits poorly ");
}

TEST(InvarianceWording, TellsHowFarTheChangesAreSmall) {
    const InvarianceFit configural{
        .chiSquare = 6.236, .degreesOfFreedom = 4, .cfi = 0.9914, .rmsea = 0.0456};
    const auto summary = [&](bool metric, bool scalar) {
        InvarianceResult result{.itemNames = {"a", "b", "c", "d"},
                                .groupFactorName = "country",
                                .groups = {"x", "y"},
                                .n = 412};
        result.fits = {configural, {}, {}};
        result.comparisons = {{.level = InvarianceLevel::metric, .isWithinCutoffs = metric},
                              {.level = InvarianceLevel::scalar, .isWithinCutoffs = scalar}};
        return InvarianceWording::summary(result);
    };
    const std::string begin =
        "One factor of 4 items was compared across 2 groups of country (n = 412). The configural "
        "model had chi-square(4) = 6.24, CFI = 0.991, RMSEA = 0.046. By the usual cut-offs the "
        "changes in fit are compatible with ";
    EXPECT_EQ(summary(true, true), begin + "scalar invariance.");
    EXPECT_EQ(summary(true, false), begin + "metric invariance.");
    EXPECT_EQ(summary(false, true), begin + "configural invariance at most.")
        << "a step that follows a large one counts for nothing";
    EXPECT_EQ(InvarianceWording::comparison({.level = InvarianceLevel::scalar,
                                             .against = InvarianceLevel::metric,
                                             .chiSquareDifference = 12.347,
                                             .dfDifference = 3,
                                             .pValue = 0.0063,
                                             .deltaCFI = -0.0124,
                                             .deltaRMSEA = 0.0211,
                                             .isWithinCutoffs = false}),
              "Scalar against metric: chi-square difference = 12.35 on 3 df, p = .006; change in "
              "CFI -0.012, in RMSEA 0.021. By the usual guidance (CFI falls by at most .010, RMSEA "
              "grows by at most .015) the change is not small.");
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
