#include "SorvaneCore/Models/LatentClassModel.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/SplitMix64.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using Cells = std::vector<std::optional<double>>;

/// Two clouds of cases, six apart on two indicators.
std::vector<Cells> clouds(std::size_t rows) {
    SplitMix64 random(11);
    std::vector<Cells> columns(2);
    for (std::size_t i = 0; i < rows; ++i) {
        for (Cells& column : columns) {
            column.emplace_back((i % 3 == 0 ? 6.0 : 0.0) + 3.0 * random.nextUnitDouble());
        }
    }
    return columns;
}

std::optional<LatentClassResult> profiles(const std::vector<Cells>& cells,
                                          LatentClassOptions options = {}) {
    if (options.variableNames.empty()) {
        options.variableNames.assign(cells.size(), "v");
    }
    const std::vector<NumericColumn> columns(cells.begin(), cells.end());
    return LatentClassModel::fitProfile(columns, options);
}

using Labels = std::vector<std::string>;

std::optional<LatentClassResult> classes(const std::vector<Labels>& cells,
                                         LatentClassOptions options = {}) {
    options.variableNames.assign(cells.size(), "v");
    std::vector<std::shared_ptr<const TextColumn>> columns;
    std::vector<const TextColumn*> pointers;
    for (const Labels& labels : cells) {
        pointers.push_back(columns.emplace_back(TextColumn::of(labels)).get());
    }
    return LatentClassModel::fitClass(pointers, options);
}

/// Answers of two kinds of people to four questions, all but one in twenty as expected.
std::vector<Labels> answers(std::size_t rows) {
    SplitMix64 random(5);
    std::vector<Labels> columns(4);
    for (std::size_t i = 0; i < rows; ++i) {
        for (Labels& column : columns) {
            const bool agrees = (i % 4 == 0) != (random.nextUnitDouble() < 0.05);
            column.emplace_back(agrees ? "yes" : "no");
        }
    }
    return columns;
}

TEST(LatentClassModel, RefusesFaultyCalls) {
    for (const std::int64_t count : {1, 7}) {
        EXPECT_FALSE(profiles(clouds(60), {.classCount = count}));
        EXPECT_FALSE(classes(answers(60), {.classCount = count}));
    }
    EXPECT_FALSE(profiles({clouds(60)[0]}));
    EXPECT_FALSE(profiles({clouds(60)[0], clouds(50)[0]}));
    EXPECT_FALSE(profiles(clouds(60), {.variableNames = {"a", "b", "c"}}));
    EXPECT_FALSE(classes({answers(60)[0]}));
}

TEST(LatentProfiles, FindSeparatedClouds) {
    std::vector<Cells> columns = clouds(90);
    columns[1][4] = std::nullopt;
    columns[0][5] = std::numeric_limits<double>::infinity();
    const auto result = profiles(columns);
    ASSERT_TRUE(result && result->converged);
    EXPECT_EQ(result->n, 88);
    EXPECT_EQ(result->readiness.totalRows, 90);
    EXPECT_TRUE(result->readiness.issues.empty());
    ASSERT_EQ(result->profiles.size(), 2U);
    EXPECT_LT(result->profiles[0].means->at(0), result->profiles[1].means->at(0));
    EXPECT_NEAR(result->profiles[1].proportion, 30.0 / 88.0, 1e-9);
    EXPECT_EQ(result->assignments[0], 1);
    EXPECT_EQ(result->assignments[1], 0);
    EXPECT_EQ(result->assignmentPosterior.size(), 88U);
    EXPECT_NEAR(result->entropy, 1.0, 1e-6);
    const double parameters = 1.0 + 2.0 * 2.0 * 2.0;
    EXPECT_DOUBLE_EQ(result->aic, -2.0 * result->logLikelihood + 2.0 * parameters);
    EXPECT_DOUBLE_EQ(result->bic, -2.0 * result->logLikelihood + parameters * std::log(88.0));
    EXPECT_EQ(profiles(columns), result) << "the same bits again";
}

TEST(LatentProfiles, GiveTheLogLikelihoodOfWhatTheyReport) {
    const std::vector<Cells> columns = clouds(90);
    const auto result = profiles(columns, {.classCount = 3});
    ASSERT_TRUE(result);
    double sum = 0.0;
    for (std::size_t row = 0; row < 90; ++row) {
        double density = 0.0;
        for (const LatentClassProfile& profile : result->profiles) {
            double product = profile.proportion;
            for (std::size_t j = 0; j < 2; ++j) {
                const double deviation = profile.standardDeviations->at(j);
                const double z = (*columns[j][row] - profile.means->at(j)) / deviation;
                product *= std::exp(-0.5 * z * z) / deviation / std::sqrt(2.0 * std::numbers::pi);
            }
            density += product;
        }
        sum += std::log(density);
        EXPECT_NEAR(std::reduce(result->assignmentPosterior[row].begin(),
                                result->assignmentPosterior[row].end()),
                    1.0, 1e-12);
    }
    // The last round has still moved the parameters a little.
    EXPECT_NEAR(sum, result->logLikelihood, 1e-4);
}

