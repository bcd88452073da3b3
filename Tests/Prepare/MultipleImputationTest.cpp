#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "SorvaneCore/Prepare/Imputation/MICEAnalysis.h"
#include "SorvaneCore/Prepare/Imputation/NearestDonors.h"
#include "SorvaneCore/Prepare/Imputation/PooledT.h"
#include "Tests/Prepare/OptionalNumbers.h"

namespace sorvane {
namespace {

using test::Numbers;

std::vector<std::string> messages(const AnalysisReadiness& readiness) {
    std::vector<std::string> texts;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        texts.push_back(issue.message);
    }
    return texts;
}

/// Three columns of forty rows that hang together, some cells of the first two missing.
std::vector<NumericColumn> someColumns() {
    std::mt19937 draw(7);
    Numbers x;
    Numbers y;
    Numbers z;
    for (int row = 0; row < 40; ++row) {
        const double value = static_cast<double>(draw() % 1000) / 100.0;
        z.emplace_back(value);
        x.push_back(row % 7 == 3 ? std::nullopt : std::optional(value + row % 3));
        y.push_back(row % 5 == 2 ? std::nullopt : std::optional(2.0 * value - row % 4));
    }
    return {NumericColumn(x), NumericColumn(y), NumericColumn(z)};
}

TEST(NearestDonors, FindWhatAStableSortWouldPutFirst) {
    std::mt19937 draw(1);
    for (int trial = 0; trial < 200; ++trial) {
        std::vector<double> predictions(1 + draw() % 30);
        for (double& prediction : predictions) {
            prediction = static_cast<double>(draw() % 7);
        }
        const std::size_t count = 1 + draw() % 6;
        NearestDonors donors(predictions, count);
        const double wanted = static_cast<double>(draw() % 14) / 2.0;
        std::vector<std::size_t> sorted(predictions.size());
        std::generate(sorted.begin(), sorted.end(), [n = std::size_t{0}]() mutable { return n++; });
        std::ranges::stable_sort(
            sorted, {}, [&](std::size_t at) { return std::abs(predictions[at] - wanted); });
        for (std::size_t choice = 0; choice < donors.count(); ++choice) {
            EXPECT_EQ(donors.donor(wanted, choice), sorted[choice]) << trial;
        }
    }
    const std::vector<double> huge = {9e307, 1e307, 9.5e307};
    NearestDonors donors(huge, 3);
    for (const std::size_t choice : {0U, 1U, 2U}) {
        EXPECT_EQ(donors.donor(-1.75e308, choice), choice) << "all are infinitely far";
    }
}

TEST(MultipleImputation, RepeatsAndDrawsFromObservedValues) {
    const std::vector<NumericColumn> columns = someColumns();
    const ImputationOptions options{.variableNames = {"x", "y", "z"}, .m = 6, .maxIterations = 3};
    const auto result = MultipleImputation::impute(columns, options);
    ASSERT_TRUE(result);
    EXPECT_EQ(result, MultipleImputation::impute(columns, options));
    EXPECT_EQ(result->readiness.status, AnalysisReadinessStatus::ready);
    const std::vector<double> observed = columns[0].present();
    for (const CompletedColumns& copy : result->imputedDatasets) {
        for (std::size_t row = 0; row < 40; ++row) {
            ASSERT_TRUE(copy[0][row]);
            EXPECT_TRUE(!columns[0][row] || copy[0][row] == columns[0][row]);
            EXPECT_NE(std::ranges::find(observed, *copy[0][row]), observed.end());
        }
    }
    EXPECT_NE(result->imputedDatasets[0], result->imputedDatasets[1]);

    // Later copies depend on the draws before them alone, however many follow.
    ImputationOptions fewer = options;
    fewer.m = 2;
    const auto first = MultipleImputation::impute(columns, fewer);
    EXPECT_EQ(first->imputedDatasets[1], result->imputedDatasets[1]);
}

TEST(MultipleImputation, FallsBackWhereThereIsNobodyToDrawFrom) {
    const NumericColumn nobody(Numbers{{}, {}, {}, {}, {}});
    const NumericColumn one(Numbers{3.0, {}, {}, {}, {}});
    const NumericColumn some(Numbers{1.0, 2.0, {}, 4.0, 5.0});
    const std::vector<NumericColumn> columns = {nobody, one, some};
    const auto result = MultipleImputation::impute(
        columns, {.variableNames = {"a", "b", "c"}, .m = 3, .maxIterations = 2});
    ASSERT_TRUE(result);
    for (const CompletedColumns& copy : result->imputedDatasets) {
        EXPECT_EQ(copy[0], (Numbers{{}, {}, {}, {}, {}})) << "nothing is made of nothing";
        EXPECT_EQ(copy[1], (Numbers{3.0, 3.0, 3.0, 3.0, 3.0})) << "one row fits no line";
        EXPECT_TRUE(copy[2][2]);
    }
    EXPECT_EQ(messages(result->readiness),
              (std::vector<std::string>{
                  "More than 40% of cells are missing; imputed values carry substantial "
                  "uncertainty and should be treated as exploratory.",
                  "These variables have no observed values and cannot be imputed; they are left "
                  "missing rather than filled: a",
                  "There are fewer than 30 rows (5); chained-equation models are unstable on small "
                  "samples.",
                  "Fewer than 5 imputations (3); pooled standard errors may be imprecise."}));
    const std::vector<NumericColumn> alone = {one};
    EXPECT_EQ(MultipleImputation::impute(alone, {.variableNames = {"b"}})->imputedDatasets[4][0],
              (Numbers{3.0, 3.0, 3.0, 3.0, 3.0}))
        << "predicted with no residual";
}

TEST(MultipleImputation, TracesWhatEachSweepFillsIn) {
    const std::vector<NumericColumn> columns = someColumns();
    ImputationOptions options{.variableNames = {"x", "y", "z"}, .m = 4, .maxIterations = 3};
    std::vector<double> shares;
    const auto caller = std::this_thread::get_id();
    options.progress = [&](double share) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        shares.push_back(share);
    };
    const auto traced = MultipleImputation::imputeTraced(columns, options);
    ASSERT_TRUE(traced);
    EXPECT_EQ(traced->result,
              MultipleImputation::impute(
                  columns, {.variableNames = {"x", "y", "z"}, .m = 4, .maxIterations = 3}));
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_GE(shares.size(), 3U);
    EXPECT_LE(shares.back(), 1.0);
    ASSERT_EQ(traced->trace.moments.size(), 4U);
    ASSERT_EQ(traced->trace.moments[3].size(), 3U);
    double sum = 0.0;
    double count = 0.0;
    for (std::size_t row = 0; row < columns[0].size(); ++row) {
        if (!columns[0][row]) {
            sum += *traced->result.imputedDatasets[3][0][row];
            count += 1.0;
        }
    }
    EXPECT_NEAR(traced->trace.moments[3].back()[0].mean, sum / count, 1e-12);
    EXPECT_EQ(traced->trace.stepsWithoutFit, (std::vector<std::int64_t>{0, 0, 0}));

