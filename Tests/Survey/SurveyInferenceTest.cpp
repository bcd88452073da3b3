#include <algorithm>
#include <cmath>
#include <iterator>

#include <gtest/gtest.h>

#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyCorrelation.h"
#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"
#include "Tests/Survey/SurveyStudy.h"

/// What every procedure under a design must keep to: invariances, intervals, known figures.
namespace sorvane {
namespace {

using test::closeTo;
using test::designOf;
using test::numbersOf;
using test::Respondent;
using test::SurveyStudy;
using test::textsOf;

/// An estimate with its reach, as a reader would find it in a table.
struct Figure {
    std::string name;
    double estimate = 0.0;
    double standardError = 0.0;
    double lower = 0.0;
    double upper = 0.0;
    std::int64_t degreesOfFreedom = 0;
};
using Figures = std::vector<Figure>;

Figure figure(const std::string& name, const WeightedEstimate& of) {
    return {name,
            of.estimate,
            of.standardError,
            of.confidenceIntervalLower,
            of.confidenceIntervalUpper,
            of.designDegreesOfFreedom};
}

void addModel(Figures& figures, const std::optional<SurveyModelResult>& fit) {
    ASSERT_TRUE(fit);
    const double ofOnePredictor = fit->coefficients.back().t;
    EXPECT_TRUE(closeTo(fit->waldF, ofOnePredictor * ofOnePredictor, {.relative = 1e-9}));
    EXPECT_TRUE(closeTo(fit->waldPValue, fit->coefficients.back().pValue, {.relative = 1e-6}));
    for (const auto* rows : {&fit->coefficients, &fit->thresholds}) {
        for (const SurveyCoefficient& row : *rows) {
            figures.push_back({std::string(displayName(fit->model)) + " " + row.name, row.estimate,
                               row.standardError, row.lowerBound, row.upperBound,
                               fit->degreesOfFreedom});
            EXPECT_EQ(row.ratio.has_value(),
                      fit->model != SurveyModelKind::linear && rows == &fit->coefficients);
            if (row.ratio) {
                EXPECT_DOUBLE_EQ(*row.ratio, std::exp(row.estimate));
                EXPECT_DOUBLE_EQ(*row.ratioLowerBound, std::exp(row.lowerBound));
                EXPECT_DOUBLE_EQ(*row.ratioUpperBound, std::exp(row.upperBound));
            }
        }
    }
}

void addModels(Figures& figures, const SurveyStudy& study, const SurveyDesign& design) {
    const std::vector predictors = {numbersOf(study, &Respondent::x)};
    const SurveyModelOptions options{.predictorNames = {"x"}, .outcomeName = "y"};
    const NumericColumn level = numbersOf(study, &Respondent::level);
    addModel(figures,
             SurveyRegression::fit(numbersOf(study, &Respondent::y), predictors, design, options));
    addModel(figures, SurveyGLM::fitLogistic(numbersOf(study, &Respondent::yes), predictors, design,
                                             options));
    addModel(figures, SurveyGLM::fitPoisson(level, predictors, design, options));
    addModel(figures, SurveyOrdinal::fit(level, predictors, design, options));
}

/// All figures of a study but for r, whose bounds are not those of t.
Figures figuresOf(const SurveyStudy& study, const SurveyDesign& design) {
    const NumericColumn x = numbersOf(study, &Respondent::x);
    const NumericColumn y = numbersOf(study, &Respondent::y);
    const auto groups = textsOf(study, &Respondent::group);
    Figures figures = {
        figure("mean", WeightedEstimators::mean(y, design)),
        figure("total", WeightedEstimators::total(y, design)),
        figure("share", WeightedEstimators::proportion(numbersOf(study, &Respondent::yes), design)),
        figure("ratio", WeightedEstimators::ratio(y, x, design))};
    for (const DomainEstimate& each :
         WeightedEstimators::byGroup(WeightedEstimand::mean, y, *groups, design)) {
        figures.push_back(figure(each.group, each.estimate));
    }
    addModels(figures, study, design);
    const SurveyCategoricalResult table =
        SurveyCategorical::test(*textsOf(study, &Respondent::answer), *groups, design);
    for (const SurveyCell& cell : table.cells) {
        figures.push_back({cell.row + " " + cell.column, cell.proportion, cell.standardError,
                           cell.lowerBound, cell.upperBound, table.designDegreesOfFreedom});
    }
    figures.push_back({.name = "F",
                       .estimate = table.fStatistic,
                       .lower = table.dfNumerator,
                       .upper = table.dfDenominator});
    return figures;
}

void expectSame(const Figures& got, const Figures& expected, double tolerance = 1e-9) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        SCOPED_TRACE(expected[i].name);
        const test::Tolerance close{.relative = tolerance, .absolute = tolerance};
        EXPECT_EQ(got[i].name, expected[i].name);
        EXPECT_TRUE(closeTo(got[i].estimate, expected[i].estimate, close));
        EXPECT_TRUE(closeTo(got[i].standardError, expected[i].standardError, close));
        EXPECT_TRUE(closeTo(got[i].lower, expected[i].lower, close));
        EXPECT_TRUE(closeTo(got[i].upper, expected[i].upper, close));
        EXPECT_EQ(got[i].degreesOfFreedom, expected[i].degreesOfFreedom);
    }
}

