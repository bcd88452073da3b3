#include "SorvaneCore/Models/Survival/SurvivalAnalysis.h"

#include <cmath>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using SurvivalAnalysis::coxPH;
using SurvivalAnalysis::kaplanMeier;
using test::closeTo;
using Texts = std::vector<std::string>;
using Values = std::vector<std::optional<double>>;

const std::string allEvents =
    "Every case counts as an event; no observation is censored. If the event variable is not coded "
    "0 = censored / nonzero = event, the results are wrong.";
const std::string smallSample = "Small sample for survival estimation.";
const std::string fewEvents = "Few events; hazard ratios may be unstable.";
const std::string notConverged = "Newton\u2013Raphson stopped without a clean convergence signal.";

Texts messages(const AnalysisReadiness& readiness) {
    Texts result;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        result.push_back(issue.message);
    }
    return result;
}

std::optional<KaplanMeierResult> curve(const Values& time, const Values& event) {
    return kaplanMeier(NumericColumn(time), NumericColumn(event));
}

std::optional<CoxResult> cox(const Values& time,
                             const Values& event,
                             const std::vector<Values>& predictors) {
    CoxOptions options;
    std::vector<NumericColumn> columns;
    for (const Values& predictor : predictors) {
        columns.emplace_back(predictor);
        options.predictorNames.push_back("x" + std::to_string(columns.size()));
    }
    return coxPH(NumericColumn(time), NumericColumn(event), columns, options);
}

/// 0, 1, 2 ... up to `count`, then again from 0.
Values cycle(std::size_t rows, std::size_t count) {
    Values result;
    for (std::size_t i = 0; i < rows; ++i) {
        result.emplace_back(static_cast<double>(i % count));
    }
    return result;
}

TEST(KaplanMeier, KeepsCasesAtRiskThatAreCensoredAtTheTimeOfAnEvent) {
    const auto result = curve({3, 1, 2, 2, 4, -1, std::nullopt, 5}, {1, 1, 0, 2, 0, 1, 1, {}});
    ASSERT_TRUE(result);
    const KaplanMeierStratum& stratum = result->strata.at(0);
    EXPECT_EQ(stratum.name, "Overall");
    EXPECT_EQ(stratum.n, 5);
    EXPECT_EQ(stratum.events, 3);
    ASSERT_EQ(stratum.points.size(), 3U);
    EXPECT_EQ(stratum.points[1].nAtRisk, 4);
    EXPECT_TRUE(closeTo(stratum.points[1].survival, 0.6));
    EXPECT_EQ(stratum.median, 3.0);
    EXPECT_EQ(result->readiness.totalRows, 8);
    EXPECT_EQ(result->readiness.validCases, 5);
}

TEST(KaplanMeier, TakesTheMedianWhereHalfSurviveExactly) {
    // 5/6 4/5 3/4 falls short of 0.5 by rounding in some orders.
    const auto result = curve({1, 2, 3, 4, 5, 6}, {1, 1, 1, 0, 0, 0});
    EXPECT_EQ(result->strata[0].median, 3.0);
    EXPECT_FALSE(curve({1, 2, 3, 4, 5, 6}, {1, 1, 0, 0, 0, 0})->strata[0].median);
}

TEST(KaplanMeier, OrdersStrataByNameAndLeavesOutBlankOnes) {
    const Texts groups = {"b", " a ", "  ", "a", "B", "10", ""};
    const auto result =
        kaplanMeier(NumericColumn(Values{1, 2, 3, 4, 5, 6, 7}),
                    NumericColumn(Values{1, 1, 1, 1, 1, 0, 1}), TextColumn::of(groups).get());
    Texts names;
    for (const KaplanMeierStratum& stratum : result->strata) {
        names.push_back(stratum.name);
    }
    EXPECT_EQ(names, (Texts{"10", "B", "a", "b"}));
    EXPECT_EQ(result->strata[2].n, 2);
    EXPECT_TRUE(result->strata[0].points.empty());
    EXPECT_EQ(result->readiness.validCases, 5);
}

