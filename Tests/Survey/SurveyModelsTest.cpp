#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyCorrelation.h"
#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"
#include "SorvaneCore/Survey/SurveyWording.h"
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

/// Forty rows in ten units of two strata.
struct Sample {
    SurveyDesign design{};
    Values x{};
    Values y{};
    Values yes{};
    Values level{};
    Texts yesTexts{};
    Texts levelTexts{};

    Sample() {
        std::mt19937_64 random(2);
        Texts strata;
        Texts clusters;
        for (std::size_t i = 0; i < 40; ++i) {
            const double value = static_cast<double>(random() % 50) / 10.0;
            const double answer = value + static_cast<double>(random() % 40) / 10.0;
            x.emplace_back(value);
            y.emplace_back(answer);
            yes.emplace_back(answer > 4.5 ? 1.0 : 0.0);
            level.emplace_back(answer < 3.0 ? 1.0 : answer < 5.5 ? 2.0 : 3.0);
            yesTexts.emplace_back(*yes.back() > 0.0 ? "yes" : "no");
            levelTexts.push_back("l" + std::to_string(random() % 3));
            strata.emplace_back(i < 20 ? "n" : "s");
            clusters.push_back("u" + std::to_string(i / 4));
            design.weights.push_back(1.0 + static_cast<double>(random() % 30) / 10.0);
        }
        design.strata = TextColumn::of(strata);
        design.clusters = TextColumn::of(clusters);
    }

    /// Leaves each unit out in turn.
    SurveyDesign jackknife() const {
        SurveyDesign result{.weights = design.weights};
        ReplicateWeights replicates;
        for (std::size_t unit = 0; unit < 10; ++unit) {
            std::vector<double>& weights = replicates.weights.emplace_back(design.weights);
            for (std::size_t i = 0; i < 40; ++i) {
                weights[i] *= i / 4 == unit ? 0.0 : 10.0 / 9.0;
            }
        }
        result.replicateWeights = replicates;
        return result;
    }

    std::optional<SurveyModelResult> regression(const SurveyDesign& under) const {
        const std::vector predictors = {test::plainColumn(x)};
        return SurveyRegression::fit(test::plainColumn(y), predictors, under,
                                     {.predictorNames = {"x"}, .outcomeName = "y"});
    }
};

TEST(SurveyModels, DoNotDependOnTheScaleOfWeights) {
    const Sample sample;
    SurveyDesign scaled = sample.design;
    for (double& weight : scaled.weights) {
        weight *= 1e6;
    }
    const auto plain = sample.regression(sample.design);
    const auto other = sample.regression(scaled);
    ASSERT_EQ(plain->coefficients.size(), 2U);
    for (std::size_t k = 0; k < 2; ++k) {
        EXPECT_TRUE(closeTo(other->coefficients[k].estimate, plain->coefficients[k].estimate));
        EXPECT_TRUE(
            closeTo(other->coefficients[k].standardError, plain->coefficients[k].standardError));
    }
    EXPECT_EQ(plain->designDegreesOfFreedom, 8);
    EXPECT_EQ(plain->degreesOfFreedom, 7);
}

TEST(SurveyModels, JackknifeOfOneStratumIsNearLinearization) {
    const Sample sample;
    SurveyDesign unstratified = sample.design;
    unstratified.strata = nullptr;
    const std::vector predictors = {test::plainColumn(sample.x)};
    const SurveyModelOptions options{.predictorNames = {"x"}, .outcomeName = "level"};
    for (const auto fit : {&SurveyRegression::fit, &SurveyOrdinal::fit, &SurveyGLM::fitPoisson}) {
        const NumericColumn outcome = test::plainColumn(sample.level);
        const auto taylor = fit(outcome, predictors, unstratified, options);
        const auto replicated = fit(outcome, predictors, sample.jackknife(), options);
        ASSERT_TRUE(taylor && replicated);
        EXPECT_EQ(replicated->varianceMethod, DesignVarianceMethod::replicateWeights);
        EXPECT_TRUE(closeTo(replicated->coefficients.back().standardError,
                            taylor->coefficients.back().standardError, {.relative = 0.4}));
        EXPECT_EQ(replicated->coefficients.back().estimate, taylor->coefficients.back().estimate);
    }
}

