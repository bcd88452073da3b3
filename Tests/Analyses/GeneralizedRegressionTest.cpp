#include <cmath>
#include <functional>
#include <numeric>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/GeneralizedRegression/LogisticRegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/OrdinalRegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/PoissonRegressionTests.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using Cells = std::vector<std::optional<double>>;
using Predictors = std::vector<Cells>;

std::vector<NumericColumn> columns(const Predictors& predictors) {
    return {predictors.begin(), predictors.end()};
}

std::vector<std::string> names(const Predictors& predictors) {
    std::vector<std::string> result;
    while (result.size() < predictors.size()) {
        result.push_back("x" + NumberText::integer(static_cast<std::int64_t>(result.size() + 1)));
    }
    return result;
}

auto logistic(const Predictors& x, const Cells& y, int maxIterations = 100) {
    return LogisticRegressionTests::binaryLogistic(
        columns(x), NumericColumn(y), {.predictorNames = names(x), .maxIterations = maxIterations});
}

auto poisson(const Predictors& x, const Cells& y, int maxIterations = 100) {
    return PoissonRegressionTests::poisson(
        columns(x), NumericColumn(y), {.predictorNames = names(x), .maxIterations = maxIterations});
}

auto ordinal(const Predictors& x, const Cells& y, int maxIterations = 200) {
    return OrdinalRegressionTests::proportionalOdds(
        columns(x), NumericColumn(y), {.predictorNames = names(x), .maxIterations = maxIterations});
}

/// One cell per row number.
Cells cells(std::size_t count, const std::function<double(std::size_t)>& cell) {
    Cells result;
    for (std::size_t i = 0; i < count; ++i) {
        result.emplace_back(cell(i));
    }
    return result;
}

const Cells steps = cells(40, [](std::size_t i) { return 0.1 * static_cast<double>(i); });
const Cells wave = cells(40, [](std::size_t i) { return std::sin(static_cast<double>(i * i)); });
/// 1 in the last ten of forty rows.
const Cells lastTen = cells(40, [](std::size_t i) { return i < 30 ? 0.0 : 1.0; });

Cells split(std::size_t from) {
    return cells(40, [from](std::size_t i) { return i < from ? 0.0 : 1.0; });
}

/// Alternating answers, all of them 1 from a row on.
Cells alternatingUntil(std::size_t from) {
    return cells(40, [from](std::size_t i) { return i >= from || i % 2 == 0 ? 1.0 : 0.0; });
}

Cells withCell(Cells column, std::size_t row, std::optional<double> cell) {
    column[row] = cell;
    return column;
}

struct Blocked {
    int line;
    Predictors predictors;
    Cells outcome;
    std::string opening;
    int maxIterations = 100;
};

template <typename Fit>
void expectBlocked(const Blocked& row, const Fit& fit) {
    const auto result = fit(row.predictors, row.outcome, row.maxIterations);
    ASSERT_TRUE(result) << row.line;
    const std::vector<std::string> obstacles = test::obstacles(result->readiness);
    ASSERT_EQ(obstacles.size(), 1U) << row.line;
    EXPECT_TRUE(obstacles[0].starts_with(row.opening)) << row.line << ": " << obstacles[0];
    EXPECT_FALSE(result->converged) << row.line;
    EXPECT_TRUE(std::isnan(result->logLikelihood)) << row.line;
}

