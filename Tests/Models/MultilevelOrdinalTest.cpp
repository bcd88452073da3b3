#include "SorvaneCore/Models/Multilevel/MultilevelOrdinal.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/Multilevel/OrdinalQuadrature.h"
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

/// Sixty answers on three levels in six clusters.
struct Study {
    Values answers{};
    Values hours{};
    Texts clusters{};

    Study() {
        std::mt19937_64 random(5);
        for (std::size_t i = 0; i < 60; ++i) {
            const double hour = static_cast<double>(random() % 100) / 10.0;
            const double level = hour / 4.0 + static_cast<double>(i % 6) / 3.0 +
                                 static_cast<double>(random() % 100) / 40.0;
            hours.emplace_back(hour);
            answers.emplace_back(level < 2.0 ? 1.0 : level < 4.0 ? 2.0 : 3.0);
            clusters.push_back("c" + std::to_string(i % 6));
        }
    }

    MultilevelData data() const {
        return {.outcome = test::plainColumn(answers),
                .fixedPredictors = {test::plainColumn(hours)},
                .cluster = TextColumn::of(clusters)};
    }
};

const MultilevelOptions options = {.fixedNames = {"hours"}, .clusterLabel = "site"};

TEST(MultilevelOrdinal, DerivativesAreThoseOfTheLikelihood) {
    const std::vector<std::uint32_t> levels = {0, 2, 1, 1, 3, 0, 2, 2, 3, 1};
    const std::vector<double> predictors = {0.3, -1.0, 0.5, 1.2, 0.7, -0.4, 0.1, 0.9, 1.4, -0.8};
    const std::vector<std::size_t> sizes = {4, 1, 5};
    const OrdinalClusters clusters{
        .levels = levels, .levelCount = 4, .predictors = predictors, .width = 1, .sizes = sizes};
    OrdinalQuadrature quadrature(clusters);
    std::vector<double> at = {-1.2, 0.1, 1.3, 0.8, 0.9};
    const IRLS::Evaluation centre = quadrature.at(at);
    constexpr double step = 1e-5;
    for (std::size_t i = 0; i < at.size(); ++i) {
        std::vector<double> up = at;
        std::vector<double> down = at;
        up[i] += step;
        down[i] -= step;
        const IRLS::Evaluation above = quadrature.at(up);
        const IRLS::Evaluation below = quadrature.at(down);
        EXPECT_TRUE(closeTo((above.objective - below.objective) / (2.0 * step), centre.gradient[i],
                            {.relative = 1e-5, .absolute = 1e-6}));
        for (std::size_t j = 0; j < at.size(); ++j) {
            EXPECT_TRUE(closeTo((below.gradient[j] - above.gradient[j]) / (2.0 * step),
                                centre.negativeHessian[i * at.size() + j],
                                {.relative = 1e-5, .absolute = 1e-5}))
                << i << ", " << j;
        }
    }
}

TEST(MultilevelOrdinal, DoesNotDependOnUnitsOfPredictorsNorOnCodesOfLevels) {
    const Study study;
    Study other = study;
    for (std::size_t i = 0; i < 60; ++i) {
        other.hours[i] = 1e3 * *other.hours[i] + 1e5;
        other.answers[i] = *other.answers[i] * *other.answers[i];
    }
    const auto plain = MultilevelOrdinal::fit(study.data(), options);
    const auto moved = MultilevelOrdinal::fit(other.data(), options);
    ASSERT_TRUE(plain && moved);
    ASSERT_TRUE(plain->converged);
    EXPECT_EQ(moved->levels, (Texts{"1", "4", "9"}));
    EXPECT_TRUE(closeTo(moved->logLikelihood, plain->logLikelihood, {.relative = 1e-9}));
    EXPECT_TRUE(closeTo(1e3 * moved->fixedEffects[0].estimate, plain->fixedEffects[0].estimate,
                        {.relative = 1e-6}));
    EXPECT_TRUE(closeTo(moved->fixedEffects[0].z, plain->fixedEffects[0].z, {.relative = 1e-6}));
}

TEST(MultilevelOrdinal, PredictsClustersInOrderOfTheirAnswers) {
    const Study study;
    const auto result = MultilevelOrdinal::fit(study.data(), options);
    ASSERT_TRUE(result);
    const auto effects = MultilevelOrdinal::clusterEffects(study.data(), options, *result);
    ASSERT_EQ(effects.size(), 6U);
    EXPECT_EQ(effects[0].cluster, "c0");
    EXPECT_EQ(effects[0].n, 10);
    EXPECT_LT(effects[0].intercept, effects[5].intercept);
    EXPECT_LT(effects[0].interceptError, result->varianceComponents[0].standardDeviation);
}

