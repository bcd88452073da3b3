#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyCorrelation.h"
#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"
#include "SorvaneCore/Survey/SurveyWording.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Survey/SurveyStudy.h"

/// When the user is warned of a design or a table, and in which words results are told.
namespace sorvane {
namespace {

using test::cautions;
using test::designOf;
using test::numbersOf;
using test::obstacles;
using test::Respondent;
using test::SurveyStudy;
using test::textsOf;
using Texts = std::vector<std::string>;

const std::string neither =
    "No strata or clusters were supplied. Standard errors assume simple random sampling with "
    "weights; supply strata and cluster (PSU) ids for design-based variance.";

/// A study of forty persons in so many units of one stratum.
SurveyStudy ofUnits(int units) {
    SurveyStudy study = test::surveyStudy();
    for (std::size_t i = 0; i < study.size(); ++i) {
        study[i].stratum = "all";
        study[i].unit = "u" + std::to_string(static_cast<int>(i) % units);
    }
    return study;
}

std::optional<SurveyModelResult> regressionOf(const SurveyStudy& study,
                                              const SurveyDesign& design) {
    const std::vector predictors = {numbersOf(study, &Respondent::x)};
    return SurveyRegression::fit(numbersOf(study, &Respondent::y), predictors, design,
                                 {.predictorNames = {"x"}, .outcomeName = "y"});
}

SurveyCorrelationResult correlationOf(const SurveyStudy& study, const SurveyDesign& design) {
    return SurveyCorrelation::pearson(numbersOf(study, &Respondent::x),
                                      numbersOf(study, &Respondent::y), design, "x", "y");
}

SurveyCategoricalResult tableOf(const SurveyStudy& study, const SurveyDesign& design) {
    return SurveyCategorical::test(*textsOf(study, &Respondent::answer),
                                   *textsOf(study, &Respondent::group), design, "answer", "group");
}

TEST(SurveyCautions, TellWhatTheDesignLeavesOut) {
    const SurveyStudy study = ofUnits(20);
    const SurveyDesign both = designOf(study);
    SurveyDesign noStrata = both;
    noStrata.strata = nullptr;
    SurveyDesign noClusters = both;
    noClusters.clusters = nullptr;
    SurveyDesign replicated{.weights = both.weights};
    replicated.replicateWeights =
        ReplicateWeights{.weights = std::vector<std::vector<double>>(20, both.weights)};
    for (std::size_t r = 0; r < 20; ++r) {
        replicated.replicateWeights->weights[r][r] = 0.0;
    }
    const struct {
        int line;
        SurveyDesign design;
        Texts expected;
    } cases[] = {
        {__LINE__, both, {}},
        {__LINE__, {.weights = both.weights}, {neither}},
        {__LINE__,
         noStrata,
         {"No strata were supplied; the sample is treated as a single stratum."}},
        {__LINE__,
         noClusters,
         {"No clusters (PSUs) were supplied; sampling is treated as element level within strata."}},
        {__LINE__, replicated, {}},
    };
    for (const auto& each : cases) {
        const WeightedEstimate mean =
            WeightedEstimators::mean(numbersOf(study, &Respondent::y), each.design);
        EXPECT_EQ(cautions(mean.readiness), each.expected) << each.line;
        EXPECT_EQ(cautions(regressionOf(study, each.design)->readiness), each.expected)
            << each.line;
        EXPECT_EQ(cautions(correlationOf(study, each.design).readiness), each.expected)
            << each.line;
    }
}

TEST(SurveyCautions, BeginBelowFifteenDegreesOfFreedom) {
    const auto few = [](int df) {
        return "Design degrees of freedom is " + std::to_string(df) +
               "; confidence intervals rely on a small-df t reference and are wide.";
    };
    for (const int units : {15, 16}) {
        const SurveyStudy study = ofUnits(units);
        const SurveyDesign design = designOf(study);
        const Texts expected = units == 15 ? Texts{few(14)} : Texts{};
        const WeightedEstimate mean =
            WeightedEstimators::mean(numbersOf(study, &Respondent::y), design);
        EXPECT_EQ(cautions(mean.readiness), expected);
        EXPECT_EQ(cautions(correlationOf(study, design).readiness), expected);
        const Texts ofTable = cautions(tableOf(study, design).readiness);
        EXPECT_EQ(std::ranges::count(ofTable, few(14)), units == 15 ? 1 : 0);
    }
    // A model tests on those that its predictor leaves.
    const SurveyStudy study = ofUnits(16);
    EXPECT_EQ(cautions(regressionOf(study, designOf(study))->readiness),
              Texts{"The tests have only 14 degree(s) of freedom, those of the design less the "
                    "predictors; they say little, and intervals are wide."});
    EXPECT_TRUE(cautions(regressionOf(ofUnits(17), designOf(ofUnits(17)))->readiness).empty());
}

TEST(SurveyCautions, TellWhereNothingIsLeftToTestWith) {
    const SurveyStudy study = ofUnits(2);
    const auto fit = regressionOf(study, designOf(study));
    ASSERT_TRUE(fit);
    EXPECT_EQ(cautions(fit->readiness),
              Texts{"The design has 1 degree(s) of freedom for 1 predictor(s), so nothing can be "
                    "tested. Use fewer predictors."});
    ASSERT_EQ(fit->coefficients.size(), 2U);
    EXPECT_GT(fit->coefficients[1].standardError, 0.0);
    EXPECT_TRUE(std::isnan(fit->coefficients[1].pValue));
    EXPECT_TRUE(std::isnan(fit->coefficients[1].lowerBound));
    EXPECT_TRUE(std::isnan(fit->waldF));
}

TEST(SurveyCautions, TellWhyPredictorsAreNotTestedTogether) {
    SurveyStudy study = ofUnits(20);
    std::vector<std::optional<double>> isFirst;
    std::vector<std::optional<double>> isSecond;
    std::vector<std::optional<double>> square;
    for (std::size_t i = 0; i < study.size(); ++i) {
        isFirst.emplace_back(i % 3 == 0 ? 1.0 : 0.0);
        isSecond.emplace_back(i % 3 == 1 ? 1.0 : 0.0);
        square.emplace_back(*study[i].x * *study[i].x);
    }
    SurveyDesign twoReplicates = designOf(study);
    twoReplicates.replicateWeights =
        ReplicateWeights{.weights = {2, twoReplicates.weights}, .replicateScale = {{1.0, 1.0}}};
    for (std::size_t i = 0; i < study.size(); ++i) {
        twoReplicates.replicateWeights->weights[i % 2][i] *= 0.5;
    }
    const std::vector three = {numbersOf(study, &Respondent::x), NumericColumn(square),
                               NumericColumn(isFirst)};
    const auto few =
        SurveyRegression::fit(numbersOf(study, &Respondent::y), three, twoReplicates,
                              {.predictorNames = {"x", "square", "first"}, .outcomeName = "y"});
    EXPECT_TRUE(std::isnan(few->waldF));
    EXPECT_EQ(cautions(few->readiness),
              Texts{"The predictors cannot be tested together, as the design compares too few PSUs "
                    "or replicates for as many. Use fewer predictors."});

    // The outcome varies in the third group alone, which both others are compared with.
    for (std::size_t i = 0; i < study.size(); ++i) {
        study[i].y = i % 3 == 0 ? 3.0 : i % 3 == 1 ? 5.0 : study[i].y;
    }
    const std::vector groups = {NumericColumn(isFirst), NumericColumn(isSecond)};
    const auto fixed =
        SurveyRegression::fit(numbersOf(study, &Respondent::y), groups, designOf(study),
                              {.predictorNames = {"first", "second"}, .outcomeName = "y"});
    EXPECT_GT(fixed->coefficients[1].standardError, 0.0);
    EXPECT_GT(fixed->coefficients[2].standardError, 0.0);
    EXPECT_TRUE(std::isnan(fixed->waldF));
    EXPECT_EQ(
        cautions(fixed->readiness),
        Texts{"The predictors cannot be tested together, as one combination of their effects "
              "has no standard error, or hardly any beside the others, such as the difference "
              "of two groups in each of which the outcome has one value. Combine such "
              "groups, or leave a predictor out."});
}

TEST(SurveyCautions, CountTheRowsThatWereDropped) {
    SurveyStudy study = ofUnits(20);
    study[3].x = study[11].x = study[30].x = std::nullopt;
    study[7].answer = " n/a ";
    const SurveyDesign design = designOf(study);
    const auto dropped = [](int rows) {
        return Texts{std::to_string(rows) +
                     " row(s) were dropped because a value was missing; they are treated as if "
                     "they had not been sampled."};
    };
    EXPECT_EQ(cautions(regressionOf(study, design)->readiness), dropped(3));
    EXPECT_EQ(cautions(correlationOf(study, design).readiness), dropped(3));
    EXPECT_EQ(Texts{cautions(tableOf(study, design).readiness).back()}, dropped(1));
    EXPECT_EQ(correlationOf(study, design).readiness.validCases, 37);
}

TEST(SurveyCategorical, CallsCellsOfFewerThanFiveRowsThin) {
    SurveyStudy study = ofUnits(20);
    study.resize(20);
    for (std::size_t i = 0; i < study.size(); ++i) {
        study[i].answer = i < 11 ? "no" : "yes";
        study[i].group = i < 5 || i >= 15 ? "a" : "b";
    }
    const auto thin = [](const SurveyStudy& of) {
        return cautions(tableOf(of, designOf(of)).readiness);
    };
    // no a 5, no b 6, yes a 5, yes b 4.
    EXPECT_EQ(thin(study),
              Texts{"1 cell(s) of the table hold fewer than 5 rows; the test is imprecise. "
                    "Consider combining categories."});
    study[10].answer = "yes";
    EXPECT_TRUE(thin(study).empty());
}

TEST(SurveyCategorical, SaysWhyATableCannotBeTested) {
    SurveyStudy study = ofUnits(20);
    for (Respondent& each : study) {
        each.answer = each.group;
    }
    const SurveyCategoricalResult diagonal = tableOf(study, designOf(study));
    EXPECT_EQ(obstacles(diagonal.readiness),
              Texts{"Too many cells of the table are empty to test it. Combine categories."});
    EXPECT_EQ(diagonal.cells.size(), 9U) << "the cells stand";
    EXPECT_TRUE(std::isnan(diagonal.fStatistic));
    EXPECT_EQ(SurveyWording::summary(diagonal), "");

    const SurveyStudy one = ofUnits(1);
    EXPECT_EQ(obstacles(tableOf(one, designOf(one)).readiness),
              Texts{"The design gives the cells no variance, so nothing can be tested. Check "
                    "strata and clusters."});
}

TEST(SurveyModels, RefuseWhatHasNothingToTell) {
    SurveyStudy study = test::surveyStudy();
    const SurveyDesign design = designOf(study);
    SurveyStudy two = study;
    for (std::size_t i = 2; i < two.size(); ++i) {
        two[i].y = std::nullopt;
    }
    EXPECT_EQ(obstacles(regressionOf(two, design)->readiness),
              Texts{"There are not enough complete rows (2) to estimate 2 coefficient(s)."});
    const SurveyCorrelationResult pair = correlationOf(two, design);
    EXPECT_EQ(obstacles(pair.readiness),
              Texts{"Only 2 row(s) hold both values and a weight; at least 3 are needed. Choose "
                    "variables with more answers."});
    EXPECT_EQ(SurveyWording::summary(pair), "");

    const std::vector predictors = {numbersOf(study, &Respondent::x)};
    const SurveyModelOptions options{.predictorNames = {"x"}, .outcomeName = "y"};
    const auto ordinal =
        SurveyOrdinal::fit(numbersOf(study, &Respondent::yes), predictors, design, options);
    EXPECT_EQ(ordinal->readiness.validCases, 40);
    std::vector<std::optional<double>> counts(40, 0.0);
    EXPECT_EQ(
        obstacles(
            SurveyGLM::fitPoisson(NumericColumn(counts), predictors, design, options)->readiness),
        Texts{"The outcome has no events (all zeros)."});
    counts[5] = -1.0;
    EXPECT_FALSE(SurveyGLM::fitPoisson(NumericColumn(counts), predictors, design, options));
    counts[5] = 1.5;
    EXPECT_FALSE(SurveyGLM::fitPoisson(NumericColumn(counts), predictors, design, options));
}

TEST(SurveyWording, TellsResultsInOneSentence) {
    EXPECT_EQ(SurveyWording::summary(SurveyCorrelationResult{.xName = "age",
                                                             .yName = "trust",
                                                             .r = -0.3128,
                                                             .standardError = 0.0519,
                                                             .t = -6.027,
                                                             .pValue = 0.00001,
                                                             .designDegreesOfFreedom = 31}),
              "In the population that the sample stands for, age and trust correlate by an "
              "estimated r = -.313 (SE .052), t(31) = -6.03, p < .001.");
    EXPECT_EQ(SurveyWording::summary(SurveyCategoricalResult{.rowName = "region",
                                                             .columnName = "vote",
                                                             .chiSquareDF = 4,
                                                             .fStatistic = 2.347,
                                                             .dfNumerator = 3.456,
                                                             .dfDenominator = 107.136,
                                                             .pValue = 0.0713,
                                                             .cramersV = 0.1234}),
              "The association of region and vote was tested with the Rao-Scott second-order "
              "correction: F(3.46, 107.14) = 2.35, p = .071; Cramer's V = .123.");
}

TEST(SurveyWording, SaysOfEachModelWhatMustNotBeClaimed) {
    const auto says = [](SurveyModelKind kind, std::string_view part) {
        const Texts all = SurveyWording::cautions(kind);
        return std::ranges::any_of(
            all, [part](const std::string& text) { return text.find(part) != text.npos; });
    };
    using enum SurveyModelKind;
    for (const SurveyModelKind kind : {linear, logistic, poisson, ordinal}) {
        EXPECT_TRUE(says(kind, "association, not causation")) << displayName(kind);
        EXPECT_TRUE(says(kind, "treated as not sampled")) << displayName(kind);
        EXPECT_EQ(says(kind, "the same across every cut point"), kind == ordinal)
            << displayName(kind);
        EXPECT_EQ(says(kind, "(AIC, likelihood-ratio tests) do not hold"), kind != linear)
            << displayName(kind);
    }
}

}  // namespace
}  // namespace sorvane
