#include "SorvaneCore/Prepare/MissingDataAnalysis.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Prepare/SubgroupMissingness.h"
#include "Tests/Prepare/OptionalNumbers.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using test::none;
using test::Numbers;

std::vector<NumericColumn> columnsOf(const std::vector<Numbers>& cells) {
    return {cells.begin(), cells.end()};
}

TEST(MissingDataAnalysis, CountsByVariableAndByPattern) {
    const std::vector<std::string> names = {"x", "y"};
    const MissingDataSummary found =
        MissingDataAnalysis::summary(columnsOf({{1, none, 3, none, 5}, {1, 2, none, 4, 5}}), names);
    EXPECT_EQ(found.missingCells, 3);
    EXPECT_EQ(found.completeCases, 2);
    EXPECT_EQ(found.completeCasePercent, 40.0);
    EXPECT_EQ(found.perVariable[0],
              (VariableMissingness{.name = "x", .missingCount = 2, .missingPercent = 40.0}));
    const std::vector<MissingPattern> patterns = {{.present = {true, true}, .count = 2},
                                                  {.present = {false, true}, .count = 2},
                                                  {.present = {true, false}, .count = 1}};
    EXPECT_EQ(found.patterns, patterns);
    EXPECT_EQ(MissingDataAnalysis::summary({}, {}), MissingDataSummary());

    // A column that ends early lacks the rows beyond; equally common patterns keep their order.
    const MissingDataSummary ragged =
        MissingDataAnalysis::summary(columnsOf({{1, 2}, {none, 2, 3, 4}}), names);
    EXPECT_EQ(ragged.missingCells, 3);
    EXPECT_EQ(ragged.missingCellPercent, 37.5);
    EXPECT_EQ(ragged.perVariable[0].missingPercent, 50.0);
    EXPECT_EQ(ragged.perVariable[1].missingPercent, 25.0);
    ASSERT_EQ(ragged.patterns.size(), 3U);
    EXPECT_EQ(ragged.patterns[0], (MissingPattern{.present = {false, true}, .count = 2}));
    EXPECT_EQ(ragged.patterns[1], (MissingPattern{.present = {true, false}, .count = 1}));
}

struct LittleCase {
    int line;
    std::vector<Numbers> cells;
    std::int64_t df;
    std::int64_t patterns;
    std::string issue;
};

TEST(MissingDataAnalysis, LittlesTestSaysWhyItIsBlocked) {
    const std::string singular =
        "A missing-data pattern produced a singular covariance (collinear or constant variables). "
        "Little's MCAR test cannot be computed.";
    const std::string noFreedom =
        "Degrees of freedom are not positive (too few missing-data patterns relative to "
        "variables). Little's MCAR test does not apply.";
    const std::vector<LittleCase> cases = {
        {__LINE__, {{1, 2, 3, 5}, {2, 1, 4, 4}}, 0, 1, noFreedom},
        {__LINE__, {{1, 2, 3, none}, {7, 7, 7, 7}}, 1, 2, singular},
        {__LINE__, {{1, 2, none}, {none, none, none}}, 0, 2, noFreedom},
    };
    for (const LittleCase& each : cases) {
        SCOPED_TRACE(each.line);
        const auto result = MissingDataAnalysis::littleMCAR(columnsOf(each.cells), {});
        ASSERT_TRUE(result);
        EXPECT_TRUE(std::isnan(result->pValue));
        EXPECT_EQ(result->degreesOfFreedom, each.df);
        EXPECT_EQ(result->patternCount, each.patterns);
        ASSERT_EQ(result->readiness.issues.size(), 1U);
        EXPECT_EQ(result->readiness.issues.front().message, each.issue);
        EXPECT_EQ(result->readiness.status, AnalysisReadinessStatus::blocked);
    }
    EXPECT_EQ(MissingDataAnalysis::littleMCAR(columnsOf({{1, 2, 3}, {2, 1, 4}}), {})->statistic,
              0.0);
    EXPECT_FALSE(MissingDataAnalysis::littleMCAR({}, {}));
    EXPECT_FALSE(MissingDataAnalysis::littleMCAR(columnsOf({{}}), {}));
}