    const NumericColumn constant(Numbers{1.0, 1.0, 1.0, 1.0, 1.0});
    const NumericColumn gap(Numbers{1.0, 2.0, {}, 4.0, 5.0});
    const std::vector<NumericColumn> collinear = {constant, gap};
    EXPECT_EQ(MultipleImputation::imputeTraced(
                  collinear, {.variableNames = {"c", "g"}, .m = 2, .maxIterations = 3})
                  ->trace.stepsWithoutFit,
              (std::vector<std::int64_t>{0, 6}));
}

TEST(MultipleImputation, EndsBetweenSweepsAndRefusesWhatItCannotRun) {
    const std::vector<NumericColumn> columns = someColumns();
    int sweeps = 0;
    ImputationOptions options{.variableNames = {"x", "y", "z"}, .m = 1, .maxIterations = 9};
    options.shouldContinue = [&sweeps] {
        return ++sweeps < 4;
    };
    EXPECT_FALSE(MultipleImputation::impute(columns, options));
    EXPECT_EQ(sweeps, 4);
    const std::vector<std::string> names = {"x", "y", "z"};
    EXPECT_FALSE(MultipleImputation::impute(columns, {.variableNames = names, .m = 0}));
    EXPECT_FALSE(MultipleImputation::impute(columns, {.variableNames = names, .maxIterations = 0}));
    EXPECT_FALSE(MultipleImputation::impute(columns, {.variableNames = {"x"}}));
    const std::vector<NumericColumn> ragged = {columns[0], NumericColumn(Numbers{1.0})};
    EXPECT_FALSE(MultipleImputation::impute(ragged, {.variableNames = {"x", "y"}}));
    EXPECT_FALSE(MultipleImputation::meanImpute(ragged));
    EXPECT_FALSE(MultipleImputation::medianImpute(ragged));
    EXPECT_FALSE(MultipleImputation::regressionImpute(ragged));
}

