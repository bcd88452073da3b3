#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Prepare/Imputation/MICEAnalysis.h"
#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"
#include "Tests/Prepare/OptionalNumbers.h"
#include "Tests/Support/Closeness.h"

/// Imputed and pooled figures against R, closed forms and counts.
namespace sorvane {
namespace {

using test::closeTo;
using test::none;
using test::Numbers;

const std::vector<std::string> variables = {"x", "z", "y"};

/// Three completed copies, which differ in what was filled in for y.
std::vector<CompletedColumns> threeCopies() {
    const Numbers x = {1, 2, 3, 4, 5, 6};
    const Numbers z = {2, 1, 4, 3, 6, 5};
    return {{x, z, {2, 4, 5, 8, 9, 13}}, {x, z, {2, 4, 6, 8, 9, 12}}, {x, z, {2, 4, 5, 7, 9, 17}}};
}

TEST(MICEAnalysis, PoolsRegressionsAsThePackageDoes) {
    const std::vector<CompletedColumns> copies = threeCopies();
    const auto pooled = MICEAnalysis::pooledRegression(copies, variables, "y", {"x", "z"});
    ASSERT_TRUE(pooled);
    // R 4.2.2, mice 3.15.0: pool.scalar(n = Inf) of lm(y ~ x + z), t and limits by pt and qt;
    // the fraction is (1 + 1/m) B / T.
    const PooledCoefficient expected[] = {
        {"(Intercept)", -0.437500000000001, 1.7318698192958, -0.252617139651925, 0.803557108041465,
         -4.08808021683697, 3.21308021683697, 0.340927727309269, 17.2070075342873},
        {"x", 2.61805555555556, 0.915482189279993, 2.85975586003983, 0.0247673772342688,
         0.446193802192225, 4.78991730891889, 0.538811208930318, 6.88900899880865},
        {"z", -0.493055555555555, 0.690649352260449, -0.713901423264667, 0.478274637562828,
         -1.87681427158165, 0.890703160470539, 0.18966737438075, 55.5961517041661}};
    ASSERT_EQ(pooled->size(), 3U);
    for (std::size_t j = 0; j < 3; ++j) {
        const PooledCoefficient& got = (*pooled)[j];
        EXPECT_EQ(got.name, expected[j].name);
        for (const auto member :
             {&PooledCoefficient::estimate, &PooledCoefficient::standardError,
              &PooledCoefficient::t, &PooledCoefficient::pValue, &PooledCoefficient::ciLower,
              &PooledCoefficient::ciUpper, &PooledCoefficient::fractionMissingInfo,
              &PooledCoefficient::degreesOfFreedom}) {
            EXPECT_TRUE(closeTo(got.*member, expected[j].*member, {.relative = 1e-8})) << got.name;
        }
    }
}

TEST(MICEAnalysis, PoolsMeansAndCorrelationsAtTheLevelAskedFor) {
    std::vector<CompletedColumns> copies = threeCopies();
    const auto mean = MICEAnalysis::pooledMean(copies, variables, "y", 0.9);
    ASSERT_TRUE(mean);
    // As above, of mean(y) with var(y) / 6.
    const test::Tolerance close{.relative = 1e-8};
    EXPECT_TRUE(closeTo(mean->estimate, 7.0, close));
    EXPECT_TRUE(closeTo(mean->standardError, 1.81046341520004, close));
    EXPECT_TRUE(closeTo(mean->degreesOfFreedom, 1740.5, close));
    EXPECT_TRUE(closeTo(mean->confidenceIntervalLower, 4.02046681536768, close));
    EXPECT_TRUE(closeTo(mean->confidenceIntervalUpper, 9.97953318463232, close));

    const auto r = MICEAnalysis::pooledCorrelation(copies, variables, "x", "y", 0.9);
    ASSERT_TRUE(r);
    EXPECT_TRUE(closeTo(r->r, 0.980667709627582, close));
    EXPECT_TRUE(closeTo(r->ciLower, 0.350900061295284, close));
    EXPECT_TRUE(closeTo(r->ciUpper, 0.999603540410714, close));
    EXPECT_TRUE(closeTo(r->fractionMissingInfo, 0.639737814380384, close));

    copies[1][2][3] = none;
    EXPECT_TRUE(std::isnan(MICEAnalysis::pooledMean(copies, variables, "y")->estimate))
        << "a cell that stayed missing is no zero";
    const std::vector<CompletedColumns> constant(
        3, CompletedColumns{std::vector<std::optional<double>>(7, 0.0004)});
    EXPECT_EQ(MICEAnalysis::pooledMean(constant, {"same"}, "same")->estimate, 0.0004);
    EXPECT_EQ(MICEAnalysis::pooledMean(constant, {"same"}, "same")->standardError, 0.0);
    const double correlations[] = {0.5, 0.6};
    EXPECT_FALSE(MICEAnalysis::pooledCorrelation(correlations, 3));
    EXPECT_TRUE(MICEAnalysis::pooledCorrelation(correlations, 4));
    const std::vector<CompletedColumns> oneRow = {{{1.0}, {2.0}, {3.0}}};
    EXPECT_FALSE(MICEAnalysis::pooledMean(oneRow, variables, "y"));
}

TEST(SingleImputation, FillsEveryGapWithOneFigure) {
    const std::vector<NumericColumn> columns = {
        NumericColumn(Numbers{1, 2, none, 4, 6, 7}), NumericColumn(Numbers{2, none, 5, 7, 8, 12}),
        NumericColumn(Numbers{1, 0, 1, 0, 1, 1}), NumericColumn(Numbers(6))};
    // R: lm(a ~ b + c) and lm(b ~ a + c) on the rows with the outcome, gaps of the others at their
    // means.
    const struct {
        int line;
        std::optional<CompletedColumns> filled;
        double first;
        double second;
    } cases[] = {
        {__LINE__, MultipleImputation::meanImpute(columns), 4.0, 6.8},
        {__LINE__, MultipleImputation::medianImpute(columns), 4.0, 7.0},
        {__LINE__, MultipleImputation::regressionImpute(columns), 3.21504669209523,
         3.90476190476190},
    };
    for (const auto& each : cases) {
        ASSERT_TRUE(each.filled) << each.line;
        const CompletedColumns& filled = *each.filled;
        EXPECT_TRUE(closeTo(filled[0][2].value_or(0.0), each.first, {.relative = 1e-9}))
            << each.line;
        EXPECT_TRUE(closeTo(filled[1][1].value_or(0.0), each.second, {.relative = 1e-9}))
            << each.line;
        EXPECT_EQ(filled[0][5], 7.0) << each.line;
        EXPECT_EQ(filled[2], columns[2].rows()) << each.line;
        EXPECT_EQ(filled[3], Numbers(6)) << each.line << ": nothing is made of nothing";
    }
    const std::vector<NumericColumn> even = {NumericColumn(Numbers{9, none, 1, 2, 5})};
    EXPECT_EQ((*MultipleImputation::medianImpute(even))[0][1], 3.5);
}

TEST(MultipleImputation, DrawsNormalResidualsWhereNoDonorsAreWanted) {
    // Four rows give a line of slope 8 with 180 of squares on two degrees of freedom.
    Numbers x = {1, 2, 3, 4};
    Numbers y = {10, 30, 20, 40};
    constexpr std::size_t drawn = 4000;
    for (std::size_t i = 0; i < drawn; ++i) {
        x.emplace_back(static_cast<double>(i % 7));
        y.emplace_back(none);
    }
    const std::vector<NumericColumn> columns = {NumericColumn(x), NumericColumn(y)};
    const auto traced = MultipleImputation::imputeTraced(
        columns, {.variableNames = {"x", "y"}, .m = 1, .maxIterations = 2, .donorCount = 0});
    ASSERT_TRUE(traced);
    const CompletedColumns& copy = traced->result.imputedDatasets[0];
    double sum = 0.0;
    double squares = 0.0;
    double imputedSum = 0.0;
    double imputedSquares = 0.0;
    int far = 0;
    const double sigma = std::sqrt(90.0);
    for (std::size_t row = 4; row < x.size(); ++row) {
        const double residual = copy[1][row].value_or(0.0) - 5.0 - 8.0 * *x[row];
        sum += residual;
        squares += residual * residual;
        far += std::abs(residual) > 1.96 * sigma ? 1 : 0;
        imputedSum += *copy[1][row];
        imputedSquares += *copy[1][row] * *copy[1][row];
    }
    // Five standard errors of a mean, a deviation and a share of one in twenty.
    EXPECT_NEAR(sum / drawn, 0.0, 5.0 * sigma / std::sqrt(drawn));
    EXPECT_NEAR(std::sqrt(squares / drawn), sigma, 5.0 * sigma / std::sqrt(2.0 * drawn));
    EXPECT_NEAR(static_cast<double>(far) / drawn, 0.05, 5.0 * std::sqrt(0.05 * 0.95 / drawn));

    const ImputedMoments& moments = traced->trace.moments[0].back()[1];
    EXPECT_TRUE(closeTo(moments.mean, imputedSum / drawn, {.relative = 1e-10}));
    EXPECT_TRUE(
        closeTo(moments.standardDeviation,
                std::sqrt((imputedSquares - imputedSum * imputedSum / drawn) / (drawn - 1.0)),
                {.relative = 1e-10}));
}

TEST(MultipleImputation, TakesADeviationOfFilledCellsFromTheirOwnMean) {
    Numbers x(20, 1.0);
    Numbers z;
    for (std::size_t row = 0; row < x.size(); ++row) {
        x[row] = static_cast<double>(row * row % 11);
        z.emplace_back(static_cast<double>(row));
    }
    x[3] = x[12] = none;
    const std::vector<NumericColumn> columns = {NumericColumn(x), NumericColumn(z)};
    const auto traced = MultipleImputation::imputeTraced(
        columns, {.variableNames = {"x", "z"}, .m = 3, .maxIterations = 4});
    ASSERT_TRUE(traced);
    for (std::size_t copy = 0; copy < 3; ++copy) {
        const CompletedColumns& filled = traced->result.imputedDatasets[copy];
        const double apart = *filled[0][3] - *filled[0][12];
        EXPECT_TRUE(closeTo(traced->trace.moments[copy].back()[0].standardDeviation,
                            std::abs(apart) / std::sqrt(2.0)));
    }
}

TEST(MultipleImputation, WarnsAtItsBoundsAndNotBefore) {
    // Ten columns of so many rows, so many cells of which are missing, never a whole column.
    const auto warnings = [](std::size_t rows, std::size_t missing, std::int64_t m) {
        std::mt19937 random(3);
        std::vector<Numbers> cells(10, Numbers(rows));
        for (std::size_t at = 0; at < 10 * rows; ++at) {
            cells[at % 10][at / 10] = static_cast<double>(random() % 9);
        }
        for (std::size_t at = 0; at < missing; ++at) {
            cells[at % 10][at / 10] = none;
        }
        const std::vector<NumericColumn> columns(cells.begin(), cells.end());
        const auto result = MultipleImputation::impute(
            columns, {.variableNames = std::vector<std::string>(10, "v"), .m = m});
        std::string found;
        for (const AnalysisReadinessIssue& issue : result->readiness.issues) {
            found +=
                (found.empty() ? "" : " | ") + issue.message.substr(0, issue.message.find(' '));
        }
        return found;
    };
    EXPECT_EQ(warnings(30, 120, 5), "") << "40 % of 300 cells, 30 rows, 5 copies";
    EXPECT_EQ(warnings(30, 121, 5), "More");
    EXPECT_EQ(warnings(29, 10, 5), "There");
    EXPECT_EQ(warnings(30, 10, 4), "Fewer");
    EXPECT_EQ(warnings(30, 0, 5), "No");
    EXPECT_EQ(warnings(20, 81, 1), "More | There | Fewer");
}

}  // namespace
}  // namespace sorvane
