#include "SorvaneCore/Models/FactorMixtureModel.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/FactorMixtureWording.h"
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

/// Two classes, a factor, four indicators.
std::vector<Values> answers(std::size_t n, double distance) {
    std::mt19937_64 random(3);
    const auto noise = [&random] {
        double sum = -6.0;
        for (int i = 0; i < 12; ++i) {
            sum += static_cast<double>(random() >> 11) * 0x1p-53;
        }
        return sum;
    };
    std::vector<Values> columns(4);
    for (std::size_t i = 0; i < n; ++i) {
        const double factor = noise();
        for (std::size_t j = 0; j < 4; ++j) {
            const double level = i % 3 == 0 ? distance * (j % 2 == 0 ? 1.0 : -1.0) : 0.0;
            columns[j].emplace_back(level + 0.8 * factor + 0.5 * noise());
        }
    }
    return columns;
}

std::optional<FactorMixtureResult> fitted(const std::vector<Values>& indicators,
                                          std::int64_t classes,
                                          std::uint64_t seed = 1) {
    std::vector<NumericColumn> columns;
    FactorMixtureOptions options{.classCount = classes, .seed = seed};
    for (const Values& indicator : indicators) {
        columns.push_back(test::plainColumn(indicator));
        options.variableNames.push_back("y" + std::to_string(columns.size()));
    }
    return FactorMixtureModel::fit(columns, options);
}

TEST(FactorMixtureModel, FindsClassesAcrossTheFactor) {
    const auto result = fitted(answers(240, 2.0), 2);
    ASSERT_TRUE(result);
    ASSERT_TRUE(result->converged);
    EXPECT_TRUE(closeTo(result->classes[1].proportion, 1.0 / 3.0, {.absolute = 0.03}));
    for (const double loading : result->loadings) {
        EXPECT_TRUE(closeTo(loading, 0.8, {.absolute = 0.15}));
    }
    std::int64_t wrong = 0;
    for (std::size_t i = 0; i < 240; ++i) {
        wrong += result->assignments[i] == (i % 3 == 0 ? 1 : 0) ? 0 : 1;
    }
    EXPECT_LE(wrong, 5);
    EXPECT_EQ(result->classes[0].assigned + result->classes[1].assigned, 240);
}

TEST(FactorMixtureModel, RepeatsFromItsSeedAndTurnsWithTheUnits) {
    std::vector<Values> columns = answers(120, 2.0);
    const auto first = fitted(columns, 2);
    EXPECT_EQ(first, fitted(columns, 2));
    EXPECT_TRUE(
        closeTo(fitted(columns, 2, 99)->logLikelihood, first->logLikelihood, {.relative = 1e-7}));
    for (auto& value : columns[0]) {
        value = 1e4 - 1e-3 * *value;
    }
    const auto turned = fitted(columns, 2);
    EXPECT_TRUE(closeTo(turned->logLikelihood, first->logLikelihood + 120.0 * std::log(1e3),
                        {.relative = 1e-7}));
    EXPECT_TRUE(closeTo(turned->loadings[0], -1e-3 * first->loadings[0], {.relative = 1e-3}));
}

TEST(FactorMixtureModel, ReportsWhatItsParametersImply) {
    const std::vector<Values> columns = answers(240, 2.0);
    for (const std::int64_t classes : {1, 2}) {
        const auto result = fitted(columns, classes);
        ASSERT_TRUE(result);
        double signal = 0.0;
        double logDeterminant = 0.0;
        for (std::size_t j = 0; j < 4; ++j) {
            const double loading = result->loadings[j];
            const double residual = result->residualVariances[j];
            signal += loading * loading / residual;
            logDeterminant += std::log(residual);
            EXPECT_TRUE(closeTo(result->standardizedLoadings[j],
                                loading / std::sqrt(loading * loading + residual)));
        }
        // Of x about the means of a class, after Sherman and Morrison.
        logDeterminant += std::log1p(signal);
        double logLikelihood = 0.0;
        std::vector<double> meanPosterior(static_cast<std::size_t>(classes), 0.0);
        for (std::size_t i = 0; i < 240; ++i) {
            double density = 0.0;
            double score = 0.0;
            for (std::size_t k = 0; k < meanPosterior.size(); ++k) {
                double squares = 0.0;
                double along = 0.0;
                for (std::size_t j = 0; j < 4; ++j) {
                    const double apart = *columns[j][i] - result->classes[k].intercepts[j];
                    squares += apart * apart / result->residualVariances[j];
                    along += apart * result->loadings[j] / result->residualVariances[j];
                }
                const double distance = squares - along * along / (1.0 + signal);
                density += result->classes[k].proportion *
                           std::exp(-0.5 * (4.0 * std::log(2.0 * std::numbers::pi) +
                                            logDeterminant + distance));
                score += result->assignmentPosterior[i][k] * along / (1.0 + signal);
            }
            logLikelihood += std::log(density);
            EXPECT_TRUE(closeTo(result->factorScores[i], score, {.absolute = 1e-4}));
            const auto k = static_cast<std::size_t>(result->assignments[i]);
            meanPosterior[k] += result->assignmentPosterior[i][k];
        }
        EXPECT_TRUE(closeTo(result->logLikelihood, logLikelihood, {.relative = 1e-7}));
        for (std::size_t k = 0; k < meanPosterior.size(); ++k) {
            EXPECT_TRUE(
                closeTo(result->classes[k].meanPosterior,
                        meanPosterior[k] / static_cast<double>(result->classes[k].assigned)));
        }
        const double parameters = classes == 1 ? 12.0 : 17.0;
        EXPECT_EQ(result->parameterCount, static_cast<std::int64_t>(parameters));
        EXPECT_TRUE(closeTo(result->aic, 2.0 * (parameters - result->logLikelihood)));
        EXPECT_TRUE(
            closeTo(result->bic, parameters * std::log(240.0) - 2.0 * result->logLikelihood));
    }
}