TEST(SurveyFigures, DependNeitherOnTheOrderOfRowsNorOnTheNamesOfUnits) {
    const SurveyStudy study = test::surveyStudy();
    const Figures plain = figuresOf(study, designOf(study));
    SurveyStudy turned(study.rbegin(), study.rend());
    for (Respondent& each : turned) {
        each.stratum = each.stratum == "north" ? "s" : "n";
        // Units are named within their stratum.
        each.unit = "unit " + std::to_string((std::stoi(each.unit.substr(1)) + 1) % 6);
    }
    ASSERT_EQ(designOf(turned).sampledPSUCount(), 10);
    expectSame(figuresOf(turned, designOf(turned)), plain);
}

TEST(SurveyFigures, StayWhenEveryRowIsTwoOfHalfItsWeight) {
    const SurveyStudy study = test::surveyStudy();
    SurveyStudy split = study;
    split.insert(split.end(), study.begin(), study.end());
    for (Respondent& each : split) {
        each.weight /= 2.0;
    }
    expectSame(figuresOf(split, designOf(split)), figuresOf(study, designOf(study)));
}

TEST(SurveyFigures, TakeRowsWithoutValuesAsNotSampled) {
    SurveyStudy study = test::surveyStudy();
    SurveyStudy kept = study;
    // One row of a unit, and the whole of another.
    std::erase_if(kept, [&](const Respondent& each) { return each.unit == "u3"; });
    kept.pop_back();
    for (Respondent& each : study) {
        if (each.unit == "u3" || &each == &study.back()) {
            each.x = each.y = each.yes = each.level = std::nullopt;
            each.answer = "NA";
        }
    }
    SurveyDesign design = designOf(study);
    const Figures all = figuresOf(kept, designOf(kept));
    const Figures gaps = figuresOf(study, design);
    ASSERT_EQ(gaps.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_TRUE(closeTo(gaps[i].estimate, all[i].estimate, {.relative = 1e-9})) << all[i].name;
        EXPECT_TRUE(closeTo(gaps[i].standardError, all[i].standardError, {.relative = 1e-9}))
            << all[i].name;
    }
}

TEST(SurveyFigures, ReachAsFarAsTheirConfidenceLevelAsks) {
    const SurveyStudy study = test::surveyStudy();
    const struct {
        double level;
        // R's qt((1 + level) / 2, df) of eight degrees of freedom, and of seven.
        double ofDesign;
        double ofModels;
    } cases[] = {{0.90, 1.85954803753090, 1.89457860509001},
                 {0.99, 3.35538733133340, 3.49948329735049}};
    for (const auto& each : cases) {
        SurveyDesign design = designOf(study);
        design.confidenceLevel = each.level;
        for (const Figure& found : figuresOf(study, design)) {
            if (found.degreesOfFreedom == 0) {
                continue;
            }
            SCOPED_TRACE(found.name);
            ASSERT_TRUE(found.degreesOfFreedom == 8 || found.degreesOfFreedom == 7);
            const double reach =
                (found.degreesOfFreedom == 8 ? each.ofDesign : each.ofModels) * found.standardError;
            const bool isCell = found.name.find(' ') == 2 || found.name.find(' ') == 3;
            const double lower = found.estimate - reach;
            const double upper = found.estimate + reach;
            EXPECT_TRUE(closeTo(found.lower, isCell ? std::max(lower, 0.0) : lower,
                                {.relative = 1e-8, .absolute = 1e-9}));
            EXPECT_TRUE(closeTo(found.upper, isCell ? std::min(upper, 1.0) : upper,
                                {.relative = 1e-8, .absolute = 1e-9}));
        }
        const SurveyCorrelationResult r = SurveyCorrelation::pearson(
            numbersOf(study, &Respondent::x), numbersOf(study, &Respondent::y), design);
        const double reach = each.ofDesign * r.standardError / (1.0 - r.r * r.r);
        EXPECT_TRUE(closeTo(std::atanh(r.confidenceIntervalUpper), std::atanh(r.r) + reach,
                            {.relative = 1e-8}));
        EXPECT_TRUE(closeTo(std::atanh(r.confidenceIntervalLower), std::atanh(r.r) - reach,
                            {.relative = 1e-8}));
    }
}

