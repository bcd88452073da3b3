#include "SorvaneCore/Prepare/MissingDataAnalysis.h"

#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Prepare/SubgroupMissingness.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using Numbers = std::vector<std::optional<double>>;
constexpr auto none = std::nullopt;

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