TEST(SurveyModels, AnErrorOfZeroIsNotTested) {
    Sample sample;
    sample.design.fpc = std::vector<double>(40, 5.0);
    const auto result = sample.regression(sample.design);
    const SurveyCoefficient& slope = result->coefficients.back();
    EXPECT_EQ(slope.standardError, 0.0);
    EXPECT_TRUE(std::isnan(slope.t) && std::isnan(slope.pValue) && std::isnan(slope.lowerBound));
    EXPECT_TRUE(cautions(result->readiness).front().starts_with("The tests have only 7 degree(s)"));
    EXPECT_TRUE(cautions(result->readiness).back().starts_with("A standard error is zero"));
    const SurveyCorrelationResult pair = SurveyCorrelation::pearson(
        test::plainColumn(sample.x), test::plainColumn(sample.y), sample.design);
    EXPECT_TRUE(std::isnan(pair.pValue) && std::isnan(pair.confidenceIntervalUpper));
    EXPECT_TRUE(cautions(pair.readiness).back().starts_with("A standard error is zero"));
    const NumericColumn x = test::plainColumn(sample.x);
    const SurveyCorrelationResult itself = SurveyCorrelation::pearson(x, x, sample.jackknife());
    EXPECT_EQ(itself.standardError, 0.0);
    EXPECT_TRUE(SurveyWording::summary(itself).ends_with("which cannot be tested."));
}

TEST(SurveyModels, AFitWithoutScatterIsNotTested) {
    Sample sample;
    for (std::size_t i = 0; i < 40; ++i) {
        sample.x[i] = 1e5 + *sample.x[i];
        sample.y[i] = 4.0 * *sample.x[i];
    }
    Values noise;
    for (const auto& value : sample.level) {
        noise.emplace_back(*value * *value);
    }
    const std::vector predictors = {test::plainColumn(sample.x), test::plainColumn(noise)};
    for (const SurveyDesign& design : {sample.design, sample.jackknife()}) {
        const auto result = SurveyRegression::fit(test::plainColumn(sample.y), predictors, design,
                                                  {.predictorNames = {"x", "noise"}});
        ASSERT_EQ(result->coefficients.size(), 3U);
        for (const SurveyCoefficient& each : result->coefficients) {
            EXPECT_EQ(each.standardError, 0.0) << each.name;
            EXPECT_TRUE(std::isnan(each.pValue)) << each.name;
        }
        EXPECT_TRUE(std::isnan(result->waldF) && std::isnan(result->waldPValue));
        EXPECT_TRUE(cautions(result->readiness).back().starts_with("A standard error is zero"));
    }
}

/// Two of four groups do not scatter, so that a combination of the slopes is exact.
TEST(SurveyModels, GroupsWithoutScatterAreNotTestedWhereverTheOutcomeLies) {
    constexpr std::size_t rows = 120;
    std::mt19937_64 random(4);
    for (const double offset : {0.0, 1e4, 1e9, 1e10}) {
        SCOPED_TRACE(offset);
        std::vector<Values> dummies(3, Values(rows, 0.0));
        Values outcome;
        for (std::size_t i = 0; i < rows; ++i) {
            const std::size_t group = i % 4;
            if (group > 0) {
                dummies[group - 1][i] = 1.0;
            }
            const double scatter = static_cast<double>(random() % 2000) / 1e3;
            outcome.emplace_back(offset + (group == 1 ? 0.1 : group == 2 ? 0.7 : scatter));
        }
        SurveyDesign weighted;
        for (std::size_t i = 0; i < rows; ++i) {
            weighted.weights.push_back(1.0 + static_cast<double>(random() % 30) / 10.0);
        }
        const std::vector predictors = {test::plainColumn(dummies[0]),
                                        test::plainColumn(dummies[1]),
                                        test::plainColumn(dummies[2])};
        const auto result = SurveyRegression::fit(test::plainColumn(outcome), predictors, weighted,
                                                  {.predictorNames = {"b", "c", "d"}});
        ASSERT_EQ(result->coefficients.size(), 4U);
        EXPECT_GT(result->coefficients.back().standardError, 0.0);
        EXPECT_TRUE(std::isnan(result->waldF));
    }
}

