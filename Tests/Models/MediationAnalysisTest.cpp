#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/Mediation/IndirectEffectBootstrap.h"
#include "SorvaneCore/Models/Mediation/MediationRegression.h"
#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using MediationAnalysis::moderation;
using MediationAnalysis::simpleMediation;
using test::closeTo;
using Values = std::vector<std::optional<double>>;
using Texts = std::vector<std::string>;

/// X, a mediator, an outcome and a covariate, each off 0 by `offset`.
struct Study {
    explicit Study(std::size_t n, double slope = 0.6, double offset = 0.0) {
        SplitMix64 draws(5);
        for (std::size_t i = 0; i < n; ++i) {
            const double c = draws.nextUnitDouble();
            x.emplace_back(offset + draws.nextUnitDouble() + c);
            m.emplace_back(offset + slope * *x.back() + draws.nextUnitDouble());
            y.emplace_back(offset + slope * *m.back() - 0.3 * c + draws.nextUnitDouble());
            covariate.emplace_back(offset + c);
        }
    }

    std::optional<MediationResult> mediation(const MediationOptions& options = {}) const {
        return simpleMediation(NumericColumn(x), NumericColumn(m), NumericColumn(y),
                               std::vector{NumericColumn(covariate)}, options);
    }
    std::optional<ModerationResult> moderated(const Values& moderator) const {
        return moderation(NumericColumn(x), NumericColumn(moderator), NumericColumn(y), {},
                          {.x = "X", .moderator = "W"});
    }

    Values x{};
    Values m{};
    Values y{};
    Values covariate{};
};

Texts messages(const AnalysisReadiness& readiness) {
    Texts result;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        result.push_back(issue.message);
    }
    return result;
}

TEST(MediationAnalysis, DrawsAtLeastTwoHundredResamples) {
    const Study study(60);
    EXPECT_EQ(study.mediation({.bootstrapSamples = 50})->bootstrapSamples, 200);
    EXPECT_EQ(study.mediation({.bootstrapSamples = 201})->bootstrapSamples, 201);
}

TEST(MediationAnalysis, DrawsEachResampleFromWhereTheOneBeforeEnds) {
    const Study study(40);
    std::vector<std::vector<double>> columns;
    for (const Values* column : {&study.x, &study.m, &study.y}) {
        columns.emplace_back();
        for (const std::optional<double>& value : *column) {
            columns.back().push_back(*value);
        }
    }
    constexpr std::size_t count = 120;
    const std::vector<double> products =
        IndirectEffectBootstrap({}, columns[0], columns[1], columns[2]).estimates(count, 9);
    ASSERT_EQ(products.size(), count);
    SplitMix64 draws(9);
    for (const double product : products) {
        std::vector<std::vector<double>> drawn(3);
        for (std::size_t i = 0; i < 40; ++i) {
            const std::uint64_t row = draws.next() % 40;
            for (std::size_t j = 0; j < 3; ++j) {
                drawn[j].push_back(columns[j][row]);
            }
        }
        const std::vector<const std::vector<double>*> onX = {&drawn[0]};
        const std::vector<const std::vector<double>*> onBoth = {&drawn[1], &drawn[0]};
        const double a = MediationRegression::fit(onX, drawn[1])->coefficients[1];
        const double b = MediationRegression::fit(onBoth, drawn[2])->coefficients[1];
        EXPECT_TRUE(closeTo(product, a * b, {.relative = 1e-10, .absolute = 1e-13}));
    }
}

TEST(MediationAnalysis, KeepsItsDigitsFarFromZero) {
    const auto near = Study(80).mediation();
    const auto far = Study(80, 0.6, 1e4).mediation();
    EXPECT_TRUE(closeTo(far->a.standardError, near->a.standardError, {.relative = 1e-9}));
    EXPECT_TRUE(closeTo(far->indirect, near->indirect, {.relative = 1e-9}));
    EXPECT_TRUE(closeTo(far->bootLower, near->bootLower, {.relative = 1e-9}));
}