TEST(KaplanMeier, SaysWhatLooksOdd) {
    struct Case {
        int line;
        Values time;
        Values event;
        Texts messages;
    };
    const std::string times =
        "Follow-up time has only 10 distinct values across 20 cases. Check that the time variable "
        "really measures time to event (a rating-scale item here produces a meaningless curve).";
    const std::vector<Case> cases = {
        {__LINE__,
         cycle(5, 5),
         Values(5, 0),
         {"No events were observed; the survival curve stays at 1.", smallSample}},
        {__LINE__, cycle(9, 9), Values(9, 1), {smallSample}},
        {__LINE__, cycle(10, 10), Values(10, 2), {allEvents}},
        {__LINE__, cycle(19, 10), cycle(19, 2), {}},
        {__LINE__, cycle(20, 10), cycle(20, 2), {times}},
        {__LINE__, cycle(20, 11), cycle(20, 2), {}},
        {__LINE__, cycle(20, 10), Values(20, 1), {times, allEvents}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(messages(curve(each.time, each.event)->readiness), each.messages) << each.line;
    }
    EXPECT_FALSE(curve({}, {}));
    EXPECT_FALSE(curve({-1, 2}, {1, std::nullopt}));
    EXPECT_FALSE(curve({1, 2}, {1}));
}

TEST(KaplanMeier, DoesNotDependOnTheOrderOfRowsAndCountsEachOfThem) {
    const Values time = {0, 4, 0, 2, 7, 4, 2, 9, 1, 6, 3, 8};
    const Values event = {1, 1, 0, 1, 0, 1, 0, 1, 1, 0, 1, 1};
    const auto plain = curve(time, event);
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->strata[0].n, 12) << "a time of nought is a time";
    EXPECT_EQ(plain->strata[0].points[0].nAtRisk, 12);
    EXPECT_TRUE(closeTo(plain->strata[0].points[0].survival, 11.0 / 12.0));
    const Values backTime(time.rbegin(), time.rend());
    const Values backEvent(event.rbegin(), event.rend());
    EXPECT_EQ(curve(backTime, backEvent), plain);

    Values twiceTime = time;
    Values twiceEvent = event;
    twiceTime.insert(twiceTime.end(), time.begin(), time.end());
    twiceEvent.insert(twiceEvent.end(), event.begin(), event.end());
    const KaplanMeierStratum twice = curve(twiceTime, twiceEvent)->strata[0];
    ASSERT_EQ(twice.points.size(), plain->strata[0].points.size());
    EXPECT_EQ(twice.median, plain->strata[0].median);
    for (std::size_t i = 0; i < twice.points.size(); ++i) {
        const KaplanMeierPoint& once = plain->strata[0].points[i];
        EXPECT_TRUE(closeTo(twice.points[i].survival, once.survival));
        EXPECT_EQ(twice.points[i].nAtRisk, 2 * once.nAtRisk);
        EXPECT_EQ(twice.points[i].events, 2 * once.events);
    }

    // Three of the twelve name no group, and nine are a small sample.
    Texts groups(12, "a");
    groups[1] = groups[5] = groups[9] = " ";
    const auto grouped =
        kaplanMeier(NumericColumn(time), NumericColumn(event), TextColumn::of(groups).get());
    EXPECT_EQ(grouped->readiness.totalRows, 12);
    EXPECT_EQ(grouped->readiness.validCases, 9);
    EXPECT_EQ(messages(grouped->readiness), Texts{smallSample});
}

TEST(CoxRegression, DoesNotDependOnOffsetsAndFollowsUnits) {
    const Values time = {5, 3, 9, 1, 7, 7, 2, 8, 4, 6};
    const Values event = {1, 1, 0, 1, 1, 0, 1, 1, 0, 1};
    const Values x = {1, 3, 2, 5, 1, 4, 3, 2, 2, 4};
    const auto plain = cox(time, event, {x});
    ASSERT_TRUE(plain);
    EXPECT_EQ(messages(plain->readiness), Texts{fewEvents});
    for (const auto& [offset, unit] : {std::pair(2000.0, 0.125), std::pair(1e9, 1e7),
                                       std::pair(0.0, 1e-9), std::pair(-1e9, 1.0)}) {
        Values moved;
        for (const std::optional<double>& value : x) {
            moved.emplace_back(offset + *value * unit);
        }
        const auto other = cox(time, event, {moved});
        ASSERT_TRUE(other);
        EXPECT_TRUE(plain->converged && other->converged);
        const CoxCoefficient& effect = other->coefficients.at(0);
        EXPECT_TRUE(
            closeTo(effect.estimate * unit, plain->coefficients[0].estimate, {.relative = 1e-9}));
        EXPECT_TRUE(closeTo(effect.z, plain->coefficients[0].z, {.relative = 1e-9}));
        EXPECT_TRUE(closeTo(other->logLikelihood, plain->logLikelihood));
    }
}