TEST(SurveyCategorical, HoldsTheBoundsOfSharesWithinTheirs) {
    SurveyStudy study = test::surveyStudy();
    for (Respondent& each : study) {
        each.answer = "no";
        each.group = "a";
    }
    study[0].answer = "yes";
    study[39].group = "b";
    study[38].answer = "yes";
    study[38].group = "b";
    const SurveyCategoricalResult table = SurveyCategorical::test(
        *textsOf(study, &Respondent::answer), *textsOf(study, &Respondent::group), designOf(study));
    ASSERT_EQ(table.cells.size(), 4U);
    EXPECT_EQ(table.cells[0].upperBound, 1.0);
    EXPECT_EQ(table.cells[3].lowerBound, 0.0);
    EXPECT_LT(table.cells[3].upperBound, 0.2);
}

/// The design with a jackknife of its units in place of linearization.
SurveyDesign jackknifed(const SurveyStudy& study) {
    SurveyDesign design = designOf(study);
    ReplicateWeights replicates;
    for (int unit = 0; unit < 10; ++unit) {
        std::vector<double>& weights = replicates.weights.emplace_back(design.weights);
        for (std::size_t row = 0; row < study.size(); ++row) {
            weights[row] *= study[row].unit == "u" + std::to_string(unit) ? 0.0 : 1.25;
        }
    }
    design.replicateWeights = replicates;
    return design;
}

TEST(SurveyCategorical, SharesOfARowAreProportionsOfASubgroup) {
    SurveyStudy study = test::surveyStudy();
    study[5].answer = "NA";
    study[9].group = "alone";
    const auto groups = textsOf(study, &Respondent::group);
    for (Respondent& each : study) {
        each.yes = each.answer == "NA" ? std::nullopt : std::optional(each.answer == "yes");
    }
    for (const SurveyDesign& design : {designOf(study), jackknifed(study)}) {
        const SurveyCategoricalResult table =
            SurveyCategorical::test(*groups, *textsOf(study, &Respondent::answer), design);
        const std::vector<DomainEstimate> shares = WeightedEstimators::byGroup(
            WeightedEstimand::proportion, numbersOf(study, &Respondent::yes), *groups, design);
        ASSERT_EQ(table.cells.size(), 2 * shares.size());
        EXPECT_TRUE(std::isnan(table.cells[1].rowStandardError)) << "one row tells of no error";
        for (std::size_t row = 1; row < shares.size(); ++row) {
            const SurveyCell& cell = table.cells[2 * row + 1];
            const WeightedEstimate& share = shares[row].estimate;
            SCOPED_TRACE(cell.row);
            EXPECT_EQ(cell.row, shares[row].group);
            EXPECT_TRUE(closeTo(cell.rowProportion, share.estimate, {.relative = 1e-12}));
            EXPECT_TRUE(closeTo(cell.rowStandardError, share.standardError, {.relative = 1e-9}));
            EXPECT_TRUE(closeTo(cell.rowLowerBound, std::max(share.confidenceIntervalLower, 0.0),
                                {.relative = 1e-9}));
            EXPECT_TRUE(closeTo(cell.rowUpperBound, std::min(share.confidenceIntervalUpper, 1.0),
                                {.relative = 1e-9}));
        }
    }
}

TEST(SurveyCategorical, TellsOfRowsThatReplicatesPassBy) {
    SurveyStudy study = test::surveyStudy();
    for (std::size_t i = 0; i < study.size(); ++i) {
        study[i].group = i < 8 ? (i % 4 < 2 ? "early" : "g0") : "g" + std::to_string(i % 2);
    }
    SurveyDesign design = jackknifed(study);
    // Of the ten, one leaves no row at all, and two others none of those in the first two units.
    design.replicateWeights->weights[9].assign(study.size(), 0.0);
    for (const std::size_t r : {0U, 1U}) {
        std::fill_n(design.replicateWeights->weights[r].begin(), 8, 0.0);
    }
    const std::vector<std::string> issues =
        test::cautions(SurveyCategorical::test(*textsOf(study, &Respondent::group),
                                               *textsOf(study, &Respondent::answer), design)
                           .readiness);
    const auto told = std::ranges::find_if(issues, [](const std::string& issue) {
        return issue.find("replicate(s) give no weight") != std::string::npos;
    });
    ASSERT_NE(told, issues.end());
    EXPECT_EQ(*told,
              "3 replicate(s) give no weight to the row \"early\" and add nothing to the standard "
              "errors of the shares within it, which may be too small.");
    EXPECT_EQ(*std::prev(told),
              "1 replicate(s) gave no estimates and add nothing to the standard errors, which may "
              "be too small.");
    EXPECT_EQ(std::next(told)->find("give no weight"), std::string::npos) << *std::next(told);
}