TEST(LogisticRegression, SaysWhyItCannotFit) {
    Cells touching = split(20);
    touching.insert(touching.end(), {0.0, 1.0});
    Cells tied = steps;
    tied.insert(tied.end(), {1.95, 1.95});
    const std::string separated = "The data are (quasi) perfectly separated";
    const std::string singular = "The information matrix is singular, so unique coefficients";
    const std::vector<Blocked> table = {
        {__LINE__,
         {{0.0, 1.0}},
         {0.0, 1.0},
         "There are not enough complete cases (2) to estimate 2"},
        {__LINE__, {steps}, split(0), "The outcome has only one level present (events: 40)."},
        {__LINE__, {steps}, split(40), "The outcome has only one level present (events: 0)."},
        {__LINE__, {steps}, split(20), separated},
        {__LINE__, {wave, steps}, split(20), separated},
        // Both answers at one value, a clean cut elsewhere.
        {__LINE__, {tied}, touching, separated},
        // A group that gives one answer, the other mixed.
        {__LINE__, {lastTen}, alternatingUntil(30), separated},
        {__LINE__, {wave, lastTen, steps}, alternatingUntil(30), separated},
        {__LINE__, {steps, steps}, alternatingUntil(40), singular},
        {__LINE__, {Cells(40, 3.0)}, alternatingUntil(40), singular},
        {__LINE__, {withCell(wave, 3, 1e200)}, split(20), "The fit produced non-finite values"},
        {__LINE__, {withCell(wave, 3, INFINITY)}, split(20), "The fit produced non-finite values"},
        {__LINE__, {wave}, alternatingUntil(33), "The fit did not converge within", 2}};
    for (const Blocked& row : table) {
        expectBlocked(row, logistic);
    }
}

/// Values far apart, five at a cut in their middle, and one so near to it that a step beside it
/// is lost in rounding.
Cells aroundACut(double gap) {
    Cells x;
    for (int i = -100; i <= 100; ++i) {
        if (i != 0) {
            x.emplace_back(500.0 * i);
        }
    }
    x.insert(x.end(), {0.0, 0.0, 0.0, 0.0, 0.0, gap});
    return x;
}

TEST(LogisticRegression, SeesACutThatIsTiedUnevenly) {
    for (const double gap : {100.0, 1.0, 0.3, 1e-2}) {
        const Cells x = aroundACut(gap);
        Cells y;
        for (const std::optional<double>& value : x) {
            y.emplace_back(*value > 0.0 ? 1.0 : 0.0);
        }
        y[200] = 1.0;
        y[203] = 1.0;
        expectBlocked({__LINE__, {x}, y, "The data are (quasi) perfectly separated"}, logistic);
        // One answer on the wrong side, and there is an optimum.
        y[150] = 0.0;
        y[50] = 1.0;
        const auto overlapping = logistic({x}, y);
        ASSERT_TRUE(overlapping);
        EXPECT_TRUE(overlapping->converged) << gap;
    }
}

TEST(LogisticRegression, FitsDataThatBarelyOverlap) {
    // Two answers changed over, with the outcome otherwise cut at a value of the predictor.
    const Cells outcome = withCell(withCell(split(20), 19, 1.0), 20, 0.0);
    const auto plain = logistic({steps}, outcome);
    ASSERT_TRUE(plain && plain->converged);
    EXPECT_NEAR(plain->coefficients[1].estimate, 13.1013, 1e-3);
    // The units of a predictor do not matter.
    for (const double scale : {1e-9, 1e9}) {
        const auto scaled = logistic(
            {cells(40, [scale](std::size_t i) { return (*steps[i] + 5.0) * scale; })}, outcome);
        ASSERT_TRUE(scaled && scaled->converged);
        EXPECT_TRUE(test::closeTo(scaled->coefficients[1].estimate * scale,
                                  plain->coefficients[1].estimate, {.relative = 1e-7}));
    }
    // Nor does overlap far in the middle of a long range.
    const Cells far = cells(1000, [](std::size_t i) { return static_cast<double>(i); });
    const auto wide = logistic(
        {far}, cells(1000, [](std::size_t i) { return i == 499 || (i > 500) ? 1.0 : 0.0; }));
    ASSERT_TRUE(wide && wide->converged);
    EXPECT_NEAR(wide->coefficients[1].estimate, 1.3101, 1e-3);
}

/// A predictor around 0, and what its rows are scored by: a larger value means more.
const Cells around =
    cells(200, [](std::size_t i) { return (static_cast<double>(i * 37 % 101) - 50.0) / 25.0; });
std::size_t score(std::size_t i) {
    return i * 53 % 97 + i * 37 % 101;
}
const Cells highScore = cells(200, [](std::size_t i) { return score(i) > 100 ? 1.0 : 0.0; });

