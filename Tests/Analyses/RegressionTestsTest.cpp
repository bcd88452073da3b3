#include "SorvaneCore/Analyses/Basics/RegressionTests.h"

#include <cmath>

#include <gtest/gtest.h>

#include "Tests/Analyses/CodedColumns.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::closeTo;
using Values = std::vector<double>;

std::optional<MultipleRegressionResult> fitted(const std::vector<Values>& predictors,
                                               const Values& outcome) {
    const std::vector<std::span<const double>> columns(predictors.begin(), predictors.end());
    RegressionOptions options;
    for (std::size_t j = 0; j < predictors.size(); ++j) {
        options.predictorNames.push_back("x" + NumberText::integer(static_cast<int>(j + 1)));
    }
    return RegressionTests::ordinaryLeastSquares(columns, outcome, options);
}

std::vector<std::string> messages(const MultipleRegressionResult& result) {
    std::vector<std::string> lines;
    for (const AnalysisReadinessIssue& issue : result.readiness.issues) {
        EXPECT_EQ(issue.status, AnalysisReadinessStatus::caution);
        lines.push_back(issue.message);
    }
    return lines;
}

TEST(RegressionTests, RefuseWhatCannotBeFitted) {
    const Values x = {1, 2, 3, 4, 5, 7};
    const Values y = {2, 1, 4, 3, 6, 5};
    EXPECT_TRUE(fitted({x}, y));
    EXPECT_FALSE(fitted({x, x}, y)) << "a duplicated predictor";
    EXPECT_FALSE(fitted({Values(6, 1e9)}, y)) << "a constant predictor";
    EXPECT_FALSE(fitted({{0.3, 0.1 + 0.2, 0.3, 0.3, 0.3, 0.1 + 0.2}}, y)) << "but for rounding";
    EXPECT_FALSE(fitted({{1, 2, 3}}, y)) << "a shorter predictor";
    EXPECT_FALSE(fitted({{1, 4}, {2, 9}}, {1, 2})) << "fewer cases than coefficients";
    EXPECT_FALSE(fitted({{1, 2, 3, 4, 5, std::nan("")}}, y)) << "a value that is not a number";
    const std::vector<std::span<const double>> columns = {x};
    EXPECT_FALSE(RegressionTests::ordinaryLeastSquares(columns, y, {})) << "no name";
}

TEST(RegressionTests, FindAnExactRelationOnALargeOffset) {
    Values a;
    Values b;
    Values y;
    for (int i = 0; i < 40; ++i) {
        a.push_back(1e9 + i * i % 11);
        b.push_back(-3e8 + i % 7);
        y.push_back(5.0 + 2.0 * (a.back() - 1e9) - 0.5 * (b.back() + 3e8));
    }
    const auto result = fitted({a, b}, y);
    ASSERT_TRUE(result);
    EXPECT_TRUE(closeTo(result->coefficients[1].estimate, 2.0));
    EXPECT_TRUE(closeTo(result->coefficients[2].estimate, -0.5));
    EXPECT_TRUE(closeTo(result->coefficients[0].estimate, 5.0 - 2e9 - 1.5e8));
    EXPECT_TRUE(closeTo(result->rSquared, 1.0));
    EXPECT_EQ(result->coefficients[0].name, "Intercept");
    EXPECT_FALSE(result->coefficients[0].standardizedEstimate);
}

TEST(RegressionTests, HaveNoErrorWithoutResidualDegreesOfFreedom) {
    const auto result = fitted({{1, 2, 4}, {1, 5, 2}}, {3, 1, 2});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->dfResidual, 0);
    EXPECT_TRUE(closeTo(result->rSquared, 1.0));
    EXPECT_TRUE(std::isnan(result->fStatistic));
    EXPECT_TRUE(std::isnan(result->pValue));
    EXPECT_TRUE(std::isnan(result->coefficients[1].standardError));
    EXPECT_TRUE(std::isnan(result->coefficients[1].pValue));
}

TEST(RegressionTests, HaveNoExplainedShareOfAConstantOutcome) {
    const auto result = fitted({{1, 2, 4, 7}}, Values(4, 0.1));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->coefficients[1].estimate, 0.0);
    EXPECT_TRUE(std::isnan(result->rSquared));
    EXPECT_FALSE(result->coefficients[1].standardizedEstimate);
    const auto nearly = fitted({{1, 2, 4, 7}}, {0.3, 0.1 + 0.2, 0.3, 0.3});
    ASSERT_TRUE(nearly);
    EXPECT_TRUE(std::isnan(nearly->rSquared));
}

TEST(RegressionTests, WarnOfSmallSamples) {
    const auto fitOfSize = [](std::size_t count, std::size_t predictorCount) {
        std::mt19937_64 random(count);
        std::vector<Values> predictors(predictorCount);
        for (Values& predictor : predictors) {
            predictor = test::randomValues(random, count, 1000);
        }
        return messages(*fitted(predictors, test::randomValues(random, count, 1000)));
    };
    const std::vector<std::string> nine = {
        "There are fewer than 10 cases per predictor (9 cases, 1 predictor(s)). Coefficient "
        "estimates may be unstable; treat this as exploratory.",
        "Residual degrees of freedom are low (7); standard errors and p-values are imprecise on a "
        "small sample."};
    EXPECT_EQ(fitOfSize(9, 1), nine);
    EXPECT_EQ(fitOfSize(10, 1).size(), 1U);
    EXPECT_EQ(fitOfSize(21, 1).size(), 1U) << "19 degrees of freedom";
    EXPECT_TRUE(fitOfSize(22, 1).empty()) << "20 degrees of freedom";
    EXPECT_EQ(fitOfSize(29, 3).size(), 1U);
    EXPECT_TRUE(fitOfSize(30, 3).empty());
}

TEST(RegressionTests, LeaveOutIncompleteRows) {
    std::mt19937_64 random(29);
    const std::vector<test::OptionalValues> rows = {test::randomAnswers(random, 90, 50, true),
                                                    test::randomAnswers(random, 90, 7, true),
                                                    test::randomAnswers(random, 90, 9, true)};
    std::vector<Values> dense(3);
    for (std::size_t i = 0; i < 90; ++i) {
        if (rows[0][i] && rows[1][i] && rows[2][i]) {
            for (std::size_t j = 0; j < 3; ++j) {
                dense[j].push_back(*rows[j][i]);
            }
        }
    }
    auto expected = fitted({dense[1], dense[2]}, dense[0]);
    ASSERT_TRUE(expected);
    const RegressionOptions options{.predictorNames = {"x1", "x2"}};
    const auto dropped = 90 - static_cast<std::int64_t>(dense[0].size());
    for (const auto form : {test::codedColumn, test::plainColumn}) {
        const std::vector<NumericColumn> predictors = {form(rows[1]), form(rows[2])};
        const auto result =
            RegressionTests::ordinaryLeastSquares(predictors, form(rows[0]), options);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->coefficients, expected->coefficients);
        EXPECT_EQ(result->readiness.totalRows, 90);
        EXPECT_EQ(messages(*result).back(),
                  NumberText::integer(dropped) +
                      " row(s) were dropped by listwise deletion because the outcome or a "
                      "predictor was missing.");
    }
}

}  // namespace

}  // namespace sorvane