TEST(SurveyModels, DescribeTheRowsThatTheyAreOf) {
    SurveyStudy study = test::surveyStudy();
    study[3].x = study[11].x = study[30].x = std::nullopt;
    const SurveyDesign design = designOf(study);
    const std::vector predictors = {numbersOf(study, &Respondent::x)};
    const NumericColumn yes = numbersOf(study, &Respondent::yes);
    const auto fit = SurveyGLM::fitLogistic(yes, predictors, design,
                                            {.predictorNames = {"x"}, .outcomeName = "y"});
    ASSERT_TRUE(fit);
    const double effective =
        WeightedEstimators::mean(predictors.front(), design).effectiveSampleSize.value_or(0.0);
    EXPECT_DOUBLE_EQ(fit->effectiveSampleSize.value_or(0.0), effective);
    EXPECT_DOUBLE_EQ(SurveyCorrelation::pearson(predictors.front(), yes, design)
                         .effectiveSampleSize.value_or(0.0),
                     effective);
    ASSERT_EQ(fit->predictorDeviations.size(), 1U);
    EXPECT_TRUE(closeTo(fit->predictorDeviations.front() * std::sqrt(37.0 / 36.0),
                        WeightedEstimators::standardDeviation(predictors.front(), design),
                        {.relative = 1e-12}));
    EXPECT_EQ(fit->events, std::ranges::count_if(study, [](const Respondent& each) {
                  return each.x && each.yes == 1.0;
              }));
}

/// Two strata of two units each, of two rows each.
SurveyStudy eightRows() {
    const double weights[] = {1, 2, 1, 2, 3, 1, 1, 1};
    const double y[] = {1, 2, 3, 5, 8, 13, 21, 34};
    const double x[] = {2, 1, 4, 3, 6, 9, 8, 12};
    SurveyStudy study;
    for (std::size_t i = 0; i < 8; ++i) {
        study.push_back({.weight = weights[i],
                         .stratum = i < 4 ? "a" : "b",
                         .unit = i % 4 < 2 ? "1" : "2",
                         .x = x[i],
                         .y = y[i]});
    }
    return study;
}

TEST(SurveyRegression, AgreesWithThePublishedPackageOnEightRows) {
    const SurveyStudy study = eightRows();
    const std::vector predictors = {numbersOf(study, &Respondent::x)};
    const auto fit =
        SurveyRegression::fit(numbersOf(study, &Respondent::y), predictors, designOf(study),
                              {.predictorNames = {"x"}, .outcomeName = "y"});
    ASSERT_TRUE(fit);
    ASSERT_EQ(fit->coefficients.size(), 2U);
    // R 4.2.2, survey 4.1.1: svyglm(y ~ x) of svydesign(~u, ~s, ~w, nest = TRUE).
    const test::Tolerance close{.relative = 1e-9};
    EXPECT_TRUE(closeTo(fit->coefficients[0].estimate, -3.88378200919238, close));
    EXPECT_TRUE(closeTo(fit->coefficients[0].standardError, 2.195558054974700, close));
    EXPECT_TRUE(closeTo(fit->coefficients[1].estimate, 2.56730137885752, close));
    EXPECT_TRUE(closeTo(fit->coefficients[1].standardError, 0.779197258747811, close));
    // R's summary(lm(y ~ x, weights = w))$r.squared, and sqrt(sum(w * resid^2) / sum(w)).
    EXPECT_TRUE(closeTo(fit->rSquared.value_or(0.0), 0.821990533191361, close));
    EXPECT_TRUE(closeTo(fit->residualStandardDeviation.value_or(0.0), 3.88538179936733, close));
    EXPECT_TRUE(closeTo(fit->waldF, std::pow(2.56730137885752 / 0.779197258747811, 2), close));
    // sqrt(svyvar(~y)).
    EXPECT_TRUE(closeTo(
        WeightedEstimators::standardDeviation(numbersOf(study, &Respondent::y), designOf(study)),
        9.84482782585023, close));
}