TEST(GeneralizedRegressions, ConvergeBesideAnOutlierThatNobodyCoded) {
    // At the end of the trend it says nothing of the slope: R 4.2.2 glm and clm without that row.
    const Cells x = withCell(around, 0, 999999.0);
    const auto binary = logistic({x}, withCell(highScore, 0, 1.0));
    ASSERT_TRUE(binary && binary->converged);
    EXPECT_NEAR(binary->coefficients[1].estimate, 1.491979139722148, 1e-9);
    const Cells thirds =
        cells(200, [](std::size_t i) { return static_cast<double>(i == 0 ? 2 : score(i) / 67); });
    const auto ordered = ordinal({x}, thirds);
    ASSERT_TRUE(ordered && ordered->converged);
    EXPECT_NEAR(ordered->predictorEffects[0].estimate, 1.550197807309641, 1e-9);
    EXPECT_NEAR(ordered->predictorEffects[0].standardError, 0.184796341837, 1e-8);
    EXPECT_NEAR(ordered->thresholds[0].estimate, -1.981044460560939, 1e-9);
    EXPECT_NEAR(ordered->thresholds[1].standardError, 0.255858774545, 1e-8);
    const Cells counts =
        cells(200, [](std::size_t i) { return static_cast<double>(i == 0 ? 0 : score(i) / 40); });
    const auto counted = poisson({withCell(around, 0, -999999.0)}, counts);
    ASSERT_TRUE(counted && counted->converged);
    EXPECT_NEAR(counted->coefficients[1].estimate, 0.3339925802767948, 1e-9);
}

TEST(LogisticRegression, DoesNotCallOverlapBesideAHugeOutlierSeparation) {
    // Against the trend and along it; whether the fit ends is left to rounding.
    for (const double answer : {0.0, 1.0}) {
        for (const double outlier : {1e10, 1e12}) {
            const auto result =
                logistic({withCell(around, 0, outlier)}, withCell(highScore, 0, answer));
            ASSERT_TRUE(result);
            for (const std::string& message : test::obstacles(result->readiness)) {
                EXPECT_EQ(message.find("perfectly separated"), std::string::npos)
                    << answer << " " << outlier << ": " << message;
            }
        }
    }
}

TEST(LogisticRegression, CautionsInOrder) {
    const Cells outcome = withCell(alternatingUntil(40), 7, std::nullopt);
    const auto result = logistic({wave, withCell(steps, 8, std::nullopt)}, outcome);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->n, 38);
    EXPECT_EQ(test::cautions(result->readiness),
              (std::vector<std::string>{
                  "There are fewer than 10 events per predictor (19 in the rarer outcome class, 2 "
                  "predictor(s)). Logistic estimates may be biased and unstable; treat this as "
                  "exploratory.",
                  "2 row(s) were dropped by listwise deletion because the outcome or a predictor "
                  "was missing."}));
    EXPECT_EQ(logistic({wave, steps}, alternatingUntil(40))->readiness.status,
              AnalysisReadinessStatus::ready);
}

TEST(LogisticRegression, ReadsLabels) {
    const auto column = [](const std::string& no, const std::string& yes) {
        std::vector<std::string> labels;
        for (std::size_t i = 0; i < 40; ++i) {
            labels.push_back(i % 3 == 0 ? yes : i == 4 ? "NA" : " " + no);
        }
        return TextColumn::of(labels);
    };
    struct Case {
        int line;
        std::string no;
        std::string yes;
        std::string event;
    };
    for (const Case& row : {Case{__LINE__, "no", "Yes", "Yes"}, Case{__LINE__, "9", "10", "10"},
                            Case{__LINE__, "b", "a", "b"}}) {
        const auto labels = column(row.no, row.yes);
        EXPECT_EQ(LogisticRegressionTests::eventLabel(*labels), row.event) << row.line;
        const auto result = LogisticRegressionTests::binaryLogistic(columns({wave}), *labels,
                                                                    {.predictorNames = {"x"}});
        ASSERT_TRUE(result) << row.line;
        EXPECT_EQ(result->n, 39) << row.line;
        EXPECT_EQ(result->events, row.event == row.yes ? 14 : 25) << row.line;
    }
    const auto three = TextColumn::of(std::vector<std::string>{"a", "b", "c"});
    EXPECT_FALSE(LogisticRegressionTests::eventLabel(*three));
}