TEST(MediationAnalysis, TakesTheEndsOfTheIntervalFromTheOrderedEstimates) {
    const Study study(60);
    std::vector<double> widths;
    for (const double level : {0.5, 0.95, 1.0}) {
        const auto result = study.mediation({.confidenceLevel = level});
        widths.push_back(result->bootUpper - result->bootLower);
        EXPECT_LT(result->bootLower, result->indirect);
        EXPECT_GT(result->bootUpper, result->indirect);
    }
    EXPECT_LT(widths[0], widths[1]);
    EXPECT_LT(widths[1], widths[2]);
    // At a level of 0 the two ends cross in the middle.
    const auto point = study.mediation({.confidenceLevel = 0.0});
    EXPECT_NEAR(point->bootLower, point->bootUpper, 0.05 * widths[1]);
}

TEST(MediationAnalysis, PartsTheTotalEffectExactly) {
    for (const double slope : {0.6, -0.4}) {
        const auto result = Study(70, slope).mediation();
        ASSERT_TRUE(result);
        EXPECT_EQ(result->indirect, result->a.estimate * result->b.estimate);
        // Least squares part a total effect without rest, whatever the covariates.
        EXPECT_TRUE(closeTo(result->cTotal.estimate, result->cPrime.estimate + result->indirect,
                            {.relative = 1e-9}));
        EXPECT_TRUE(closeTo(result->proportionMediated.value_or(0.0),
                            result->indirect / result->cTotal.estimate));
        const double a = result->a.estimate * result->b.standardError;
        const double b = result->b.estimate * result->a.standardError;
        EXPECT_TRUE(closeTo(result->sobelZ, result->indirect / std::sqrt(a * a + b * b)));
    }
}

TEST(MediationAnalysis, CautionsAboutFewCasesAndDisagreement) {
    const std::string few =
        "Small sample for mediation; bootstrap intervals are wide and unstable below about 50 "
        "cases.";
    EXPECT_EQ(messages(Study(49).mediation()->readiness), Texts{few});
    const auto enough = Study(50).mediation();
    EXPECT_TRUE(enough->readiness.issues.empty());
    EXPECT_EQ(enough->readiness.minimumRequired, "Numeric X, M, Y with \u2265 6 complete cases");
    bool disagreed = false;
    for (const double slope : {0.1, 0.15, 0.2, 0.25, 0.3, 0.35, 0.4}) {
        const auto result = Study(50, slope).mediation();
        const bool excludesZero = result->bootLower > 0.0 || result->bootUpper < 0.0;
        const bool disagrees = excludesZero != (result->sobelP < 0.05);
        EXPECT_EQ(result->readiness.issues.size(), disagrees ? 1U : 0U) << slope;
        disagreed = disagreed || disagrees;
    }
    EXPECT_TRUE(disagreed);
}

TEST(MediationAnalysis, HasNothingToSayWithoutEnoughToFit) {
    Study study(30);
    EXPECT_TRUE(study.mediation());
    Study shorter = study;
    shorter.covariate.pop_back();
    EXPECT_FALSE(shorter.mediation());
    Study constant = study;
    constant.x.assign(30, 0.1);
    EXPECT_FALSE(constant.mediation());
    Study collinear = study;
    collinear.m = collinear.x;
    EXPECT_FALSE(collinear.mediation());
    for (std::size_t i = 6; i < 30; ++i) {
        study.y[i].reset();
    }
    EXPECT_EQ(study.mediation()->n, 6);
    study.y[5].reset();
    EXPECT_FALSE(study.mediation());
}

TEST(MediationAnalysis, NeedsAHundredResamplesThatCanBeFitted) {
    // Each of the four must be drawn for the predictors to vary, which one resample in six does.
    const auto unit = [](std::size_t row) {
        Values values(7, 0.0);
        values[row] = 1.0;
        return values;
    };
    const std::vector covariates = {NumericColumn(unit(0)), NumericColumn(unit(1))};
    const NumericColumn y(Values{1, 3, 2, 5, 4, 7, 5});
    const auto run = [&](std::int64_t samples) {
        return simpleMediation(NumericColumn(unit(2)), NumericColumn(unit(3)), y, covariates,
                               {.bootstrapSamples = samples});
    };
    EXPECT_FALSE(run(200));
    const auto result = run(2000);
    ASSERT_TRUE(result);
    EXPECT_GT(result->bootstrapSamples, 100);
    EXPECT_LT(result->bootstrapSamples, 1000);
}