TEST(MissingDataAnalysis, RowsWithoutAnythingAddAPatternAlone) {
    const std::vector<Numbers> cells = {{1, 2, 4, none, 6, 3, none}, {2, 1, none, 5, 7, 2, 3}};
    std::vector<Numbers> withEmpty = cells;
    for (Numbers& column : withEmpty) {
        column.push_back(none);
    }
    const auto without = MissingDataAnalysis::littleMCAR(columnsOf(cells), {});
    const auto with = MissingDataAnalysis::littleMCAR(columnsOf(withEmpty), {});
    EXPECT_EQ(without->patternCount, 3);
    EXPECT_EQ(with->patternCount, 4);
    EXPECT_EQ(with->degreesOfFreedom, without->degreesOfFreedom);
    EXPECT_EQ(with->statistic, without->statistic);
}

TEST(MissingDataAnalysis, ALargeOffsetChangesNothing) {
    const std::vector<Numbers> cells = {{1, 2, 4, none, 6, 3, none}, {2, 1, none, 5, 7, 2, 3}};
    std::vector<Numbers> shifted = cells;
    for (Numbers& column : shifted) {
        for (std::optional<double>& value : column) {
            value = value ? std::optional(*value + 1e9) : none;
        }
    }
    EXPECT_TRUE(test::closeTo(MissingDataAnalysis::littleMCAR(columnsOf(shifted), {})->statistic,
                              MissingDataAnalysis::littleMCAR(columnsOf(cells), {})->statistic,
                              {.relative = 1e-6}));
}

TEST(MissingDataAnalysis, LittlesTestKnowsNeitherUnitsNorOrder) {
    const std::vector<Numbers> cells = {
        {1, 2, 4, none, 6, 3, none, 8}, {2, 1, none, 5, 7, 2, 3, 7}, {3, 3, 1, 4, 2, none, 5, 1}};
    const auto plain = MissingDataAnalysis::littleMCAR(columnsOf(cells), {});
    std::vector<Numbers> turned = {cells[2], cells[0], cells[1]};
    for (Numbers& column : turned) {
        std::ranges::reverse(column);
        for (std::optional<double>& value : column) {
            value = value ? std::optional(-25.4 * *value + 3.0) : none;
        }
    }
    const auto other = MissingDataAnalysis::littleMCAR(columnsOf(turned), {});
    EXPECT_TRUE(test::closeTo(other->statistic, plain->statistic, {.relative = 1e-9}));
    EXPECT_EQ(other->degreesOfFreedom, 3 + 2 + 2 + 2 - 3);
    EXPECT_EQ(plain->readiness.validCases, 8);

    // Every row twice: each pattern tells as far from the whole as before, on twice the rows.
    std::vector<Numbers> twice = cells;
    for (std::size_t j = 0; j < cells.size(); ++j) {
        twice[j].insert(twice[j].end(), cells[j].begin(), cells[j].end());
    }
    const auto doubled = MissingDataAnalysis::littleMCAR(columnsOf(twice), {});
    EXPECT_TRUE(test::closeTo(doubled->statistic, 2.0 * plain->statistic, {.relative = 1e-9}));
    EXPECT_EQ(doubled->degreesOfFreedom, plain->degreesOfFreedom);
}

