#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"

#include <array>
#include <cmath>
#include <utility>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using test::cautions;
using test::closeTo;
using test::obstacles;
using Cells = std::vector<std::optional<double>>;
using Labels = std::vector<std::string>;
using Fit = std::optional<MultilevelResult> (*)(const MultilevelData&, const MultilevelOptions&);

const std::string separation =
    "One or more coefficients are extreme with very large standard errors, which usually means the "
    "data are (quasi) perfectly separated within clusters. Treat these estimates as unstable; "
    "consider collapsing sparse categories or removing the offending predictor.";

/// Twelve clusters of ten rows, the outcome 1 where a shifted predictor beats chance.
struct Simulated {
    Cells shares{};
    Cells counts{};
    Cells x{};
    Labels cluster{};
    Labels other{};

    Simulated() {
        SplitMix64 random(3);
        for (int c = 0; c < 12; ++c) {
            const double shift = 2.0 * random.nextUnitDouble() - 1.0;
            for (int i = 0; i < 10; ++i) {
                x.emplace_back(random.nextUnitDouble());
                const double eta = 2.0 * *x.back() - 1.0 + shift;
                shares.emplace_back(random.nextUnitDouble() < 1.0 / (1.0 + std::exp(-eta)) ? 1 : 0);
                counts.emplace_back(std::floor(3.0 * random.nextUnitDouble() * std::exp(eta)));
                cluster.push_back("c" + std::to_string(c));
                other.push_back("o" + std::to_string(i));
            }
        }
    }

    MultilevelData data(const Cells& outcome, bool isCrossed = false) const {
        return {.outcome = NumericColumn(outcome),
                .fixedPredictors = {NumericColumn(x)},
                .cluster = TextColumn::of(cluster),
                .cluster2 = isCrossed ? TextColumn::of(other) : nullptr};
    }
};

const MultilevelOptions options{
    .fixedNames = {"x"}, .clusterLabel = "c", .cluster2Label = "o", .randomSlopeName = "x"};

const std::string slopeMethod =
    "Random-slope GLMM uses Laplace approximation for the cluster integrals (matching multi-RE "
    "glmer); adaptive Gauss\u2013Hermite is used only for scalar random intercepts.";
const std::string factorMethod =
    "Two-factor GLMM uses a dense Laplace approximation over both random-intercept vectors "
    "(matching multi-RE glmer).";

TEST(MultilevelGLMM, BlocksOutcomesThatDoNotVary) {
    struct Case {
        int line;
        Fit fit;
        double outcome;
        std::string message;
        Labels cautions;
    };
    const std::vector<Case> cases = {
        {__LINE__,
         MultilevelGLMM::fitLogisticRI,
         0.0,
         "Outcome has no variation (all 0 or all 1).",
         {}},
        {__LINE__,
         MultilevelGLMM::fitLogisticRS,
         1.0,
         "Outcome has no variation (all 0 or all 1).",
         {slopeMethod}},
        {__LINE__, MultilevelGLMM::fitPoissonRI, 0.0, "Outcome has no events (all zeros).", {}},
        {__LINE__,
         MultilevelGLMM::fitPoissonCrossed,
         4.0,
         "Outcome has no variation.",
         {factorMethod}}};
    const Simulated rows;
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        const auto result = each.fit(rows.data(Cells(120, each.outcome), true), options);
        ASSERT_TRUE(result);
        EXPECT_EQ(obstacles(result->readiness), Labels{each.message});
        EXPECT_EQ(cautions(result->readiness), each.cautions);
        EXPECT_TRUE(std::isnan(result->fixedEffects.at(1).standardError));
    }
}

TEST(MultilevelGLMM, RefusesOutcomesOfAnotherKind) {
    const Simulated rows;
    EXPECT_FALSE(MultilevelGLMM::fitLogisticRI(rows.data(Cells(120, 2.0)), options));
    EXPECT_FALSE(MultilevelGLMM::fitPoissonRI(rows.data(Cells(120, 0.5)), options));
    EXPECT_FALSE(MultilevelGLMM::fitPoissonRI(rows.data(Cells(120, -1.0)), options));
    EXPECT_FALSE(MultilevelGLMM::fitPoissonCrossed(rows.data(rows.counts), options));
    MultilevelOptions noSlope = options;
    noSlope.randomSlopeName = "";
    EXPECT_FALSE(MultilevelGLMM::fitPoissonRS(rows.data(rows.counts), noSlope));
}