TEST(LatentProfiles, StandIndicatorsAndClassesWithoutVariance) {
    std::vector<Cells> columns = clouds(60);
    columns.emplace_back(60, 4.0);
    const auto constant = profiles(columns);
    ASSERT_TRUE(constant && constant->converged);
    EXPECT_NEAR(constant->profiles[0].means->at(2), 4.0, 1e-9);
    EXPECT_NEAR(constant->profiles[0].standardDeviations->at(2), 1e-7, 1e-12)
        << "a millionth of the variance, which is held to 1e-8";
    // A class that falls on one value keeps a millionth of the variance.
    Cells spike(60, 1.0);
    std::iota(spike.begin() + 30, spike.end(), 10.0);
    const auto result = profiles({spike, spike});
    ASSERT_TRUE(result);
    EXPECT_GT(result->profiles[0].standardDeviations->at(0), 1e-3);
    EXPECT_TRUE(std::isfinite(result->logLikelihood));
}

TEST(LatentClassModel, SaysWhatIsMissing) {
    const auto few = profiles(clouds(8), {.classCount = 3});
    ASSERT_TRUE(few);
    EXPECT_EQ(test::obstacles(few->readiness),
              Labels{"Need at least 9 complete cases for a 3-class profile model."});
    EXPECT_EQ(few->readiness.minimumRequired, "≥2 indicators; n ≥ 3×K complete cases");
    EXPECT_TRUE(std::isnan(few->logLikelihood) && few->profiles.empty());
    EXPECT_EQ(test::obstacles(classes(answers(14), {.classCount = 3})->readiness),
              Labels{"Need at least 15 complete cases for a 3-class LCA."});
    std::vector<Labels> constant = answers(60);
    constant[2].assign(60, "yes");
    EXPECT_EQ(test::obstacles(classes(constant)->readiness),
              Labels{"Each indicator needs at least two observed categories."});
    EXPECT_EQ(test::obstacles(profiles(clouds(60), {.randomStarts = 0})->readiness),
              Labels{"The latent profile model did not converge to a usable solution."});
    EXPECT_EQ(test::obstacles(classes(answers(60), {.randomStarts = 0})->readiness),
              Labels{"The latent class model did not converge to a usable solution."});
}

TEST(LatentClassModel, CautionsInOrder) {
    std::vector<Cells> columns = clouds(45);
    columns[0][7] = columns[1][7] = 80.0;
    const auto result = profiles(columns, {.classCount = 5, .maxIterations = 2});
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->converged);
    EXPECT_EQ(result->iterations, 2);
    EXPECT_EQ(test::cautions(result->readiness),
              (Labels{"EM stopped without a clean convergence signal.",
                      "At least one class has a small mixing proportion (<5%).",
                      "Sample size is small relative to the number of classes."}));
}

TEST(LatentClassModel, CautionsBeginAtTheirBounds) {
    const std::string small = "At least one class has a small mixing proportion (<5%).";
    const std::string few = "Sample size is small relative to the number of classes.";
    // Two clouds far apart, the second of so many of the cases.
    const auto told = [](std::size_t rows, std::size_t second) {
        std::vector<Cells> columns = clouds(rows);
        for (Cells& column : columns) {
            for (std::size_t i = 0; i < rows; ++i) {
                column[i] = (i < second ? 50.0 : 0.0) + static_cast<double>(i * i % 7);
            }
        }
        return test::cautions(profiles(columns)->readiness);
    };
    EXPECT_EQ(told(100, 4), Labels{small});
    EXPECT_EQ(told(100, 6), Labels{});
    EXPECT_EQ(told(19, 8), Labels{few});
    EXPECT_EQ(told(20, 8), Labels{});
    EXPECT_EQ(test::cautions(classes(answers(19))->readiness), Labels{})
        << "classes of answers have a rule of their own";
}

TEST(LatentClasses, FindKindsOfAnswers) {
    std::vector<Labels> columns = answers(400);
    columns[0][0] = " yes ";
    columns[1][1] = "  ";
    columns[3][2] = "NA";
    const auto result = classes(columns);
    ASSERT_TRUE(result && result->converged);
    EXPECT_EQ(result->n, 399) << "a text is a category, a blank is missing";
    ASSERT_TRUE(result->categoryLabels);
    EXPECT_EQ(result->categoryLabels->at(0), (Labels{"yes", "no"}));
    EXPECT_EQ(result->categoryLabels->at(3), (Labels{"yes", "NA", "no"}));
    EXPECT_NEAR(result->profiles[0].proportion, 0.75, 0.02);
    EXPECT_NEAR(result->profiles[0].responseProbs->at(0)[1], 0.95, 0.03);
    EXPECT_NEAR(result->profiles[1].responseProbs->at(0)[0], 0.95, 0.06);
    // The one text that the smaller class never gives.
    EXPECT_NEAR(result->profiles[1].responseProbs->at(3)[1], 0.001 / 1.001, 1e-5);
    EXPECT_EQ(result->assignments.size(), 399U);
    EXPECT_EQ(result->assignments[0], 1);
    const double parameters = 1.0 + 2.0 * 5.0;
    EXPECT_DOUBLE_EQ(result->aic, -2.0 * result->logLikelihood + 2.0 * parameters);
    EXPECT_EQ(classes(columns), result) << "the same bits again";
    EXPECT_NE(classes(columns, {.seed = 2})->logLikelihood, result->logLikelihood);
}

}  // namespace
}  // namespace sorvane