TEST(MediationAnalysis, LeavesOutTheShareOfNoTotalEffect) {
    // Y is independent of X but for 1e-13.
    const Values x = {-1, -1, 1, 1, -1, -1, 1, 1};
    const Values m = {0, 1, 1, 2, 2, 0, 1, 3};
    Values y = {1, 2, 2, 1, -1, -2, -2, -1};
    const auto result =
        simpleMediation(NumericColumn(x), NumericColumn(m), NumericColumn(y), {}, {});
    ASSERT_TRUE(result);
    EXPECT_LT(std::abs(result->cTotal.estimate), 1e-12);
    EXPECT_FALSE(result->proportionMediated);
}

TEST(ModerationAnalysis, TakesSlopesFromTheUncentredModel) {
    const Study study(50);
    const auto result = study.moderated(study.covariate);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->simpleSlopes[0].label, "W \u2212 1 SD");
    EXPECT_EQ(result->simpleSlopes[1].label, "W mean");
    EXPECT_EQ(result->simpleSlopes[2].label, "W + 1 SD");
    // Where the moderator counts from a value, the coefficient of X is the slope there.
    for (const SimpleSlope& slope : result->simpleSlopes) {
        Values moved = study.covariate;
        for (std::optional<double>& value : moved) {
            *value -= slope.moderatorValue;
        }
        const MediationPath at = study.moderated(moved)->coefficients[1];
        EXPECT_TRUE(closeTo(at.estimate, slope.slope, {.relative = 1e-10})) << slope.label;
        EXPECT_TRUE(closeTo(at.standardError, slope.standardError, {.relative = 1e-10}));
        EXPECT_TRUE(closeTo(at.pValue, slope.pValue, {.relative = 1e-8}));
    }
    EXPECT_TRUE(result->readiness.issues.empty());
    EXPECT_EQ(Study(49).moderated(Study(49).covariate)->readiness.issues.size(), 1U);
}

TEST(ModerationAnalysis, TakesItsLevelsAndShareOfVarianceFromTheSample) {
    const Study study(20);
    Values counted;
    for (int i = 1; i <= 20; ++i) {
        counted.emplace_back(i);
    }
    const auto result = study.moderated(counted);
    ASSERT_TRUE(result);
    // Of 1 to 20: the variance is 20 * 21 / 12.
    EXPECT_TRUE(closeTo(result->simpleSlopes[0].moderatorValue, 10.5 - std::sqrt(35.0)));
    EXPECT_TRUE(closeTo(result->simpleSlopes[2].moderatorValue, 10.5 + std::sqrt(35.0)));
    double mean = 0.0;
    for (const auto& y : study.y) {
        mean += *y / 20.0;
    }
    double left = 0.0;
    double all = 0.0;
    for (std::size_t i = 0; i < 20; ++i) {
        const double x = *study.x[i];
        const double w = *counted[i];
        const auto& b = result->coefficients;
        const double fitted =
            b[0].estimate + b[1].estimate * x + b[2].estimate * w + b[3].estimate * x * w;
        left += (*study.y[i] - fitted) * (*study.y[i] - fitted);
        all += (*study.y[i] - mean) * (*study.y[i] - mean);
    }
    EXPECT_TRUE(closeTo(result->rSquared, 1.0 - left / all, {.relative = 1e-9}));
    EXPECT_EQ(result->interaction.label, "X \u00d7 W");
    EXPECT_EQ(result->interaction, result->coefficients[3]);
}

TEST(ModerationAnalysis, HasNothingToSayAboutAConstantModerator) {
    const Study study(20);
    EXPECT_FALSE(study.moderated(Values(20, 0.1)));
    const auto small = Study(20).moderated(Study(20).covariate);
    EXPECT_EQ(messages(small->readiness),
              Texts{"Small sample for an interaction; power for moderation is low below about 50 "
                    "cases."});
    EXPECT_EQ(small->readiness.minimumRequired, "Numeric X, W, Y with \u2265 5 complete cases");
}

}  // namespace

}  // namespace sorvane