TEST(MultipleImputation, KeepsTheMeanWhereThePredictionIsBeyondAllNumbers) {
    const std::vector<NumericColumn> columns = {
        NumericColumn(Numbers{1e300, 2e300, {}, 1e300, 5e300}),
        NumericColumn(Numbers{1.0, 2.0, 1e300, 8.0, 9.0})};
    const auto result = MultipleImputation::impute(columns, {.variableNames = {"x", "y"}, .m = 1});
    ASSERT_TRUE(result);
    EXPECT_DOUBLE_EQ(result->imputedDatasets[0][0][2].value_or(0.0), 2.25e300);
}

TEST(MultipleImputation, PoolsCopiesThatAgreeOnTheNormalDistribution) {
    for (const std::size_t m : {2U, 3U, 7U, 20U, 40U}) {
        for (const double estimate : {2.0, 0.1, 1.0 / 3.0, -1e-9}) {
            const std::vector<double> same(m, estimate);
            const std::vector<double> variances(m, 0.25);
            const PooledEstimate pooled = MultipleImputation::pool(same, variances);
            EXPECT_EQ(pooled.degreesOfFreedom, std::numeric_limits<double>::infinity()) << m;
            EXPECT_EQ(pooled.fractionMissingInfo, 0.0);
            EXPECT_NEAR(pooled.confidenceIntervalUpper, estimate + 0.5 * 1.959963984540054, 1e-12);
        }
    }
    EXPECT_TRUE(std::isnan(MultipleImputation::pool({}, {}).standardError));
    const std::vector<double> unknown = {1.0, std::nan("")};
    const PooledEstimate pooled = MultipleImputation::pool(unknown, unknown);
    EXPECT_TRUE(std::isnan(pooled.standardError));
    EXPECT_TRUE(std::isnan(pooled.fractionMissingInfo));
}

TEST(PooledT, KeepsItsDigitsAsTheDegreesOfFreedomGrow) {
    // R's qt(0.975, df) and 2 * pt(-2, df).
    struct Case {
        double df, critical, pValue;
    };
    for (const Case& each : {Case{1e5, 1.9599877075346088, 0.045502963457506464},
                             Case{1e7, 1.9599642217672049, 0.045500290891842946},
                             Case{1e10, 1.9599639847772807, 0.045500263923353795},
                             Case{1e20, 1.9599639845400536, 0.045500263896358396}}) {
        EXPECT_NEAR(PooledT::critical(0.05, each.df), each.critical, 1e-10) << each.df;
        EXPECT_NEAR(PooledT::pValue(-2.0, each.df), each.pValue, 1e-9) << each.df;
    }
    for (const double df : {2e6, 1e10, std::numeric_limits<double>::infinity()}) {
        for (const double t : {50.0, 3000.0, -1e5, 1e200}) {
            EXPECT_EQ(PooledT::pValue(t, df), 0.0) << t << " at " << df;
        }
    }
}

TEST(MICEAnalysis, PoolsWhatTheCopiesGive) {
    const std::vector<NumericColumn> columns = someColumns();
    const std::vector<std::string> names = {"x", "y", "z"};
    const auto imputed = MultipleImputation::impute(columns, {.variableNames = names});
    ASSERT_TRUE(imputed);
    const auto& copies = imputed->imputedDatasets;
    const auto coefficients = MICEAnalysis::pooledRegression(copies, names, "y", {"x", "z"});
    ASSERT_TRUE(coefficients);
    ASSERT_EQ(coefficients->size(), 3U);
    EXPECT_EQ(coefficients->front().name, "(Intercept)");
    EXPECT_GT((*coefficients)[2].estimate, 0.0);
    EXPECT_LT((*coefficients)[2].ciLower, (*coefficients)[2].estimate);
    const auto correlation = MICEAnalysis::pooledCorrelation(copies, names, "x", "z");
    ASSERT_TRUE(correlation);
    EXPECT_EQ(correlation->m, 5);
    EXPECT_GT(correlation->r, 0.9);
    EXPECT_FALSE(MICEAnalysis::pooledCorrelation(copies, names, "x", "gone"));
    EXPECT_FALSE(MICEAnalysis::pooledRegression({}, names, "y", {"x"}));
}

}  // namespace
}  // namespace sorvane