TEST(WeightedEstimators, CountWeightsAndRowsByGroup) {
    SurveyStudy study = eightRows();
    const char* const groups[] = {"b", "A", "b", "NA", "a", "a", "B", ""};
    for (std::size_t i = 0; i < 8; ++i) {
        study[i].group = groups[i];
        study[i].yes = i == 0 ? 2.0 : static_cast<double>(i % 2);
    }
    study[1].group = "a";
    const auto byGroup = [&](WeightedEstimand estimand, std::optional<double> Respondent::*of) {
        return WeightedEstimators::byGroup(estimand, numbersOf(study, of),
                                           *textsOf(study, &Respondent::group), designOf(study));
    };
    const std::vector<DomainEstimate> totals = byGroup(WeightedEstimand::total, &Respondent::y);
    ASSERT_EQ(totals.size(), 3U) << "NA names no group";
    EXPECT_EQ(totals[0].group, "a");
    EXPECT_EQ(totals[0].estimate.estimate, 2.0 * 2.0 + 3.0 * 8.0 + 13.0);
    EXPECT_EQ(totals[0].estimate.sumOfWeights, 6.0);
    EXPECT_EQ(totals[0].estimate.validN, 3);
    EXPECT_DOUBLE_EQ(totals[0].estimate.effectiveSampleSize.value_or(0.0), 36.0 / 14.0);
    EXPECT_EQ(totals[1].group, "B");
    EXPECT_EQ(totals[2].group, "b");
    EXPECT_EQ(totals[2].estimate.estimate, 4.0);

    const std::vector<DomainEstimate> shares =
        byGroup(WeightedEstimand::proportion, &Respondent::yes);
    EXPECT_DOUBLE_EQ(shares[0].estimate.estimate, 0.5) << "the two stands in another group";
    EXPECT_EQ(shares[2].estimate.readiness.status, AnalysisReadinessStatus::blocked);
}

TEST(WeightedEstimators, RefuseSumsThatAreNoNumbers) {
    const SurveyStudy study = eightRows();
    const SurveyDesign design = designOf(study);
    std::vector<std::optional<double>> x(8, 1.0);
    x[2] = INFINITY;
    const WeightedEstimate ratio =
        WeightedEstimators::ratio(numbersOf(study, &Respondent::y), NumericColumn(x), design);
    EXPECT_EQ(ratio.validN, 7);
    EXPECT_DOUBLE_EQ(ratio.estimate, 107.0 / 11.0);

    const NumericColumn large(std::vector<std::optional<double>>(8, 1e308));
    SurveyDesign noReplicate = design;
    noReplicate.replicateWeights = ReplicateWeights{.weights = {std::vector<double>(8, 0.0)}};
    const struct {
        int line;
        WeightedEstimate estimate;
        std::string message;
    } cases[] = {
        {__LINE__, WeightedEstimators::total(large, design),
         "The values or weights are too large or too small, or a replicate weight is missing, so "
         "the sums cannot be formed. Check the weights, or rescale the variable by a power of "
         "ten."},
        {__LINE__, WeightedEstimators::mean(numbersOf(study, &Respondent::y), noReplicate),
         "No replicate gives an estimate of the rows that hold the values, so no standard error "
         "can be formed. Check the replicate weights."},
    };
    for (const auto& each : cases) {
        ASSERT_EQ(each.estimate.readiness.issues.size(), 1U) << each.line;
        EXPECT_EQ(each.estimate.readiness.issues.front().message, each.message) << each.line;
        EXPECT_TRUE(std::isnan(each.estimate.estimate)) << each.line;
        EXPECT_TRUE(std::isnan(each.estimate.standardError)) << each.line;
    }
}

TEST(SurveyDesign, NamesEachStratumOfOneUnitOnce) {
    SurveyStudy study = eightRows();
    for (std::size_t i = 0; i < 4; ++i) {
        study[i].unit = "1";
    }
    EXPECT_EQ(designOf(study).singlePSUStrata(), std::vector<std::string>{"a"});
    SurveyDesign unstratified{.weights = {1, 1}};
    unstratified.clusters = TextColumn::of(std::vector<std::string>{"u", "u"});
    EXPECT_EQ(unstratified.singlePSUStrata(), std::vector<std::string>{"__all__"});
}

}  // namespace
}  // namespace sorvane