TEST(FactorMixtureModel, TellsOfClassesThatOverlapAndOfAnIndicatorThatIsTheFactor) {
    const auto overlaps = [](const FactorMixtureResult& result) {
        return std::ranges::any_of(cautions(result.readiness), [](const std::string& text) {
            return text.starts_with("The classes overlap (relative entropy 0.");
        });
    };
    int clear = 0;
    int poor = 0;
    for (const double distance : {0.2, 0.6, 0.8}) {
        const auto result = fitted(answers(300, distance), 2);
        ASSERT_TRUE(result);
        EXPECT_EQ(overlaps(*result), result->entropy < 0.6) << result->entropy;
        clear += result->entropy >= 0.6 && result->entropy < 0.9 ? 1 : 0;
        poor += result->entropy < 0.6 ? 1 : 0;
    }
    EXPECT_GE(clear, 1);
    EXPECT_GE(poor, 1);

    std::vector<Values> same = answers(200, 0.0);
    same[2] = same[0];
    const Texts told = cautions(fitted(same, 1)->readiness);
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(std::ranges::any_of(told, [](const std::string& text) {
        return text.starts_with("The residual variance of \"y1\" is at its lower bound");
    })) << told.front();
}

TEST(FactorMixtureWording, CountsItsClasses) {
    FactorMixtureResult result{.classCount = 2,
                               .variableNames = {"a", "b", "c"},
                               .classes = std::vector<FactorMixtureClass>(2),
                               .logLikelihood = -812.345,
                               .bic = 1700.125,
                               .entropy = 0.8751,
                               .n = 180};
    EXPECT_EQ(FactorMixtureWording::summary(result),
              "A factor mixture model with 2 classes and one common factor was fitted to 3 "
              "indicators (n = 180), log-likelihood = -812.35, BIC = 1700.12, relative entropy = "
              "0.88.");
    result.classCount = 1;
    result.classes.resize(1);
    EXPECT_EQ(FactorMixtureWording::summary(result),
              "A factor mixture model with 1 class and one common factor was fitted to 3 "
              "indicators (n = 180), log-likelihood = -812.35, BIC = 1700.12.");
    EXPECT_EQ(FactorMixtureWording::summary({}), "");
}

TEST(FactorMixtureModel, TellsWhenOneClassServesBetter) {
    const auto result = fitted(answers(150, 0.0), 2);
    ASSERT_TRUE(result);
    EXPECT_EQ(cautions(result->readiness).back(),
              "By BIC a single class with the same factor fits better; the data do not call for "
              "classes.");
}

TEST(FactorMixtureModel, SweepsTheCountsThatCanBeFitted) {
    std::vector<NumericColumn> columns;
    FactorMixtureOptions options{.randomStarts = 3};
    std::vector<double> shares;
    options.progress = [&shares](double share) {
        shares.push_back(share);
    };
    for (const Values& indicator : answers(50, 2.0)) {
        columns.push_back(test::plainColumn(indicator));
        options.variableNames.push_back("y" + std::to_string(columns.size()));
    }
    const auto rows = FactorMixtureModel::sweep(columns, options);
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_EQ(rows.back().k, 5);
    EXPECT_TRUE(std::isnan(rows.front().entropy));
    EXPECT_LT(rows[1].bic, rows[0].bic);
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_TRUE(shares.empty() || shares.back() <= 5.0 / 6.0) << "six classes ask for more cases";
}

TEST(FactorMixtureModel, SaysWhatStandsInItsWay) {
    const std::vector<Values> columns = answers(60, 2.0);
    std::vector<Values> constant = columns;
    constant[1].assign(60, 0.1);
    const std::vector<Values> gaps(4, Values(60));
    struct Case {
        int line;
        std::vector<Values> indicators;
        std::int64_t classes;
        std::string obstacle;
    };
    const std::vector<Case> cases = {
        {__LINE__,
         {columns[0], columns[1]},
         2,
         "A common factor needs at least three indicators; with fewer its loadings are not settled "
         "by the data. Add indicators, or use latent profiles."},
        {__LINE__, gaps, 2, "Need at least 20 complete cases for a 2-class factor mixture."},
        {__LINE__, answers(30, 1.0), 4,
         "Need at least 40 complete cases for a 4-class factor mixture."},
        {__LINE__, answers(12, 1.0), 1,
         "Need at least 13 complete cases for a 1-class factor mixture."},
        {__LINE__, constant, 2, "The indicator \"y2\" does not vary. Drop it."},
    };
    for (const Case& each : cases) {
        const auto result = fitted(each.indicators, each.classes);
        ASSERT_TRUE(result) << each.line;
        EXPECT_EQ(obstacles(result->readiness), Texts{each.obstacle}) << each.line;
        EXPECT_TRUE(result->classes.empty()) << each.line;
    }
    EXPECT_FALSE(fitted(columns, 0));
    EXPECT_FALSE(fitted(columns, 7));
    EXPECT_FALSE(fitted({columns[0], {1, 2}}, 2));
}

}  // namespace

}  // namespace sorvane