TEST(MissingDataAnalysis, ADistanceBelowNoughtIsNoDistance) {
    // Of pairs with values in common x and y fall together, x and z together, y and z apart: such
    // covariances are those of no data.
    const std::vector<Numbers> cells = {{1, 2, 3, 1, 2, 3, none, none, none, 2},
                                        {1, 2, 3, none, none, none, 1, 2, 3, 3},
                                        {none, none, none, 1, 2, 3, 3, 2, 1, 3}};
    const auto result = MissingDataAnalysis::littleMCAR(columnsOf(cells), {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->readiness.status, AnalysisReadinessStatus::blocked);
    EXPECT_TRUE(std::isnan(result->pValue));
}

TEST(SubgroupMissingness, CountsEachGroupByItself) {
    const std::vector<std::string> names = {"x", "y"};
    const std::vector<std::string> groups = {"b", "A", "b", "na", "A", "b", "", "b"};
    const SubgroupMissingnessResult found = SubgroupMissingness::byGroup(
        columnsOf({{1, none, 3, none, 5, 6, none, 8}, {none, 2, none, 4, 5}}), names,
        *TextColumn::of(groups));
    ASSERT_EQ(found.groups.size(), 2U);
    EXPECT_EQ(found.groups[0].group, "A");
    EXPECT_EQ(found.groups[0].nRows, 2);
    EXPECT_EQ(found.groups[0].missingCells, 1);
    EXPECT_EQ(found.groups[0].missingCellPercent, 25.0);
    EXPECT_EQ(found.groups[1].missingCellPercent, 50.0) << "rows beyond the end are missing";
    EXPECT_EQ(found.groups[1].perVariable[1],
              (VariableMissingness{.name = "y", .missingCount = 4, .missingPercent = 100.0}));
    EXPECT_EQ(found.spread, 25.0);
    EXPECT_EQ(found.spreads[0].spread, 50.0);
    EXPECT_EQ(found.spreads[1].spread, 100.0);
    EXPECT_EQ(found.readiness.totalRows, 8);
    EXPECT_EQ(found.readiness.validCases, 6);
    EXPECT_EQ(found.readiness.usableGroups, 2);

    // One variable apart is enough, wherever it stands.
    Numbers apart(40, 1.0);
    std::vector<std::string> halves(40, "a");
    for (std::size_t row = 0; row < 20; ++row) {
        halves[row] = "b";
        apart[row] = row < 3 ? none : apart[row];
    }
    const std::vector<std::string> three = {"apart", "even", "even too"};
    EXPECT_TRUE(SubgroupMissingness::byGroup(columnsOf({apart, Numbers(40, 1.0), Numbers(40, 1.0)}),
                                             three, *TextColumn::of(halves))
                    .isUneven);
    EXPECT_EQ(SubgroupMissingness::byGroup({}, {}, *TextColumn::of(halves))
                  .readiness.issues.front()
                  .message,
              "There is no numeric variable to look at.");
}

TEST(SubgroupMissingness, TenPointsBetweenGroupsStandOut) {
    Numbers even(40, 1.0);
    Numbers uneven(40, 1.0);
    std::vector<std::string> groups(40, "b");
    for (std::size_t row = 0; row < 20; ++row) {
        groups[row] = "a";
    }
    even[0] = none;
    uneven[0] = uneven[1] = none;
    const std::vector<std::string> names = {"even", "uneven"};
    const SubgroupMissingnessResult result =
        SubgroupMissingness::byGroup(columnsOf({even, uneven}), names, *TextColumn::of(groups));
    EXPECT_EQ(result.groups[0].group, "a");
    EXPECT_EQ(result.groups[0].missingCellPercent, 7.5);
    EXPECT_EQ(result.spreads[0].spread, 5.0);
    EXPECT_FALSE(result.spreads[0].isUneven);
    EXPECT_EQ(result.spreads[1].spread, 10.0);
    EXPECT_TRUE(result.spreads[1].isUneven);
    EXPECT_TRUE(result.isUneven);

    // 57 and 47 of 100: the quotients differ by a little less than ten points.
    Numbers rounded(200, 1.0);
    std::vector<std::string> halves(200, "b");
    for (std::size_t row = 0; row < 100; ++row) {
        halves[row] = "a";
        rounded[row] = row < 57 ? none : rounded[row];
        rounded[100 + row] = row < 47 ? none : rounded[100 + row];
    }
    EXPECT_TRUE(SubgroupMissingness::byGroup(columnsOf({rounded}), {names.data(), 1},
                                             *TextColumn::of(halves))
                    .isUneven);

    const std::vector<std::string> one(40, "a");
    EXPECT_EQ(SubgroupMissingness::byGroup(columnsOf({even}), names, *TextColumn::of(one))
                  .readiness.status,
              AnalysisReadinessStatus::blocked);
}

}  // namespace
}  // namespace sorvane