/// Many rows have errors far below the digits of their outcome, which rounding alone does not.
TEST(SurveyModels, TellASmallErrorFromRoundingWhateverTheRows) {
    constexpr std::size_t rows = 20000;
    constexpr std::size_t units = 50;
    std::mt19937_64 random(6);
    SurveyDesign byUnit;
    Texts clusters;
    Values x;
    Values scatter;
    Values outcome;
    Values constant;
    for (std::size_t i = 0; i < rows; ++i) {
        byUnit.weights.push_back(1.0 + static_cast<double>(random() % 30) / 10.0);
        clusters.push_back("u" + std::to_string(i % units));
        x.emplace_back(static_cast<double>(random() % 1000));
        scatter.emplace_back(static_cast<double>(random() % 200) / 1e4);
        outcome.emplace_back(1e8 + *scatter.back());
        constant.emplace_back(i % 3 == 0 ? 0.3e8 : 0.1e8 * 3.0000000000000004);
    }
    SurveyDesign jackknifed{.weights = byUnit.weights, .replicateWeights = ReplicateWeights{}};
    for (std::size_t unit = 0; unit < units; ++unit) {
        auto& weights = jackknifed.replicateWeights->weights.emplace_back(byUnit.weights);
        for (std::size_t i = unit; i < rows; i += units) {
            weights[i] = 0.0;
        }
    }
    byUnit.clusters = TextColumn::of(clusters);
    const std::vector predictors = {test::plainColumn(x)};
    for (const SurveyDesign& design : {byUnit, jackknifed}) {
        const auto coefficients = [&](const Values& y) {
            return SurveyRegression::fit(test::plainColumn(y), predictors, design,
                                         {.predictorNames = {"x"}})
                ->coefficients;
        };
        const auto small = coefficients(scatter);
        const auto large = coefficients(outcome);
        EXPECT_TRUE(coefficients(constant).empty()) << "blocked";
        for (std::size_t k = 0; k < 2; ++k) {
            SCOPED_TRACE(small[k].name);
            EXPECT_TRUE(
                closeTo(large[k].standardError, small[k].standardError, {.relative = 1e-3}));
        }
    }
}

TEST(SurveyModels, TellOfReplicatesWithoutEstimates) {
    Sample sample;
    for (std::size_t i = 0; i < 40; ++i) {
        sample.level[i] = i < 2 ? 3.0 : std::min(*sample.level[i], 2.0);
    }
    const std::vector predictors = {test::plainColumn(sample.x)};
    const auto result = SurveyOrdinal::fit(test::plainColumn(sample.level), predictors,
                                           sample.jackknife(), {.predictorNames = {"x"}});
    ASSERT_TRUE(result);
    ASSERT_EQ(result->thresholds.size(), 2U);
    EXPECT_EQ(cautions(result->readiness).back(),
              "1 replicate(s) gave no estimates and add nothing to the standard errors, which may "
              "be too small.");
}

TEST(SurveyModels, OrdinalThresholdsFollowTheUnitsOfPredictors) {
    const Sample sample;
    Values moved;
    for (const auto& value : sample.x) {
        moved.emplace_back(100.0 + 10.0 * *value);
    }
    const SurveyModelOptions options{.predictorNames = {"x"}};
    const auto fitted = [&](const Values& x) {
        const std::vector predictors = {test::plainColumn(x)};
        return SurveyOrdinal::fit(test::plainColumn(sample.level), predictors, sample.design,
                                  options);
    };
    const auto plain = fitted(sample.x);
    const auto other = fitted(moved);
    ASSERT_EQ(plain->thresholds.size(), 2U);
    EXPECT_EQ(plain->thresholds[1].name, "2|3");
    EXPECT_TRUE(closeTo(10.0 * other->coefficients[0].estimate, plain->coefficients[0].estimate,
                        {.relative = 1e-7}));
    EXPECT_TRUE(closeTo(other->thresholds[0].estimate,
                        plain->thresholds[0].estimate + 10.0 * plain->coefficients[0].estimate,
                        {.relative = 1e-7}));
}