TEST(MultilevelGLMM, RepeatsItselfAndNamesItsMethod) {
    const Simulated rows;
    struct Case {
        int line;
        Fit fit;
        const Cells& outcome;
        Labels components;
        Labels cautions;
    };
    const std::vector<Case> cases = {
        {__LINE__, MultilevelGLMM::fitLogisticRI, rows.shares, {"c (Intercept)"}, {}},
        {__LINE__, MultilevelGLMM::fitPoissonRI, rows.counts, {"c (Intercept)"}, {}},
        {__LINE__,
         MultilevelGLMM::fitPoissonRS,
         rows.counts,
         {"c (Intercept)", "c (x)"},
         {slopeMethod}},
        {__LINE__,
         MultilevelGLMM::fitPoissonCrossed,
         rows.counts,
         {"c (Intercept)", "o (Intercept)"},
         {factorMethod}},
        {__LINE__,
         MultilevelGLMM::fitLogisticThreeLevel,
         rows.shares,
         {"c (Intercept)", "c:o (Intercept)"},
         {factorMethod}}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        const auto result = each.fit(rows.data(each.outcome, true), options);
        ASSERT_TRUE(result);
        EXPECT_EQ(each.fit(rows.data(each.outcome, true), options), result);
        EXPECT_EQ(cautions(result->readiness), each.cautions);
        Labels names;
        for (const MultilevelVarianceComponent& component : result->varianceComponents) {
            names.push_back(component.name);
        }
        EXPECT_EQ(names, each.components);
        EXPECT_FALSE(result->fixedEffects[0].df || result->icc || result->remlCriterion);
    }
}

TEST(MultilevelGLMM, CountsTheLevelsOfTheSmallerFactorAndSpeaksOfSeparationForSharesAlone) {
    Simulated rows;
    EXPECT_EQ(
        cautions(
            MultilevelGLMM::fitPoissonCrossed(rows.data(rows.counts, true), options)->readiness),
        Labels{factorMethod});
    for (std::size_t i = 0; i < rows.other.size(); ++i) {
        rows.other[i] = "o" + std::to_string(i % 9);
        // Effects of a hundred times the size, far beyond what shares bear.
        rows.x[i] = *rows.x[i] / 100.0;
    }
    const auto counts = MultilevelGLMM::fitPoissonCrossed(rows.data(rows.counts, true), options);
    ASSERT_GT(counts->fixedEffects[1].estimate, 8.0);
    EXPECT_EQ(
        cautions(counts->readiness),
        (Labels{"Only 9 levels on a factor; variance components are unstable with few groups.",
                factorMethod}));
    EXPECT_EQ(cautions(MultilevelGLMM::fitLogisticRI(rows.data(rows.shares), options)->readiness),
              Labels{separation});
}

TEST(MultilevelGLMM, SaysThatPredictorsSeparate) {
    const Simulated rows;
    Cells separated;
    for (const std::optional<double>& x : rows.x) {
        separated.emplace_back(*x > 0.5 ? 1.0 : 0.0);
    }
    for (const Fit fit : {MultilevelGLMM::fitLogisticRI, MultilevelGLMM::fitLogisticRS}) {
        const auto result = fit(rows.data(separated), options);
        ASSERT_TRUE(result);
        const Labels said = cautions(result->readiness);
        EXPECT_EQ(std::count(said.begin(), said.end(), separation), 1);
        EXPECT_GT(result->fixedEffects[1].standardError, 20.0);
    }
}

/// Counts about a mean in 20 clusters of 10 rows that differ by about e.
struct ManyCounted {
    MultilevelData data{};

    explicit ManyCounted(double mean) {
        SplitMix64 random(11);
        const auto normal = [&random] {
            double sum = -6.0;
            for (int i = 0; i < 12; ++i) {
                sum += random.nextUnitDouble();
            }
            return sum;
        };
        Cells counts;
        Cells x;
        Labels cluster;
        for (int c = 0; c < 20; ++c) {
            const double shift = normal();
            for (int i = 0; i < 10; ++i) {
                x.emplace_back(normal());
                const double rate = mean * std::exp(0.3 * *x.back() + shift);
                counts.emplace_back(std::floor(rate + std::sqrt(rate) * normal() + 0.5));
                cluster.push_back("c" + std::to_string(c));
            }
        }
        data = {.outcome = NumericColumn(counts),
                .fixedPredictors = {NumericColumn(x)},
                .cluster = TextColumn::of(cluster),
                .cluster2 = TextColumn::of(cluster)};
    }
};