TEST(CoxRegression, GivesTheLikelihoodOfNoEffectsInClosedForm) {
    // Two events among four at time 1, one among the last two at time 3.
    const auto result = cox({1, 1, 3, 3}, {1, 1, 1, 0}, {{0, 1, 0, 1}});
    ASSERT_TRUE(result);
    EXPECT_TRUE(closeTo(result->nullLogLikelihood, -2.0 * std::log(4.0) - std::log(2.0)));
    EXPECT_EQ(result->events, 3);
}

TEST(CoxRegression, BoundsReachAsFarAsTheConfidenceLevelAsks) {
    const Values time = {5, 3, 9, 1, 7, 7, 2, 8, 4, 6};
    const std::vector columns = {NumericColumn(Values{1, 3, 2, 5, 1, 4, 3, 2, 2, 4})};
    // R's qnorm((1 + level) / 2).
    for (const auto& [level, critical] :
         {std::pair(0.80, 1.2815515655446), std::pair(0.90, 1.64485362695147),
          std::pair(0.99, 2.5758293035489)}) {
        const auto result =
            coxPH(NumericColumn(time), NumericColumn(Values{1, 1, 0, 1, 1, 0, 1, 1, 0, 1}), columns,
                  {.predictorNames = {"x"}, .confidenceLevel = level});
        const CoxCoefficient& row = result->coefficients.at(0);
        EXPECT_TRUE(closeTo(std::log(row.upperHR), row.estimate + critical * row.standardError,
                            {.relative = 1e-6}));
        EXPECT_TRUE(closeTo(std::log(row.lowerHR), row.estimate - critical * row.standardError,
                            {.relative = 1e-6}));
        EXPECT_TRUE(closeTo(row.hazardRatio, std::exp(row.estimate)));
    }
}

TEST(CoxRegression, CallsFewerThanTenEventsFew) {
    for (const int events : {9, 10}) {
        Values time;
        Values event;
        Values x;
        for (int i = 0; i < 15; ++i) {
            time.emplace_back(i * 7 % 15);
            event.emplace_back(i < events ? 1.0 : 0.0);
            x.emplace_back(i * i % 6);
        }
        EXPECT_EQ(messages(cox(time, event, {x})->readiness),
                  events == 9 ? Texts{fewEvents} : Texts{});
    }
}

TEST(CoxRegression, TakesEveryRowTwiceAsHalfTheVariance) {
    const Values time = {5, 3, 9, 1, 7, 7, 2, 8, 4, 6};
    const Values event = {1, 1, 0, 1, 1, 0, 1, 1, 0, 1};
    const Values x = {1, 3, 2, 5, 1, 4, 3, 2, 2, 4};
    const auto twice = [](Values values) {
        values.insert(values.end(), values.begin(), values.end());
        return values;
    };
    const auto once = cox(time, event, {x});
    const auto both = cox(twice(time), twice(event), {twice(x)});
    ASSERT_TRUE(once && both);
    EXPECT_EQ(both->events, 2 * once->events);
    EXPECT_TRUE(closeTo(both->coefficients[0].estimate, once->coefficients[0].estimate,
                        {.relative = 1e-8}));
    EXPECT_TRUE(closeTo(both->coefficients[0].standardError,
                        once->coefficients[0].standardError / std::sqrt(2.0), {.relative = 1e-8}));
}

TEST(CoxRegression, TellsOfAFitThatDoesNotSettle) {
    Values time;
    Values x;
    for (int i = 0; i < 12; ++i) {
        time.emplace_back(i);
        x.emplace_back(i < 6 ? 1.0 : 0.0);
    }
    // All early times have x = 1 and only they end in events: the effect has no bound.
    Values event = Values(12, 0);
    std::fill(event.begin(), event.begin() + 6, 1.0);
    const auto result = cox(time, event, {x});
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->converged);
    EXPECT_GT(result->coefficients[0].hazardRatio, 1e6);
    EXPECT_EQ(messages(result->readiness), (Texts{notConverged, fewEvents}));
}