TEST(GeneralizedRegressions, RefuseFaultyCalls) {
    EXPECT_FALSE(logistic({wave}, withCell(split(20), 0, 2.0)));
    EXPECT_FALSE(logistic({{1.0, 2.0}}, split(20)));
    EXPECT_FALSE(poisson({wave}, withCell(split(20), 0, -1.0)));
    EXPECT_FALSE(poisson({wave}, withCell(split(20), 0, 0.5)));
    EXPECT_FALSE(
        OrdinalRegressionTests::proportionalOdds(columns({wave}), NumericColumn(steps), {}));
    const auto labels = TextColumn::of(std::vector<std::string>(40, "low"));
    const OrdinalRegressionOptions options{.predictorNames = {"x"}};
    for (const std::vector<std::string>& order :
         {std::vector<std::string>{"high"}, std::vector<std::string>{"low", "low"}}) {
        EXPECT_FALSE(
            OrdinalRegressionTests::proportionalOdds(columns({wave}), *labels, order, options));
    }
}

TEST(PoissonRegression, SaysWhyItCannotFit) {
    const Cells counts = cells(40, [](std::size_t i) { return static_cast<double>(i * 7 % 5); });
    Cells zeros = counts;
    std::fill(zeros.begin() + 30, zeros.end(), 0.0);
    const std::string diverged = "The fit diverged";
    const std::vector<Blocked> table = {
        {__LINE__,
         {{0.0, 1.0}},
         {0.0, 1.0},
         "There are not enough complete cases (2) to estimate 2"},
        {__LINE__, {steps}, split(40), diverged},
        {__LINE__, {lastTen}, zeros, diverged},
        {__LINE__, {wave, lastTen}, zeros, diverged},
        {__LINE__, {steps, steps}, counts, "The information matrix is singular"},
        {__LINE__, {withCell(wave, 3, 1e200)}, counts, "The fit produced non-finite values"},
        {__LINE__, {wave}, counts, "The fit did not converge within", 2}};
    for (const Blocked& row : table) {
        expectBlocked(row, poisson);
    }
}

TEST(PoissonRegression, SeesCountsThatStandAtOneValueOnly) {
    for (const double gap : {100.0, 1.0, 1e-2}) {
        Cells x = aroundACut(gap);
        x.erase(x.begin(), x.begin() + 100);
        Cells y(x.size(), 0.0);
        y[100] = 1.0;
        y[103] = 2.0;
        expectBlocked({__LINE__, {x}, y, "The fit diverged"}, poisson);
    }
}

TEST(PoissonRegression, FitsRatesOverManyOrders) {
    // Rates from 1e-20 to 1e6, most of which count nothing.
    const auto rate = [](std::size_t i) {
        return std::floor(std::exp(-45.0 + 1.5 * static_cast<double>(i)));
    };
    const auto result = poisson({steps}, cells(40, rate));
    ASSERT_TRUE(result && result->converged);
    EXPECT_NEAR(result->coefficients[1].estimate, 15.0, 0.01);
}

TEST(PoissonRegression, CautionsAboveItsThresholdsOnly) {
    // Of 2 and 6 around a mean of 4, by hand.
    const double perCase = 2.0 * std::log(2.0 / 4.0) + 6.0 * std::log(6.0 / 4.0);
    const Cells outcome = cells(40, [](std::size_t i) { return i % 4 < 2 ? 2.0 : 6.0; });
    const Cells balanced = cells(40, [](std::size_t i) { return i % 2 == 0 ? 1.0 : -1.0; });
    const auto result = poisson({balanced}, outcome);
    ASSERT_TRUE(result);
    EXPECT_TRUE(test::closeTo(result->dispersion, 40.0 * perCase / 38.0));
    EXPECT_EQ(result->readiness.status, AnalysisReadinessStatus::ready);
    const auto spread =
        poisson({balanced}, cells(40, [](std::size_t i) { return i % 4 < 2 ? 2.0 : 9.0; }));
    const auto cautions = test::cautions(spread->readiness);
    ASSERT_EQ(cautions.size(), 1U);
    EXPECT_TRUE(cautions[0].starts_with("The residual deviance per degree of freedom is " +
                                        NumberText::fixed(spread->dispersion, 2) + ", which"));
}