/// The rows tell of each cluster's mean all that there is to know, so that the error of the
/// intercept is that of a mean of twenty.
TEST(MultilevelGLMM, KnowsItsErrorsWhereCountsAreLarge) {
    for (const Fit fit : {MultilevelGLMM::fitPoissonRI, MultilevelGLMM::fitPoissonRS}) {
        for (const double mean : {1e3, 1e4, 1e5}) {
            SCOPED_TRACE(mean);
            const auto result = fit(ManyCounted(mean).data, options);
            ASSERT_TRUE(result && result->converged);
            const double sigma = result->varianceComponents[0].standardDeviation;
            EXPECT_TRUE(closeTo(result->fixedEffects[0].standardError, sigma / std::sqrt(20.0),
                                {.relative = 1e-2}));
        }
    }
}

/// A shift of a slope that may correlate with the intercept is another way to write the same model.
TEST(MultilevelGLMM, FindsCorrelatedSlopesFarFromZero) {
    const Simulated rows;
    struct Case {
        Fit fit;
        MultilevelFamily family;
        const Cells* outcome;
    };
    const std::array<Case, 2> cases = {
        {{MultilevelGLMM::fitLogisticRS, MultilevelFamily::binomial, &rows.shares},
         {MultilevelGLMM::fitPoissonRS, MultilevelFamily::poisson, &rows.counts}}};
    for (const auto& [fit, family, outcome] : cases) {
        const auto near = fit(rows.data(*outcome), options);
        const auto effects =
            MultilevelGLMM::clusterEffects(family, rows.data(*outcome), options, *near);
        for (const double shift : {-3.0, 10.0, 100.0, 1000.0, 1e7}) {
            SCOPED_TRACE(shift);
            MultilevelData data = rows.data(*outcome);
            Cells far;
            for (const std::optional<double>& x : rows.x) {
                far.emplace_back(*x + shift);
            }
            data.fixedPredictors = {NumericColumn(far)};
            const auto result = fit(data, options);
            EXPECT_TRUE(closeTo(result->logLikelihood, near->logLikelihood,
                                {.relative = 0, .absolute = 1e-5}));
            EXPECT_TRUE(closeTo(result->fixedEffects[1].estimate, near->fixedEffects[1].estimate,
                                {.relative = 1e-3}));
            EXPECT_TRUE(closeTo(result->fixedEffects[1].standardError,
                                near->fixedEffects[1].standardError, {.relative = 2e-3}));
            const auto others = MultilevelGLMM::clusterEffects(family, data, options, *result);
            ASSERT_EQ(others.size(), effects.size());
            for (std::size_t c = 0; c < effects.size(); ++c) {
                EXPECT_TRUE(closeTo(others[c].middle, effects[c].middle,
                                    {.relative = 1e-3, .absolute = 1e-3}));
                EXPECT_TRUE(closeTo(*others[c].slope, *effects[c].slope,
                                    {.relative = 1e-3, .absolute = 1e-3}));
            }
        }
    }
}

/// Without variance between clusters the likelihood is that of the plain model.
TEST(MultilevelGLMM, EndsAtThePlainModelWhereClustersDoNotDiffer) {
    Cells counts;
    Labels cluster;
    for (int c = 0; c < 20; ++c) {
        for (const double count : {0.0, 1.0, 2.0, 5.0}) {
            counts.emplace_back(count);
            cluster.push_back("c" + std::to_string(c));
        }
    }
    const auto result = MultilevelGLMM::fitPoissonRI(
        {.outcome = NumericColumn(counts), .cluster = TextColumn::of(cluster)}, {});
    double plain = 0.0;
    for (const std::optional<double>& count : counts) {
        plain += *count * std::log(2.0) - 2.0 - std::lgamma(*count + 1.0);
    }
    EXPECT_TRUE(closeTo(result->logLikelihood, plain, {.relative = 0, .absolute = 1e-5}));
    EXPECT_TRUE(closeTo(result->fixedEffects[0].estimate, std::log(2.0), {.relative = 1e-4}));
    EXPECT_LT(result->varianceComponents[0].standardDeviation, 1e-6);
}

TEST(MultilevelGLMM, StaysFiniteWhereClustersAreAllEventsOrNone) {
    Simulated rows;
    for (std::size_t i = 0; i < 10; ++i) {
        rows.shares[i] = 1.0;
        rows.shares[110 + i] = 0.0;
        rows.counts[i] = 0.0;
    }
    for (const auto& result : {MultilevelGLMM::fitLogisticRI(rows.data(rows.shares), options),
                               MultilevelGLMM::fitPoissonRI(rows.data(rows.counts), options)}) {
        ASSERT_TRUE(result);
        EXPECT_TRUE(result->converged);
        EXPECT_TRUE(std::isfinite(result->logLikelihood));
        EXPECT_TRUE(std::isfinite(result->fixedEffects[1].standardError));
    }
}

}  // namespace
}  // namespace sorvane