TEST(CoxRegression, IsNotHeldUpByTheRoundingOfALargeSample) {
    SplitMix64 draws(3);
    Values time;
    Values event;
    std::vector<Values> predictors(2);
    for (int i = 0; i < 20000; ++i) {
        time.emplace_back(draws.nextUnitDouble());
        event.emplace_back(draws.nextUnitDouble() < 0.7 ? 1.0 : 0.0);
        for (Values& predictor : predictors) {
            predictor.emplace_back(draws.nextUnitDouble());
        }
    }
    const auto result = cox(time, event, predictors);
    EXPECT_TRUE(result->converged);
    EXPECT_TRUE(closeTo(result->coefficients[0].estimate, 0.02274983286219, {.relative = 1e-9}));
    EXPECT_TRUE(closeTo(result->coefficients[1].estimate, -0.012033272208242, {.relative = 1e-9}));

    Values sum;
    for (std::size_t i = 0; i < time.size(); ++i) {
        sum.emplace_back(*predictors[0][i] + *predictors[1][i]);
    }
    predictors.push_back(sum);
    EXPECT_EQ(messages(cox(time, event, predictors)->readiness),
              Texts{"Cox information matrix was singular."});
}

TEST(CoxRegression, TriesAStepEightTimes) {
    // An effect without bound, of which the information vanishes: a ninth try would still be taken.
    const auto result =
        cox({7, 18, 12, 6, 15, 5, 2, 16}, {1, 1, 1, 0, 1, 0, 1, 1}, {{4, 1, 4, 2, 3, 3, 6, 1}});
    EXPECT_EQ(result->iterations, 33);
    EXPECT_FALSE(result->converged);
}

TEST(CoxRegression, KeepsItsLikelihoodWhereExponentsAreHuge) {
    const auto result =
        cox({0, 0, 0, 16, 11, 15, 10, 19, 3, 7, 4}, {0, 0, 1, 0, 1, 1, 0, 0, 1, 0, 1},
            {{3269017.37, 162754.791, 1, 20.0855369, 1, 403.428793, 8103.08393, 65659969.1,
              20.0855369, 403.428793, 403.428793}});
    EXPECT_TRUE(closeTo(result->logLikelihood, -7.07075748, {.relative = 1e-8}));
    EXPECT_TRUE(closeTo(result->coefficients[0].estimate, -0.000893503513, {.relative = 1e-6}));
}

TEST(CoxRegression, SaysWhatItNeeds) {
    struct Case {
        int line;
        Values time;
        Values event;
        std::vector<Values> predictors;
        Texts messages;
    };
    const std::string tooFew =
        "Need more complete cases and at least two events for Cox regression.";
    const std::string singular = "Cox information matrix was singular.";
    const Values three = {1, 2, 3};
    const std::vector<Case> cases = {
        {__LINE__, three, {1, 1, 0}, {}, {tooFew}},
        {__LINE__, three, {1, 0, 0}, {{2, 1, 2}}, {tooFew}},
        {__LINE__, three, {1, 1, 0}, {{2, 1, 2}, {1, 1, 3}, {0, 1, 1}}, {tooFew}},
        {__LINE__, three, {1, 1, 1}, {{2, std::nullopt, std::nullopt}}, {tooFew}},
        {__LINE__, three, {1, 1, 0}, {{5, 5, 5}}, {singular}},
        {__LINE__, three, {1, 1, 0}, {{2, 1, 2}}, {fewEvents}},
    };
    for (const Case& each : cases) {
        const auto result = cox(each.time, each.event, each.predictors);
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(messages(result->readiness), each.messages) << each.line;
        const bool blocked = result->readiness.status == AnalysisReadinessStatus::blocked;
        EXPECT_EQ(std::isnan(result->logLikelihood), blocked) << each.line;
        EXPECT_EQ(result->coefficients.empty(), blocked) << each.line;
    }
    EXPECT_FALSE(cox(three, {1, 1}, {three}));
    EXPECT_FALSE(cox(three, three, {{1, 2}}));
    EXPECT_FALSE(coxPH(NumericColumn(three), NumericColumn(three),
                       std::vector{NumericColumn(three)}, CoxOptions{}));
}

}  // namespace

}  // namespace sorvane