TEST(OrdinalRegression, SaysWhyItCannotFit) {
    const Cells thirds = cells(40, [](std::size_t i) { return static_cast<double>(i % 3); });
    const Cells ordered = cells(40, [](std::size_t i) { return static_cast<double>(i / 14); });
    Cells topInGroup = thirds;
    std::fill(topInGroup.begin() + 30, topInGroup.end(), 2.0);
    const std::string singular = "The information matrix is singular, so unique estimates";
    const std::vector<Blocked> table = {
        {__LINE__,
         {{1.0, 2.0, 4.0}},
         {1.0, 2.0, 3.0},
         "There are not enough complete cases (3) to "
         "estimate 3 coefficient(s)."},
        {__LINE__, {wave}, split(20), "The outcome has only 2 level(s) present."},
        {__LINE__, {steps}, ordered, singular},
        {__LINE__, {lastTen}, topInGroup, singular},
        {__LINE__, {wave, wave}, thirds, singular},
        {__LINE__, {withCell(wave, 3, 1e200)}, thirds, "The fit produced non-finite values"},
        {__LINE__, {wave}, thirds, "The fit did not converge within", 1}};
    for (const Blocked& row : table) {
        expectBlocked(row, ordinal);
    }
    const auto labels = TextColumn::of(std::vector<std::string>(40, "low"));
    const std::vector<std::string> order = {"low", "mid", "high"};
    const auto empty = OrdinalRegressionTests::proportionalOdds(columns({wave}), *labels, order,
                                                                {.predictorNames = {"x"}});
    EXPECT_TRUE(test::obstacles(empty->readiness)[0].starts_with(
        "The estimated thresholds are not in increasing order"));
}

TEST(OrdinalRegression, ReversesWithItsLevels) {
    // From the other end the slopes change their sign and the thresholds also their order.
    SplitMix64 random(3);
    const Cells outcome = cells(200, [&random](std::size_t i) {
        return std::floor(4.0 * random.nextUnitDouble() + 0.01 * static_cast<double>(i % 80));
    });
    const Cells x = cells(200, [](std::size_t i) { return static_cast<double>(i % 80); });
    const auto up = ordinal({x}, outcome);
    const auto down = ordinal({x}, cells(200, [&](std::size_t i) { return -*outcome[i]; }));
    ASSERT_TRUE(up && down && up->converged);
    EXPECT_GT(up->predictorEffects[0].estimate, 0.0);
    const test::Tolerance tolerance{.relative = 1e-8, .absolute = 1e-10};
    EXPECT_TRUE(test::closeTo(down->predictorEffects[0].estimate, -up->predictorEffects[0].estimate,
                              tolerance));
    const std::size_t count = up->thresholds.size();
    for (std::size_t j = 0; j < count; ++j) {
        const OrdinalThreshold& mirrored = down->thresholds[count - 1 - j];
        EXPECT_TRUE(test::closeTo(mirrored.estimate, -up->thresholds[j].estimate, tolerance));
        EXPECT_TRUE(
            test::closeTo(mirrored.standardError, up->thresholds[j].standardError, tolerance));
    }
    EXPECT_EQ(up->thresholds[0].name, "0|1");
    EXPECT_NEAR(up->logLikelihood, down->logLikelihood, 1e-9);
}

TEST(OrdinalRegression, CautionsInOrder) {
    const Cells outcome =
        cells(40, [](std::size_t i) { return i < 3 ? 9.0 : static_cast<double>(i % 3); });
    const auto result = ordinal({wave, withCell(steps, 20, std::nullopt)}, outcome);
    ASSERT_TRUE(result && result->converged);
    const auto cautions = test::cautions(result->readiness);
    ASSERT_EQ(cautions.size(), 4U);
    EXPECT_TRUE(cautions[0].starts_with("The smallest outcome level has only 3 cases."));
    EXPECT_TRUE(cautions[1].starts_with(
        "There are fewer than 10 cases per estimated parameter (39 cases, 5 parameters)."));
    EXPECT_TRUE(cautions[2].starts_with("This model assumes proportional odds"));
    EXPECT_TRUE(cautions[3].starts_with("1 row(s) were dropped"));
}

}  // namespace
}  // namespace sorvane
