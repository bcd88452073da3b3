#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using IRLS::Link;

/// Rows of an intercept and two predictors with their response.
struct Rows {
    std::vector<double> design;
    std::vector<double> response;

    void add(double x1, double x2, double y) {
        design.insert(design.end(), {1.0, x1, x2});
        response.push_back(y);
    }
    OptimizerResult fit(Link link, const IRLS::Limits& limits = {}) const {
        return IRLS::fit(
            {.designMatrix = design, .rows = response.size(), .cols = 3, .response = response},
            link, limits);
    }
};

Rows drawn(std::size_t count, std::uint64_t copies, Link link) {
    SplitMix64 random(7);
    Rows rows;
    for (std::size_t i = 0; i < count; ++i) {
        const double x1 = 2.0 * random.nextUnitDouble() - 1.0;
        const double x2 = random.nextUnitDouble() < 0.3 ? 1.0 : 0.0;
        const double u = random.nextUnitDouble();
        const double y = link == Link::logit ? (u < 1.0 / (1.0 + std::exp(x1 - x2)) ? 1.0 : 0.0)
                                             : std::floor(u * 4.0 * std::exp(x1));
        for (std::uint64_t copy = 0; copy < copies; ++copy) {
            rows.add(x1, x2, y);
        }
    }
    return rows;
}

TEST(IRLSFit, SumsManyRowsAsItSumsFew) {
    // The copies fill several of the pieces that threads share, the single rows less than one.
    for (const Link link : {Link::logit, Link::log}) {
        const OptimizerResult few = drawn(500, 1, link).fit(link);
        const OptimizerResult many = drawn(500, 100, link).fit(link);
        ASSERT_TRUE(few.converged && many.converged);
        EXPECT_TRUE(test::closeTo(many.objective, 100.0 * few.objective));
        for (std::size_t j = 0; j < 3; ++j) {
            EXPECT_TRUE(test::closeTo(many.parameters[j], few.parameters[j],
                                      {.relative = 1e-10, .absolute = 1e-11}));
            EXPECT_TRUE(test::closeTo(many.inverseNegativeHessian[4 * j],
                                      few.inverseNegativeHessian[4 * j] / 100.0,
                                      {.relative = 1e-9}));
        }
        EXPECT_EQ(drawn(500, 100, link).fit(link), many) << "the same bits again";
    }
}

TEST(IRLSFit, SolvesItsScoreEquations) {
    // With an intercept and one dummy the fitted means are those of the groups.
    const std::vector<double> counts = {0, 3, 1, 4, 12, 15};
    std::vector<double> design;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        design.insert(design.end(), {1.0, i < 4 ? 0.0 : 1.0});
    }
    const auto fit = IRLS::fit({.designMatrix = design, .rows = 6, .cols = 2, .response = counts},
                               Link::log, {});
    ASSERT_TRUE(fit.converged);
    EXPECT_NEAR(fit.parameters[0], std::log(2.0), 1e-12);
    EXPECT_NEAR(fit.parameters[1], std::log(13.5 / 2.0), 1e-12);
}

TEST(IRLSFit, StepsBackWhereAFullStepOvershoots) {
    // One far point holds nearly all the leverage: a full step from the first fit runs past.
    Rows rows;
    for (int i = 0; i < 30; ++i) {
        rows.add(i == 29 ? 40.0 : 0.01 * i, i % 3 == 0 ? 1.0 : 0.0, i == 29 ? 3000.0 : i % 4);
    }
    const OptimizerResult fit = rows.fit(Link::log);
    ASSERT_TRUE(fit.converged);
    double score = 0.0;
    for (std::size_t i = 0; i < 30; ++i) {
        double eta = 0.0;
        for (std::size_t j = 0; j < 3; ++j) {
            eta += rows.design[3 * i + j] * fit.parameters[j];
        }
        score += rows.design[3 * i + 1] * (rows.response[i] - std::exp(eta));
    }
    EXPECT_NEAR(score, 0.0, 1e-6);
}

TEST(IRLSFit, SaysWhyThereIsNoFit) {
    Rows rows = drawn(40, 1, Link::logit);
    EXPECT_EQ(rows.fit(Link::logit, {.maxIterations = 2}).stop, OptimizerStop::iterationLimit);
    for (std::size_t i = 0; i < 40; ++i) {
        rows.response[i] = rows.design[3 * i + 1] > 0.2 ? 1.0 : 0.0;
    }
    EXPECT_EQ(rows.fit(Link::logit).stop, OptimizerStop::diverged);
    rows.response.assign(40, 0.0);
    EXPECT_EQ(rows.fit(Link::log).stop, OptimizerStop::diverged);
    rows.design[1] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(rows.fit(Link::log).stop, OptimizerStop::nonFinite);
    rows.response.pop_back();
    EXPECT_EQ(rows.fit(Link::log).stop, OptimizerStop::badArguments);
}

}  // namespace
}  // namespace sorvane
