#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"

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
using test::OptionalValues;

std::optional<CanonicalCorrelationResult> fitted(const std::vector<OptionalValues>& x,
                                                 const std::vector<OptionalValues>& y,
                                                 Texts xNames = {},
                                                 Texts yNames = {}) {
    const auto columns = [](const std::vector<OptionalValues>& set, Texts& names,
                            const char* prefix) {
        std::vector<NumericColumn> result;
        const bool isNamed = !names.empty();
        for (const OptionalValues& each : set) {
            result.push_back(test::plainColumn(each));
            if (!isNamed) {
                names.push_back(prefix + std::to_string(result.size()));
            }
        }
        return result;
    };
    const auto setX = columns(x, xNames, "x");
    const auto setY = columns(y, yNames, "y");
    return CanonicalCorrelation::fit(setX, setY, {.setXNames = xNames, .setYNames = yNames});
}

const OptionalValues a = {3, 4, 5, 4, 7, 9, 8, 8, 2, 6};
const OptionalValues b = {1, 5, 2, 3, 4, 2, 6, 5, 4, 1};
const OptionalValues c = {2, 2, 3, 5, 6, 4, 9, 7, 3, 6};

TEST(CanonicalCorrelation, TurnsOverWithItsSets) {
    const auto straight = fitted({a, b}, {c});
    const auto turned = fitted({c}, {a, b});
    ASSERT_TRUE(straight && turned);
    ASSERT_EQ(straight->functions.size(), 1U);
    const CanonicalFunction& one = straight->functions.front();
    const CanonicalFunction& other = turned->functions.front();
    EXPECT_TRUE(closeTo(one.correlation, other.correlation));
    EXPECT_TRUE(closeTo(one.x.redundancy, other.y.redundancy));
    EXPECT_TRUE(closeTo(straight->tests.front().pValue, turned->tests.front().pValue));
    double products = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        products += one.xScores[i] * one.yScores[i];
    }
    EXPECT_TRUE(closeTo(products / 9.0, one.correlation));
}

TEST(CanonicalCorrelation, DoesNotDependOnUnitsOrOffsets) {
    OptionalValues moved;
    for (const auto& value : a) {
        moved.emplace_back(1e3 + 1e-3 * *value);
    }
    const auto plain = fitted({a, b}, {c});
    const auto other = fitted({moved, b}, {c});
    EXPECT_TRUE(closeTo(other->functions.front().correlation, plain->functions.front().correlation,
                        {.relative = 1e-9}));
}

TEST(CanonicalCorrelation, SaysWhatStandsInItsWay) {
    struct Case {
        int line;
        std::vector<OptionalValues> x;
        std::vector<OptionalValues> y;
        std::string obstacle;
    };
    OptionalValues sum;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum.emplace_back(0.3 * *a[i] + 0.7 * *b[i]);
    }
    const std::vector<Case> cases = {
        {__LINE__,
         {{1, 2, 3}, {2, 1, 4}},
         {{3, 1, 2}},
         "Too few complete cases (3) for 3 variables in both sets. Collect more cases or reduce "
         "the number of variables."},
        {__LINE__,
         {a, b, sum},
         {c},
         "The variables of the first set are perfectly collinear, or one does not vary. Drop a "
         "redundant variable."},
        {__LINE__,
         {a},
         {OptionalValues(10, 0.1)},
         "The variables of the second set are perfectly collinear, or one does not vary. Drop a "
         "redundant variable."},
        {__LINE__,
         {a, b},
         {sum, c},
         "A combination of the first set reproduces one of the second exactly, so nothing can be "
         "tested. Look for a variable that is computed from variables of the other set."},
    };
    for (const Case& each : cases) {
        const auto result = fitted(each.x, each.y);
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(result->functions.empty() && result->tests.empty()) << each.line;
    }
    EXPECT_EQ(obstacles(fitted({a, b}, {b, c}, {"a", "b"}, {"b", "c"})->readiness),
              Texts{"The variable \"b\" stands in both sets, so that they correlate perfectly. "
                    "Keep it in one of them."});
    EXPECT_FALSE(fitted({}, {a}));
    EXPECT_FALSE(fitted({a}, {{1, 2}}));
}

TEST(CanonicalCorrelation, TellsOfFewCasesAndDroppedRows) {
    OptionalValues gaps = a;
    gaps[0] = std::nullopt;
    const Texts expected = {
        "1 row(s) were dropped because a variable of either set was missing.",
        "There are fewer than 10 cases per variable (9 cases, 2 variables). Canonical correlations "
        "are too high and coefficients unstable in small samples; treat this as exploratory."};
    EXPECT_EQ(cautions(fitted({gaps}, {c})->readiness), expected);
}

}  // namespace

}  // namespace sorvane
