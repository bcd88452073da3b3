#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/Structural/SEMDiscrepancy.h"
#include "SorvaneCore/Models/Structural/SEMEstimation.h"
#include "SorvaneCore/Models/Structural/SEMFitMeasures.h"
#include "SorvaneCore/Numerics/BFGSMinimizer.h"
#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using test::closeTo;
using Texts = std::vector<std::string>;
using Values = std::vector<std::optional<double>>;

/// Items q1 to q8, the odd ones of one factor and the even ones of another that depends on it, and
/// `twice`, which is 2 q1.
struct Survey {
    explicit Survey(std::size_t n) : cells(names.size(), Values(n)) {
        SplitMix64 draws(3);
        for (std::size_t i = 0; i < n; ++i) {
            const double first = draws.nextUnitDouble();
            const double second = 0.5 * first + 0.5 * draws.nextUnitDouble();
            for (std::size_t j = 0; j < 8; ++j) {
                const double factor = j % 2 == 0 ? first : second;
                cells[j][i] =
                    (1.0 + 0.1 * static_cast<double>(j)) * factor + 0.4 * draws.nextUnitDouble();
            }
            cells[8][i] = 2.0 * *cells[0][i];
        }
    }

    std::optional<SEMResult> fit(const std::string& model) const {
        const std::vector<NumericColumn> columns(cells.begin(), cells.end());
        return StructuralEquationModel::fit(model, columns, names);
    }

    Texts names = {"q1", "q2", "q3", "q4", "q5", "q6", "q7", "q8", "twice"};
    std::vector<Values> cells;
};

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const std::string twoFactors = "f =~ q1 + q3 + q5 + q7\ng =~ q2 + q4 + q6 + q8\n";

Texts messages(const SEMResult& result) {
    Texts texts;
    for (const AnalysisReadinessIssue& issue : result.readiness->issues) {
        texts.push_back(issue.message);
    }
    return texts;
}

TEST(StructuralEquationModel, BlocksWhatCannotBeEstimated) {
    const std::string singular =
        "The sample covariance matrix is not positive definite (perfect collinearity or too few "
        "cases).";
    struct Case {
        int line;
        std::size_t n;
        std::string model;
        std::string message;
        std::int64_t df;
    };
    const std::vector<Case> cases = {
        {__LINE__, 2, "q1 ~ q2", singular, 0},
        {__LINE__, 50, "f =~ q1 + q2 + twice", singular, 0},
        {__LINE__, 50, "f =~ q1 + q2",
         "Model is not identified: free parameters exceed available covariance moments (df < 0).",
         -1},
    };
    for (const Case& each : cases) {
        const auto result = Survey(each.n).fit(each.model);
        ASSERT_TRUE(result) << "line " << each.line;
        EXPECT_EQ(messages(*result), Texts{each.message}) << "line " << each.line;
        EXPECT_EQ(result->readiness->status, AnalysisReadinessStatus::blocked);
        EXPECT_EQ(result->fit.degreesOfFreedom, each.df) << "line " << each.line;
        EXPECT_TRUE(std::isnan(result->fit.chiSquare) && std::isnan(result->discrepancy));
        EXPECT_FALSE(result->converged);
        EXPECT_TRUE(result->parameters.empty());
    }
}

TEST(StructuralEquationModel, BlocksWhereNoStartImpliesACovariance) {
    const Texts models = {"q1 ~ 1*q3\nq3 ~ 1*q1", "q1 ~~ 10*q2", "f =~ q1 + q3 + q5\nq1 ~~ -1*q1",
                          "f =~ q1 + q3 + q5\ng =~ q2 + q4\nf ~~ 3*g", "q1 ~ 1000000*q2"};
    for (const std::string& model : models) {
        const auto result = Survey(50).fit(model);
        EXPECT_EQ(messages(*result), Texts{"Model-implied covariance could not be evaluated at the "
                                           "solution."})
            << model;
        EXPECT_FALSE(result->converged) << model;
        EXPECT_TRUE(result->parameters.empty()) << model;
        EXPECT_TRUE(std::isnan(result->discrepancy) && std::isnan(result->fit.chiSquare)) << model;
    }
}