TEST(MultilevelOrdinal, DerivesItsFiguresFromItsEstimates) {
    const Study study;
    MultilevelOptions wide = options;
    wide.confidenceLevel = 0.99;
    const auto result = MultilevelOrdinal::fit(study.data(), wide);
    ASSERT_TRUE(result);
    const double variance = result->varianceComponents[0].variance;
    const double logistic = std::numbers::pi * std::numbers::pi / 3.0;
    EXPECT_TRUE(closeTo(result->latentICC.value_or(0.0), variance / (variance + logistic)));
    // Two thresholds, one slope, one deviation.
    EXPECT_TRUE(closeTo(result->aic, 8.0 - 2.0 * result->logLikelihood));
    EXPECT_TRUE(closeTo(result->bic, 4.0 * std::log(60.0) - 2.0 * result->logLikelihood));
    const MultilevelFixedEffect& effect = result->fixedEffects.at(0);
    EXPECT_TRUE(closeTo(effect.upperBound, effect.estimate + 2.5758293035489 * effect.standardError,
                        {.relative = 1e-6}));
    EXPECT_TRUE(closeTo(result->oddsRatios.at(0), std::exp(effect.estimate)));
    EXPECT_TRUE(closeTo(result->oddsRatioLowerBounds.at(0), std::exp(effect.lowerBound)));
    EXPECT_TRUE(closeTo(result->oddsRatioUpperBounds.at(0), std::exp(effect.upperBound)));
    EXPECT_EQ(result->thresholds[0].name, "1|2");
    EXPECT_LT(result->thresholds[0].estimate, result->thresholds[1].estimate);
}

TEST(MultilevelOrdinal, CautionsBeginAtTheirBounds) {
    // So many clusters, so many answers on the top level.
    const auto told = [](std::size_t clusters, std::size_t top, bool hasSingle, bool hasGap) {
        Study study;
        for (std::size_t i = 0; i < 60; ++i) {
            study.answers[i] = i < top ? 3.0 : i % 2 == 0 ? 1.0 : 2.0;
            study.clusters[i] = "c" + std::to_string(i * 7 % clusters);
        }
        if (hasSingle) {
            study.clusters[33] = "alone";
        }
        if (hasGap) {
            study.hours[20] = std::nullopt;
        }
        Texts found;
        for (const std::string& text :
             cautions(MultilevelOrdinal::fit(study.data(), options)->readiness)) {
            found.push_back(text.substr(0, text.find_first_of(",;.")));
        }
        std::erase(found, "Cluster intercept variance is near zero (boundary)");
        return found;
    };
    const std::string always =
        "This model assumes proportional odds: the predictor effect is the same across every cut "
        "point";
    EXPECT_EQ(told(10, 10, false, false), Texts{always});
    EXPECT_EQ(told(9, 10, false, false), (Texts{"Only 9 clusters", always}));
    EXPECT_EQ(told(10, 9, false, false),
              (Texts{"The smallest outcome level has only 9 cases", always}));
    EXPECT_EQ(told(10, 10, true, false), (Texts{"1 cluster(s) have only one case", always}));
    EXPECT_EQ(told(10, 20, false, true),
              (Texts{always, "1 row(s) were dropped because the outcome"}));
}

TEST(MultilevelOrdinal, SaysWhereClustersDoNotDiffer) {
    Study study;
    for (std::size_t i = 0; i < 60; ++i) {
        // Each cluster answers alike.
        study.answers[i] = static_cast<double>(1 + i / 6 % 3);
        study.hours[i] = static_cast<double>(i / 6 % 5);
    }
    const Texts told = cautions(MultilevelOrdinal::fit(study.data(), options)->readiness);
    EXPECT_EQ(std::ranges::count(told, "Cluster intercept variance is near zero (boundary)."), 1);
}

TEST(MultilevelOrdinal, SaysWhatStandsInItsWay) {
    const Study study;
    Study oneCluster = study;
    oneCluster.clusters.assign(60, "a");
    Study twoLevels = study;
    for (auto& answer : twoLevels.answers) {
        answer = std::min(*answer, 2.0);
    }
    Study constant = study;
    constant.hours.assign(60, 3.0);
    Study separated = study;
    separated.hours = separated.answers;
    const std::string collinear =
        "Unique estimates cannot be found. Remove or combine redundant predictors, or check for "
        "outcome levels that a predictor separates perfectly.";
    struct Case {
        int line;
        const Study& study;
        std::string obstacle;
    };
    const std::vector<Case> cases = {
        {__LINE__, oneCluster, "Multilevel models need at least two clusters."},
        {__LINE__, twoLevels,
         "The outcome has only 2 level(s) present. Three or more ordered levels must occur to fit "
         "an ordinal multilevel model."},
        {__LINE__, constant, collinear},
        {__LINE__, separated, collinear},
    };
    for (const Case& each : cases) {
        const auto result = MultilevelOrdinal::fit(each.study.data(), options);
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(std::isnan(result->fixedEffects.at(0).estimate)) << each.line;
        EXPECT_TRUE(MultilevelOrdinal::clusterEffects(each.study.data(), options, *result).empty());
    }
    EXPECT_FALSE(MultilevelOrdinal::fit(study.data(), {.fixedNames = {}}));
}

}  // namespace

}  // namespace sorvane