TEST(SurveyModels, SayWhatStandsInTheirWay) {
    const Sample sample;
    const NumericColumn y = test::plainColumn(sample.y);
    const NumericColumn x = test::plainColumn(sample.x);
    const NumericColumn yes = test::plainColumn(sample.yes);
    const NumericColumn ones = test::plainColumn(Values(40, 1.0));
    const SurveyModelOptions one{.predictorNames = {"x"}};
    SurveyDesign noWeights = sample.design;
    noWeights.weights[3] = 0.0;
    struct Case {
        int line;
        std::optional<SurveyModelResult> result;
        std::string obstacle;
    };
    const std::vector just = {x};
    const std::vector constant = {ones};
    const std::vector separating = {y};
    const std::vector<Case> cases = {
        {__LINE__, SurveyRegression::fit(y, just, noWeights, one),
         "Sampling weights must all be finite and positive."},
        {__LINE__, SurveyRegression::fit(y, constant, sample.design, one),
         "A predictor does not vary or is a combination of others, so unique coefficients cannot "
         "be "
         "estimated. Remove or combine redundant predictors."},
        {__LINE__, SurveyRegression::fit(test::plainColumn({1.0, 2.0}), just, sample.design, one),
         "The variable has 2 rows, but the survey design has 40. Set up the design for the table "
         "that holds the variable."},
        {__LINE__,
         SurveyRegression::fit(test::plainColumn(Values(40, 7.3)), just, sample.design, one),
         "The outcome has only one value present. It must vary to fit a linear model."},
        {__LINE__, SurveyGLM::fitLogistic(ones, just, sample.design, one),
         "The outcome has only one level present. Both 0 and 1 must occur to fit a logistic "
         "model."},
        {__LINE__, SurveyGLM::fitLogistic(yes, separating, sample.design, one),
         "The fit did not converge to finite estimates. This often happens when a predictor "
         "perfectly separates the outcome, or when predictors are nearly collinear."},
        {__LINE__, SurveyOrdinal::fit(yes, just, sample.design, one),
         "The outcome has only 2 level(s) present. Three or more ordered levels must occur to fit "
         "a proportional-odds model."},
        {__LINE__, SurveyRegression::fit(test::plainColumn(Values(40)), just, sample.design, one),
         "There are not enough complete rows (0) to estimate 2 coefficient(s)."},
    };
    for (const Case& each : cases) {
        ASSERT_TRUE(each.result) << each.line;
        EXPECT_EQ(obstacles(each.result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(each.result->coefficients.empty()) << each.line;
    }
    EXPECT_FALSE(SurveyGLM::fitLogistic(y, just, sample.design, one));
    EXPECT_FALSE(SurveyGLM::fitPoisson(y, just, sample.design, one));
    EXPECT_FALSE(SurveyRegression::fit(y, just, sample.design, {}));
}

TEST(SurveyCorrelation, IsThatOfTheWeightedRows) {
    const Sample sample;
    SurveyDesign equal = sample.design;
    equal.weights.assign(40, 3.0);
    const auto result =
        SurveyCorrelation::pearson(test::plainColumn(sample.x), test::plainColumn(sample.x), equal);
    EXPECT_TRUE(closeTo(result.r, 1.0));
    EXPECT_EQ(obstacles(SurveyCorrelation::pearson(test::plainColumn(sample.x),
                                                   test::plainColumn(Values(40, 0.1)), equal)
                            .readiness),
              Texts{"One of the variables does not vary, so no correlation can be formed. Choose "
                    "another variable."});
    const std::vector columns = {test::plainColumn(sample.x), test::plainColumn(sample.y),
                                 test::plainColumn(sample.level)};
    const Texts names = {"x", "y", "l"};
    const auto pairs = SurveyCorrelation::matrix(columns, equal, names);
    ASSERT_TRUE(pairs);
    ASSERT_EQ(pairs->size(), 3U);
    EXPECT_EQ((*pairs)[1].yName, "l");
}

TEST(SurveyCorrelation, TellsOneValueFromValuesThatAreTooLargeOrTooSmall) {
    const auto obstacleOf = [](const Values& x) {
        Values y;
        for (std::size_t i = 0; i < x.size(); ++i) {
            y.emplace_back(static_cast<double>(i * i % 7));
        }
        SurveyDesign design;
        for (std::size_t i = 0; i < x.size(); ++i) {
            design.weights.push_back(1.0 + static_cast<double>(i % 13) / 10.0);
        }
        const auto pair =
            SurveyCorrelation::pearson(test::plainColumn(x), test::plainColumn(y), design);
        return pair.readiness.issues.front().message.substr(0, 50);
    };
    const auto twoValues = [](double size) {
        Values values(40, size);
        for (std::size_t i = 0; i < 15; ++i) {
            values[i] = 2.0 * size;
        }
        return values;
    };
    EXPECT_EQ(obstacleOf(Values(20000, 0.1)), "One of the variables does not vary, so no correlat");
    EXPECT_EQ(obstacleOf(twoValues(1e305)), "The values or weights are too large or too small, ");
    EXPECT_EQ(obstacleOf(twoValues(1e-170)), "The values or weights are too large or too small, ");
    EXPECT_TRUE(obstacleOf(twoValues(1e100)).starts_with("No strata or clusters"));
    Values close(40, 1e15);
    close[3] = 1e15 + 1.0;
    EXPECT_TRUE(obstacleOf(close).starts_with("No strata or clusters"));
}

/// Replicates of which the first leaves no row, and another lacks a weight where that is wished.
SurveyDesign replicatesOf(const Sample& sample, double weight) {
    SurveyDesign design = sample.jackknife();
    design.replicateWeights->weights[0].assign(40, 0.0);
    design.replicateWeights->weights[4][7] = weight;
    return design;
}

TEST(SurveyInference, AReplicateWithoutAnEstimateIsToldOfAndOneWithoutAWeightRefused) {
    const Sample sample;
    const auto pair = [&sample](const SurveyDesign& design) {
        return SurveyCorrelation::pearson(test::plainColumn(sample.x), test::plainColumn(sample.y),
                                          design)
            .readiness;
    };
    const auto table = [&sample](const SurveyDesign& design) {
        return SurveyCategorical::test(*TextColumn::of(sample.yesTexts),
                                       *TextColumn::of(sample.levelTexts), design)
            .readiness;
    };
    const auto model = [&sample](const SurveyDesign& design) {
        return sample.regression(design)->readiness;
    };
    const SurveyDesign silent = replicatesOf(sample, 1.0);
    const SurveyDesign missing = replicatesOf(sample, std::nan(""));
    for (const AnalysisReadiness& readiness : {pair(silent), table(silent), model(silent)}) {
        EXPECT_EQ(std::ranges::count(cautions(readiness),
                                     "1 replicate(s) gave no estimates and add nothing to the "
                                     "standard errors, which may be too small."),
                  1);
    }
    for (const AnalysisReadiness& readiness : {pair(missing), table(missing), model(missing)}) {
        ASSERT_EQ(obstacles(readiness).size(), 1U);
        EXPECT_NE(obstacles(readiness).front().find("or a replicate weight is missing"),
                  std::string::npos);
    }
}

TEST(SurveyCategorical, IsPearsonsTestWhereTheDesignIsSimple) {
    const Sample sample;
    const SurveyDesign simple{.weights = std::vector<double>(40, 2.0)};
    const auto result = SurveyCategorical::test(*TextColumn::of(sample.yesTexts),
                                                *TextColumn::of(sample.levelTexts), simple);
    // Each generalized effect is n / (n - 1) about 1 of a table near independence.
    EXPECT_TRUE(closeTo(result.meanDesignEffect, 1.0, {.absolute = 0.2}));
    EXPECT_EQ(result.cells.size(), 6U);
    double sum = 0.0;
    for (const SurveyCell& cell : result.cells) {
        sum += cell.proportion;
        EXPECT_TRUE(closeTo(cell.weightedCount, 2.0 * static_cast<double>(cell.count)));
    }
    EXPECT_TRUE(closeTo(sum, 1.0));
    EXPECT_EQ(obstacles(SurveyCategorical::test(*TextColumn::of(Texts(40, "a")),
                                                *TextColumn::of(sample.levelTexts), simple)
                            .readiness),
              Texts{"Both variables need two or more categories among the 40 row(s) that hold "
                    "both. Choose another variable."});
}

/// The rows from `first` on, with their part of the design.
Sample from(const Sample& whole, std::size_t first) {
    Sample part = whole;
    const auto cut = [first](auto& values) {
        values.erase(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(first));
    };
    const auto texts = [&](const std::shared_ptr<const TextColumn>& column) {
        Texts cells;
        for (std::size_t row = first; row < column->size(); ++row) {
            cells.emplace_back((*column)[row]);
        }
        return TextColumn::of(cells);
    };
    cut(part.x);
    cut(part.y);
    cut(part.yesTexts);
    cut(part.levelTexts);
    cut(part.design.weights);
    part.design.strata = texts(whole.design.strata);
    part.design.clusters = texts(whole.design.clusters);
    return part;
}

TEST(SurveyInference, UnitsWithoutAnAnswerCountAsNotSampled) {
    // The first four units of a stratum of five.
    constexpr std::size_t silent = 16;
    Sample sample;
    const Sample rest = from(sample, silent);
    for (std::size_t i = 0; i < silent; ++i) {
        sample.x[i] = std::nullopt;
        sample.yesTexts[i].clear();
    }
    const auto pair = [](const Sample& of) {
        return SurveyCorrelation::pearson(test::plainColumn(of.x), test::plainColumn(of.y),
                                          of.design);
    };
    const auto table = [](const Sample& of) {
        return SurveyCategorical::test(*TextColumn::of(of.yesTexts), *TextColumn::of(of.levelTexts),
                                       of.design);
    };
    const auto fit = sample.regression(sample.design);
    EXPECT_EQ(fit->degreesOfFreedom, 3);
    EXPECT_EQ(fit->coefficients, rest.regression(rest.design)->coefficients);
    EXPECT_EQ(pair(sample).designDegreesOfFreedom, 4);
    EXPECT_EQ(pair(sample).pValue, pair(rest).pValue);
    EXPECT_EQ(table(sample).designDegreesOfFreedom, 4);
    EXPECT_EQ(table(sample).pValue, table(rest).pValue);
    for (const AnalysisReadiness& readiness :
         {fit->readiness, pair(sample).readiness, table(sample).readiness}) {
        EXPECT_TRUE(cautions(readiness).front().starts_with("1 stratum/strata contain a single"));
    }
}

TEST(SurveyInference, ATableThatTheDesignFixesIsNotTested) {
    Sample sample;
    Texts strata;
    for (std::size_t i = 0; i < 40; ++i) {
        sample.levelTexts[i] = i % 2 == 0 ? "f" : "m";
        strata.push_back(sample.levelTexts[i] + (i < 17 ? "n" : "s"));
        sample.yesTexts[i] = i < 17 ? "north" : "south";
        sample.design.weights[i] = i < 17 ? 1.3 : 0.7;
    }
    sample.design.strata = TextColumn::of(strata);
    sample.design.clusters = nullptr;
    const auto result = SurveyCategorical::test(*TextColumn::of(sample.yesTexts),
                                                *TextColumn::of(sample.levelTexts), sample.design);
    EXPECT_EQ(obstacles(result.readiness),
              Texts{"The design gives the cells no variance, so nothing can be tested. Check "
                    "strata and clusters."});
}

TEST(SurveyModels, PowersOfAYearAreFittedAndTestedAsThoseOfItsDistanceFromAnother) {
    std::mt19937_64 random(11);
    std::vector<Values> outcomes(4);
    std::vector<Values> raw(3);
    std::vector<Values> centred(3);
    Texts units;
    for (std::size_t i = 0; i < 400; ++i) {
        const double year = 2010.0 + static_cast<double>(random() % 11);
        for (std::size_t power = 0; power < 3; ++power) {
            raw[power].emplace_back(std::pow(year, static_cast<double>(power + 1)));
            centred[power].emplace_back(std::pow(year - 2015.0, static_cast<double>(power + 1)));
        }
        const auto noise = static_cast<double>(random() % 100);
        outcomes[0].emplace_back(noise);
        outcomes[1].emplace_back(noise > 60.0 ? 1.0 : 0.0);
        outcomes[2].emplace_back(std::floor(noise / 25.0));
        outcomes[3].emplace_back(std::floor(noise / 34.0));
        units.push_back("u" + std::to_string(i % 40));
    }
    SurveyDesign design{.weights = std::vector(400, 1.0)};
    design.clusters = TextColumn::of(units);
    std::size_t at = 0;
    for (const auto fit : {&SurveyRegression::fit, &SurveyGLM::fitLogistic, &SurveyGLM::fitPoisson,
                           &SurveyOrdinal::fit}) {
        const NumericColumn outcome = test::plainColumn(outcomes[at++]);
        const auto of = [&](const std::vector<Values>& powers) {
            const std::vector predictors = {test::plainColumn(powers[0]),
                                            test::plainColumn(powers[1]),
                                            test::plainColumn(powers[2])};
            return *fit(outcome, predictors, design, {.predictorNames = {"1", "2", "3"}});
        };
        const SurveyModelResult plain = of(centred);
        const SurveyModelResult same = of(raw);
        SCOPED_TRACE(displayName(plain.model));
        ASSERT_FALSE(same.coefficients.empty());
        EXPECT_GT(plain.waldF, 0.0);
        EXPECT_TRUE(closeTo(same.waldF, plain.waldF, {.relative = 1e-6}));
        const SurveyCoefficient& cubic = plain.coefficients.back();
        EXPECT_TRUE(closeTo(same.coefficients.back().estimate, cubic.estimate, {.relative = 1e-5}));
        EXPECT_TRUE(closeTo(same.coefficients.back().standardError, cubic.standardError,
                            {.relative = 1e-5}));
        EXPECT_EQ(cautions(same.readiness), cautions(plain.readiness));
    }
}

TEST(SurveyModels, HeavyTailsAreNoSeparation) {
    std::mt19937_64 random(5);
    std::lognormal_distribution<double> incomes(10.0, 2.0);
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    Values income;
    Values bought;
    for (int i = 0; i < 800; ++i) {
        income.emplace_back(incomes(random));
        const double logOdds = (*income.back() - 22026.0) / 8000.0;
        bought.emplace_back(chance(random) < 1.0 / (1.0 + std::exp(-logOdds)) ? 1.0 : 0.0);
    }
    const std::vector predictors = {test::plainColumn(income)};
    const auto fit = [&predictors](const Values& outcome) {
        return *SurveyGLM::fitLogistic(test::plainColumn(outcome), predictors,
                                       {.weights = std::vector(800, 1.0)},
                                       {.predictorNames = {"income"}, .outcomeName = "y"});
    };
    const SurveyModelResult sound = fit(bought);
    ASSERT_EQ(sound.coefficients.size(), 2U);
    EXPECT_NEAR(sound.coefficients.back().estimate, 1.0 / 8000.0, 3e-5);
    for (std::size_t i = 0; i < 800; ++i) {
        bought[i] = *income[i] > 22026.0 ? 1.0 : 0.0;
    }
    EXPECT_TRUE(obstacles(fit(bought).readiness).front().starts_with("The fit did not converge"));
}

}  // namespace

}  // namespace sorvane