TEST(StructuralEquationModel, CautionsAboutSmallSamplesAndNegativeVariances) {
    const std::string few =
        "Fewer than 100 complete cases; SEM estimates and fit indices are unstable at this sample "
        "size.";
    const std::string perParameter =
        "Fewer than five cases per free parameter; the solution may be unstable.";
    EXPECT_EQ(messages(*Survey(99).fit(twoFactors)), (Texts{few}));
    EXPECT_EQ(messages(*Survey(84).fit(twoFactors)), (Texts{few, perParameter}));
    EXPECT_TRUE(Survey(100).fit(twoFactors)->readiness->issues.empty());
    const auto heywood = Survey(200).fit(twoFactors + "q1 ~~ -0.01*q1\nq2 ~~ -0.01*q2");
    EXPECT_TRUE(heywood->converged);
    EXPECT_EQ(messages(*heywood),
              Texts{"A negative estimated variance (Heywood case) was found for q1, q2; inspect "
                    "the solution."});
}

TEST(StructuralEquationModel, LeavesOutIncompleteRowsOfItsOwnColumnsOnly) {
    Survey survey(120);
    survey.cells[0][3].reset();
    survey.cells[1][3].reset();
    survey.cells[2][7].reset();
    survey.cells[8].assign(120, std::nullopt);
    const auto result = survey.fit(twoFactors);
    EXPECT_EQ(result->n, 118);
    EXPECT_EQ(result->readiness->totalRows, 120);
    survey.cells[5].pop_back();
    EXPECT_FALSE(survey.fit(twoFactors));
}

TEST(StructuralEquationModel, FitsAlikeInAnyUnits) {
    const std::string model = twoFactors + "g ~ f\nq2 ~~ q4\nq8 ~ q7";
    Survey survey(150);
    const auto plain = survey.fit(model);
    for (std::optional<double>& cell : survey.cells[1]) {
        *cell = 1e5 * *cell;
    }
    for (std::optional<double>& cell : survey.cells[2]) {
        *cell = 1e-6 * *cell + 1.0;
    }
    const auto scaled = survey.fit(model);
    EXPECT_TRUE(plain->converged && scaled->converged);
    EXPECT_TRUE(closeTo(scaled->fit.chiSquare, plain->fit.chiSquare, {.relative = 1e-9}));
    for (std::size_t i = 0; i < plain->parameters.size(); ++i) {
        const SEMParameter& expected = plain->parameters[i];
        const SEMParameter& got = scaled->parameters[i];
        EXPECT_TRUE(closeTo(*got.standardized, *expected.standardized, {1e-6, 1e-6})) << got.label;
        EXPECT_EQ(got.z.has_value(), expected.z.has_value()) << got.label;
        EXPECT_TRUE(closeTo(got.z.value_or(0.0), expected.z.value_or(0.0), {1e-5, 1e-5}))
            << got.label;
    }
}

TEST(StructuralEquationModel, FitsPathsBetweenUnitsThatAreFarApart) {
    const std::string model = "q1 ~ q3\nq5 ~ q1 + q3";
    Survey survey(150);
    const auto plain = survey.fit(model);
    for (std::optional<double>& cell : survey.cells[4]) {
        *cell = 1e13 * *cell;
    }
    const auto scaled = survey.fit(model);
    ASSERT_EQ(scaled->parameters.size(), plain->parameters.size());
    for (std::size_t i = 0; i < plain->parameters.size(); ++i) {
        EXPECT_TRUE(closeTo(*scaled->parameters[i].standardized, *plain->parameters[i].standardized,
                            {1e-6, 1e-6}))
            << plain->parameters[i].label;
    }
    const auto implied = StructuralEquationModel::impliedCovariance(model, *scaled, survey.names);
    const auto expected = StructuralEquationModel::impliedCovariance(model, *plain, survey.names);
    ASSERT_TRUE(implied && expected);
    EXPECT_TRUE(closeTo(implied->back(), 1e26 * expected->back(), {.relative = 1e-6}));
}

