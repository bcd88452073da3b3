#include "SorvaneCore/Models/FactorMixtureModel.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

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
    double last = 0.0;
    options.progress = [&last](double share) {
        last = share;
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
    EXPECT_LE(last, 1.0);
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