TEST(StructuralEquationModel, LeavesErrorsOutWhereNothingSettlesACoefficient) {
    const auto result = Survey(150).fit("f =~ q1 + q2\ng =~ q1 + q3 + q4");
    EXPECT_EQ(result->fit.degreesOfFreedom, 0);
    for (const SEMParameter& parameter : result->parameters) {
        EXPECT_FALSE(parameter.standardError || parameter.z || parameter.pValue);
    }
}

TEST(StructuralEquationModel, RebuildsTheImpliedCovariance) {
    const Survey survey(150);
    const std::string saturated = "q3 ~ q1 + q2";
    const auto result = survey.fit(saturated);
    const auto implied =
        StructuralEquationModel::impliedCovariance(saturated, *result, survey.names);
    const std::vector<NumericColumn> columns(survey.cells.begin(), survey.cells.end());
    const auto sample =
        StructuralEquationModel::sampleCovariance(result->observed, columns, survey.names);
    ASSERT_TRUE(implied && sample);
    for (std::size_t i = 0; i < sample->matrix.size(); ++i) {
        EXPECT_TRUE(closeTo((*implied)[i], sample->matrix[i], {1e-6, 1e-9}));
    }
    EXPECT_FALSE(StructuralEquationModel::impliedCovariance(twoFactors, *result, survey.names));
}

/// A model over a sample in units of a variance of 1.
struct Problem {
    explicit Problem(const std::string& text)
        : model(SEMModel::build(SEMModelSpecParser::parse(text), survey.names)), form(model) {
        const std::vector<NumericColumn> columns(survey.cells.begin(), survey.cells.end());
        const auto covariance =
            StructuralEquationModel::sampleCovariance(model.observed, columns, survey.names);
        sample = *SEMUnitSample::of(covariance->matrix, model.observed.size());
    }

    SEMDiscrepancy discrepancy() const {
        std::vector<double> fixed;
        std::vector<bool> isFree;
        for (const SEMParameterSlot& slot : model.parameters) {
            fixed.push_back(slot.fixedValue);
            isFree.push_back(slot.isFree);
        }
        return {form, fixed, isFree, sample.correlations, sample.logDeterminant};
    }
    std::vector<double> start() const {
        return SEMEstimation::initialParameters(model, form, sample.correlations);
    }

    Survey survey{150};
    SEMModel model;
    ReticularModel form;
    SEMUnitSample sample{};
};

const Texts problems = {
    twoFactors,
    twoFactors + "g ~ f\nq2 ~~ q4\nq8 ~ q7",
    "f =~ q1 + q3\ng =~ q2 + q4\nh =~ q5 + q7\ns =~ f + g + h",
    "q1 ~ q2 + 0.3*q3\nq3 ~ q4 + q5\nq6 ~ q4",
    "q1 ~ q3 + q2\nq3 ~ 0.2*q1 + q4",
};

TEST(SEMDiscrepancy, HasTheGradientOfItsValue) {
    for (const std::string& text : problems) {
        const Problem problem(text);
        SEMDiscrepancy discrepancy = problem.discrepancy();
        std::vector<double> point = problem.start();
        for (std::size_t k = 0; k < point.size(); ++k) {
            point[k] += 0.01 * static_cast<double>(k % 5);
        }
        const std::vector<double> gradient = discrepancy.gradient(point);
        for (std::size_t k = 0; k < point.size(); ++k) {
            std::vector<double> above = point;
            std::vector<double> below = point;
            above[k] += 1e-5;
            below[k] -= 1e-5;
            const double slope = (discrepancy.value(above) - discrepancy.value(below)) / 2e-5;
            EXPECT_TRUE(closeTo(gradient[k], slope, {1e-6, 1e-7})) << text << " " << k;
        }
    }
}

TEST(SEMDiscrepancy, LeadsToTheSameMinimumWithDifferences) {
    const BFGSMinimizer::Limits limits{.maxIterations = 300, .gradientTolerance = 1e-7};
    for (const std::string& text : problems) {
        const Problem problem(text);
        SEMDiscrepancy discrepancy = problem.discrepancy();
        const auto value = [&](std::span<const double> point) {
            return discrepancy.value(point);
        };
        const auto slopes = [&](std::span<const double> point) {
            return discrepancy.gradient(point);
        };
        const auto exact = BFGSMinimizer::minimize(problem.start(), value, slopes, limits);
        const auto plain = BFGSMinimizer::minimize(problem.start(), value, limits);
        EXPECT_EQ(exact.converged, plain.converged) << text;
        EXPECT_NEAR(static_cast<double>(exact.iterations), static_cast<double>(plain.iterations),
                    10)
            << text;
        for (std::size_t k = 0; k < exact.parameters.size(); ++k) {
            EXPECT_TRUE(closeTo(exact.parameters[k], plain.parameters[k], {1e-6, 1e-6})) << text;
        }
    }
}

TEST(SEMFitMeasures, HasNoncentralProbabilities) {
    struct Case {
        int line;
        double x;
        double df;
        double noncentrality;
        double probability;
    };
    const std::vector<Case> cases = {
        {__LINE__, 85.3, 24, 0, 0.999999991479831},
        {__LINE__, 85.3, 24, 61.3, 0.522061613397734},
        {__LINE__, 3, 1, 0.5, 0.839944426939826},
        {__LINE__, 1e-3, 1, 1e-6, 0.0252271080206864},
        {__LINE__, 5000, 1130, 3900, 0.413844547226902},
        {__LINE__, 40000, 300, 39500, 0.692895933283035},
        {__LINE__, 10, 50, 5, 2.10636730968761e-11},
        {__LINE__, 2, 500, 3, 0},
        {__LINE__, 0, 3, 1, 0},
        {__LINE__, 1e5, 1e5, 10, 0.491675291536779},
        {__LINE__, 942847, 24, 942000, 0.664362510644831},
        {__LINE__, 942847, 24, 0, 1},
        {__LINE__, 3e14, 24, 2.9999999e14, 0.613584750509291},
        {__LINE__, 3e14, 24, 1e-9, 1},
        {__LINE__, 24, 24, 3e14, 0},
        {__LINE__, 1, 0, 1, notANumber},
        {__LINE__, 1, 1.5, 1, notANumber},
    };
    for (const Case& each : cases) {
        EXPECT_TRUE(
            closeTo(SEMFitMeasures::noncentralChiSquareCDF(each.x, each.df, each.noncentrality),
                    each.probability, {.relative = 1e-10, .absolute = 1e-15}))
            << "line " << each.line;
    }
}

TEST(SEMFitMeasures, BoundsTheRMSEAWhereThereAreDegreesOfFreedom) {
    const auto none = SEMFitMeasures::rmseaConfidenceInterval(5.0, 0, 100);
    EXPECT_FALSE(none);
    EXPECT_FALSE(SEMFitMeasures::rmseaConfidenceInterval(notANumber, 3, 100));
    const auto perfect = SEMFitMeasures::rmseaConfidenceInterval(0.0, 3, 100);
    EXPECT_EQ(*perfect, (RMSEAInterval{.lower = 0.0, .upper = 0.0}));
    for (const double chiSquare : {400.0, 20000.0, 3e14}) {
        const auto poor = SEMFitMeasures::rmseaConfidenceInterval(chiSquare, 300, 1000);
        for (const auto& [bound, tail] :
             {std::pair(poor->lower, 0.95), std::pair(poor->upper, 0.05)}) {
            const double noncentrality = bound * bound * 300 * 1000;
            EXPECT_TRUE(
                closeTo(SEMFitMeasures::noncentralChiSquareCDF(chiSquare, 300, noncentrality), tail,
                        {.relative = 1e-5}))
                << chiSquare;
        }
    }
}

}  // namespace

}  // namespace sorvane
