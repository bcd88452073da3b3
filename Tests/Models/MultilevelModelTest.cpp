#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
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

MultilevelData dataOf(const Cells& outcome,
                      const std::vector<Cells>& predictors,
                      const Labels& cluster,
                      const Labels& cluster2 = {}) {
    MultilevelData data{.outcome = NumericColumn(outcome),
                        .cluster = TextColumn::of(cluster),
                        .cluster2 = cluster2.empty() ? nullptr : TextColumn::of(cluster2)};
    for (const Cells& predictor : predictors) {
        data.fixedPredictors.emplace_back(predictor);
    }
    return data;
}

MultilevelOptions namedOptions(std::size_t predictors) {
    MultilevelOptions options{.clusterLabel = "class"};
    for (std::size_t j = 1; j <= predictors; ++j) {
        options.fixedNames.push_back("x" + std::to_string(j));
    }
    return options;
}

/// Rows in clusters of a size, with one predictor; clusters differ by `spread`.
struct Simulated {
    Cells outcome{};
    Cells x{};
    Labels cluster{};

    Simulated(std::size_t clusters, std::size_t size, double spread) {
        SplitMix64 random(5);
        for (std::size_t c = 0; c < clusters; ++c) {
            const double shift = spread * random.nextUnitDouble();
            for (std::size_t i = 0; i < size; ++i) {
                x.emplace_back(static_cast<double>(i) + random.nextUnitDouble());
                outcome.emplace_back(2.0 + 0.5 * *x.back() + shift + random.nextUnitDouble());
                cluster.push_back("c" + std::to_string(c));
            }
        }
    }

    MultilevelData data() const { return dataOf(outcome, {x}, cluster); }
};

TEST(MultilevelModel, RefusesWhatDoesNotFit) {
    const Simulated rows(4, 5, 1.0);
    MultilevelData shorter = rows.data();
    shorter.fixedPredictors[0] = NumericColumn(Cells{1.0, 2.0});
    EXPECT_FALSE(MultilevelModel::fit(shorter, namedOptions(1)));
    EXPECT_FALSE(MultilevelModel::fit(rows.data(), namedOptions(2)));
    MultilevelOptions unknownSlope = namedOptions(1);
    unknownSlope.randomSlopeName = "x9";
    EXPECT_FALSE(MultilevelModel::fit(rows.data(), unknownSlope));
    MultilevelData crossed = rows.data();
    crossed.cluster2 = crossed.cluster;
    EXPECT_FALSE(MultilevelModel::fit(crossed, unknownSlope));
    unknownSlope.randomSlopeName = "";
    EXPECT_TRUE(MultilevelModel::fit(rows.data(), unknownSlope));
}

TEST(MultilevelModel, NeedsMoreRowsThanFixedEffects) {
    const Labels clusters = {"a", "a", "b"};
    const Cells x = {1.0, 2.0, 4.0};
    for (const auto estimator : {MultilevelEstimator::ml, MultilevelEstimator::reml}) {
        MultilevelOptions options = namedOptions(1);
        options.estimator = estimator;
        const auto fit = MultilevelModel::fit(dataOf({1.0, 3.0, 4.0}, {x}, clusters), options);
        ASSERT_TRUE(fit);
        EXPECT_EQ(obstacles(fit->readiness), Labels{});
    }
    EXPECT_FALSE(MultilevelModel::fit(dataOf({1.0, 3.0, {}}, {x}, clusters), namedOptions(1)));
}

TEST(MultilevelModel, SaysWhyThereIsNoFit) {
    struct Case {
        int line;
        MultilevelData data;
        std::string message;
    };
    const Simulated rows(4, 5, 1.0);
    const Labels one(20, "all");
    Cells twice;
    Cells exact;
    for (const std::optional<double>& x : rows.x) {
        twice.emplace_back(2.0 * *x + 1.0);
        exact.emplace_back(3.0 - 0.25 * *x);
    }
    Labels many(4002);
    Labels few(4002);
    Cells outcome(4002);
    for (std::size_t i = 0; i < many.size(); ++i) {
        many[i] = "m" + std::to_string(i % 3999);
        few[i] = i % 2 == 0 ? "a" : "b";
        outcome[i] = static_cast<double>(i % 7);
    }
    const std::string unusable = "The multilevel model did not converge to a usable solution.";
    const std::vector<Case> cases = {
        {__LINE__, dataOf(rows.outcome, {rows.x}, one),
         "Multilevel models need at least two clusters."},
        {__LINE__, dataOf(rows.outcome, {rows.x, twice}, rows.cluster), unusable},
        {__LINE__, dataOf(rows.outcome, {Cells(20, 7.1)}, rows.cluster), unusable},
        {__LINE__, dataOf(exact, {rows.x}, rows.cluster), unusable},
        {__LINE__, dataOf(rows.outcome, {rows.x}, rows.cluster, one),
         "Cross-classified models need at least two levels on each crossed factor."},
        {__LINE__, dataOf(outcome, {}, many, few),
         "Cross-classified / three-level fitting is limited to 4000 total random-effect levels in "
         "this build."},
        {__LINE__,
         dataOf(rows.outcome, {rows.x, twice}, rows.cluster, Labels(few.begin(), few.begin() + 20)),
         "The cross-classified model did not converge to a usable solution."}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        const auto fit =
            MultilevelModel::fit(each.data, namedOptions(each.data.fixedPredictors.size()));
        ASSERT_TRUE(fit);
        EXPECT_EQ(obstacles(fit->readiness), Labels{each.message});
        EXPECT_EQ(fit->fixedEffects.size(), each.data.fixedPredictors.size() + 1);
        EXPECT_TRUE(std::isnan(fit->fixedEffects[0].estimate));
        EXPECT_TRUE(std::isnan(fit->logLikelihood));
        EXPECT_TRUE(fit->varianceComponents.empty());
        EXPECT_FALSE(fit->icc || fit->remlCriterion || fit->converged);
    }
}

TEST(MultilevelModel, RunsAtTheLimitOfLevelsWhereFactorsAreNested) {
    Labels inner(4200);
    Labels outer(4200);
    Cells outcome(4200);
    SplitMix64 random(9);
    for (std::size_t i = 0; i < inner.size(); ++i) {
        outer[i] = "o" + std::to_string(i % 500);
        inner[i] = "i" + std::to_string(i % 3500);
        outcome[i] = random.nextUnitDouble() + static_cast<double>(i % 5);
    }
    const auto fit = MultilevelModel::fit(dataOf(outcome, {}, outer, inner), namedOptions(0));
    ASSERT_TRUE(fit);
    EXPECT_EQ(fit->nClusters, 500);
    EXPECT_EQ(fit->nClustersSecondary, 3500);
    EXPECT_TRUE(fit->converged);
}

TEST(MultilevelModel, CautionsAboutClusters) {
    struct Case {
        int line;
        std::size_t clusters;
        double spread;
        Labels messages;
    };
    const std::string boundary = "Cluster intercept variance is near zero (boundary).";
    const std::vector<Case> cases = {
        {__LINE__, 4, 9.0, {"Fewer than five clusters; treat variance components as descriptive."}},
        {__LINE__,
         9,
         9.0,
         {"Only 9 clusters; variance components and cluster-level inferences are unstable with "
          "fewer than 10 groups."}},
        {__LINE__, 10, 9.0, {}}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        const auto fit =
            MultilevelModel::fit(Simulated(each.clusters, 6, each.spread).data(), namedOptions(1));
        EXPECT_EQ(cautions(fit->readiness), each.messages);
    }
    Simulated alone(12, 4, 9.0);
    alone.cluster.back() = "  c99 ";
    EXPECT_EQ(cautions(MultilevelModel::fit(alone.data(), namedOptions(1))->readiness),
              Labels{"1 cluster(s) have only one case; variance components are less stable."});
    const Labels halves = {"a", "a", "a", "b", "b", "b"};
    const auto equal =
        MultilevelModel::fit(dataOf({1.0, 2.0, 3.0, 3.0, 2.0, 1.0}, {}, halves), namedOptions(0));
    EXPECT_EQ(equal->icc, 0.0);
    EXPECT_EQ(cautions(equal->readiness).back(), boundary);
}

TEST(MultilevelModel, GivesNoVarianceToClustersOfOneCaseInAnyOrder) {
    Simulated rows(40, 1, 3.0);
    for (int order = 0; order < 5; ++order) {
        SCOPED_TRACE(order);
        const auto fit = MultilevelModel::fit(rows.data(), namedOptions(1));
        EXPECT_EQ(fit->icc, 0.0);
        EXPECT_EQ(cautions(fit->readiness).back(),
                  "Cluster intercept variance is near zero (boundary).");
        for (Cells* column : {&rows.outcome, &rows.x}) {
            std::rotate(column->begin(), column->begin() + 7, column->end());
        }
    }
}

TEST(MultilevelModel, CautionsWhereAVarianceVanishes) {
    // Ten clusters of six rows that rise alike about levels of their own.
    Simulated alike(10, 6, 9.0);
    for (std::size_t i = 0; i < alike.x.size(); ++i) {
        const auto cluster = static_cast<double>(i / 6);
        alike.x[i] = static_cast<double>(i % 6);
        alike.outcome[i] = cluster * cluster + 0.5 * *alike.x[i] + (i % 2 == 0 ? 1.0 : -1.0);
    }
    MultilevelOptions slope = namedOptions(1);
    slope.randomSlopeName = "x1";
    EXPECT_EQ(cautions(MultilevelModel::fit(alike.data(), slope)->readiness),
              Labels{"Random-slope variance is near zero (boundary)."});

    // Rows of a grid whose columns do not differ.
    const auto crossed = [](std::size_t columns) {
        Cells outcome;
        Labels row;
        Labels column;
        for (std::size_t i = 0; i < 6 * columns; ++i) {
            const double level = static_cast<double>(i / columns);
            outcome.emplace_back(level * level +
                                 ((i / columns + i % columns) % 2 == 0 ? 1.0 : -1.0));
            row.push_back("r" + std::to_string(i / columns));
            column.push_back("c" + std::to_string(i % columns));
        }
        return cautions(
            MultilevelModel::fit(dataOf(outcome, {}, row, column), namedOptions(0))->readiness);
    };
    const std::string few =
        "Fewer than five levels on a crossed factor; treat variance components as descriptive.";
    const std::string boundary = "One crossed intercept variance is near zero (boundary).";
    const std::string always =
        "Crossed models do not report a nested ICC; interpret the two intercept variances "
        "separately.";
    EXPECT_EQ(crossed(4), (Labels{few, boundary, always}));
    EXPECT_EQ(crossed(5), (Labels{boundary, always}));
}

TEST(MultilevelModel, ReadsLabelsWithoutSurroundingSpace) {
    Simulated rows(5, 4, 3.0);
    const auto plain = MultilevelModel::fit(rows.data(), namedOptions(1));
    rows.cluster[0] = " c0\n";
    rows.cluster[6] = "\tc1";
    EXPECT_EQ(MultilevelModel::fit(rows.data(), namedOptions(1)), plain);
    rows.cluster[7] = "  ";
    const auto fewer = MultilevelModel::fit(rows.data(), namedOptions(1));
    EXPECT_EQ(fewer->n, plain->n - 1);
    EXPECT_EQ(fewer->readiness.totalRows, 20);
}

TEST(MultilevelModel, DoesNotDependOnUnitsOrOffsets) {
    const Simulated rows(8, 7, 2.0);
    Cells far;
    Cells scaled;
    for (std::size_t i = 0; i < rows.x.size(); ++i) {
        far.emplace_back(*rows.outcome[i] * 1e-4 + 1e6);
        scaled.emplace_back(*rows.x[i] * 1e7);
    }
    MultilevelOptions options = namedOptions(1);
    options.dfMethod = MultilevelDFMethod::kenwardRoger;
    const auto fit = MultilevelModel::fit(rows.data(), options);
    const auto other = MultilevelModel::fit(dataOf(far, {scaled}, rows.cluster), options);
    EXPECT_TRUE(closeTo(*other->icc, *fit->icc, {.relative = 1e-4}));
    EXPECT_TRUE(closeTo(other->fixedEffects[1].z, fit->fixedEffects[1].z, {.relative = 1e-5}));
    EXPECT_TRUE(closeTo(other->fixedEffects[1].estimate, fit->fixedEffects[1].estimate * 1e-11,
                        {.relative = 1e-5}));
}

Cells shifted(const Cells& x, double scale, double shift) {
    Cells result;
    for (const std::optional<double>& value : x) {
        result.emplace_back(*value * scale + shift);
    }
    return result;
}

/// Rows whose slope differs between clusters.
Simulated sloping() {
    Simulated rows(10, 8, 3.0);
    SplitMix64 random(9);
    for (std::size_t i = 0; i < rows.x.size(); i += 8) {
        const double slope = random.nextUnitDouble();
        for (std::size_t j = i; j < i + 8; ++j) {
            *rows.outcome[j] += slope * *rows.x[j];
        }
    }
    return rows;
}

TEST(MultilevelModel, FitsAlikeWhereverTheSlopeHasItsZero) {
    const Simulated rows = sloping();
    MultilevelOptions options = namedOptions(1);
    options.randomSlopeName = "x1";
    for (const MultilevelDFMethod method :
         {MultilevelDFMethod::satterthwaite, MultilevelDFMethod::kenwardRoger}) {
        options.dfMethod = method;
        const auto fit = MultilevelModel::fit(rows.data(), options);
        const MultilevelFixedEffect& slope = fit->fixedEffects[1];
        EXPECT_TRUE(closeTo(*slope.df, 9.0, {.relative = 0.05}));
        // As of years, and of seconds since 1970 within an hour.
        for (const double shift : {-50.0, 2000.0, 3e6}) {
            SCOPED_TRACE(shift);
            const auto other = MultilevelModel::fit(
                dataOf(rows.outcome, {shifted(rows.x, 1.0, shift)}, rows.cluster), options);
            EXPECT_TRUE(closeTo(other->logLikelihood, fit->logLikelihood, {.absolute = 1e-6}));
            EXPECT_TRUE(closeTo(other->fixedEffects[1].standardError, slope.standardError,
                                {.relative = 1e-4}));
            EXPECT_TRUE(closeTo(*other->fixedEffects[1].df, *slope.df, {.relative = 1e-3}));
        }
    }
}

TEST(MultilevelModel, IsSingularWhereTheEffectsVaryAlongOneLine) {
    struct Case {
        const char* name;
        double start;
        double rise;
        double riseWithStart;
        double residual;
        bool isSingular;
    };
    // lme4 agrees for the predictor at its mean.
    const std::vector<Case> cases = {{"apart", 1.0, 0.3, 0.0, 0.3, false},
                                     {"from one point", 0.05, 1.0, 0.0, 0.02, false},
                                     {"along one line", 1.0, 0.0, 0.2, 0.3, true}};
    constexpr int times = 6;
    for (const Case& each : cases) {
        SplitMix64 random(3);
        Cells outcome;
        Cells time;
        Labels person;
        for (int p = 0; p < 40; ++p) {
            const double start = 2.0 * random.nextUnitDouble() - 1.0;
            const double rise = 2.0 * random.nextUnitDouble() - 1.0;
            for (int t = 0; t < times; ++t) {
                time.emplace_back(t);
                outcome.emplace_back(each.start * start +
                                     (each.rise * rise + each.riseWithStart * start) * t +
                                     each.residual * (2.0 * random.nextUnitDouble() - 1.0));
                person.push_back("p" + std::to_string(p));
            }
        }
        MultilevelOptions options = namedOptions(1);
        options.randomSlopeName = "x1";
        for (const double shift : {0.0, 2001.0, 3e7}) {
            SCOPED_TRACE(testing::Message() << each.name << ", " << shift);
            const auto fit =
                MultilevelModel::fit(dataOf(outcome, {shifted(time, 1.0, shift)}, person), options);
            EXPECT_EQ(fit->isSingular, each.isSingular);
        }
        options.correlateRandomEffects = false;
        EXPECT_FALSE(MultilevelModel::fit(dataOf(outcome, {time}, person), options)->isSingular);
    }
}

TEST(MultilevelModel, CountsDegreesInAnyUnit) {
    const Simulated rows = sloping();
    for (const MultilevelDFMethod method :
         {MultilevelDFMethod::satterthwaite, MultilevelDFMethod::kenwardRoger}) {
        MultilevelOptions options = namedOptions(1);
        options.dfMethod = method;
        const auto fit = MultilevelModel::fit(rows.data(), options);
        const auto other = MultilevelModel::fit(
            dataOf(rows.outcome, {shifted(rows.x, 1e12, 0.0)}, rows.cluster), options);
        EXPECT_LT(*fit->fixedEffects[1].df, 100.0);
        EXPECT_TRUE(
            closeTo(*other->fixedEffects[1].df, *fit->fixedEffects[1].df, {.relative = 1e-3}));
    }
}

TEST(MultilevelModel, CorrelatesOnlyWhereThereIsASlope) {
    const Simulated rows(12, 6, 4.0);
    MultilevelOptions options = namedOptions(1);
    EXPECT_FALSE(MultilevelModel::fit(rows.data(), options)->randomEffectCorrelation);
    options.randomSlopeName = "x1";
    const auto correlated = MultilevelModel::fit(rows.data(), options);
    ASSERT_EQ(correlated->varianceComponents.size(), 3U);
    EXPECT_EQ(correlated->varianceComponents[1].name, "class (x1)");
    options.correlateRandomEffects = false;
    const auto independent = MultilevelModel::fit(rows.data(), options);
    EXPECT_FALSE(independent->randomEffectCorrelation);
    EXPECT_GE(correlated->logLikelihood, independent->logLikelihood - 1e-8);
}

TEST(MultilevelModel, HoldsTheConfidenceLevel) {
    const Simulated rows(6, 5, 2.0);
    MultilevelOptions options = namedOptions(1);
    options.confidenceLevel = 1.0;
    const auto widest = MultilevelModel::fit(rows.data(), options);
    options.confidenceLevel = 0.999;
    EXPECT_EQ(MultilevelModel::fit(rows.data(), options), widest);
}

/// Checked against the definition: the mean of a cluster, shrunk by its reliability.
TEST(MultilevelModel, ShrinksTheDeparturesOfClusters) {
    Cells outcome;
    Labels cluster;
    const std::vector<double> means = {1.0, 4.0, 7.0, 12.0};
    for (std::size_t c = 0; c < means.size(); ++c) {
        for (const double deviation : {-1.0, 0.0, 1.0}) {
            outcome.emplace_back(means[c] + deviation);
            cluster.push_back("c" + std::to_string(c));
        }
    }
    const MultilevelData data = dataOf(outcome, {}, cluster);
    const auto fit = MultilevelModel::fit(data, namedOptions(0));
    const auto effects = MultilevelModel::clusterEffects(data, namedOptions(0), *fit);
    ASSERT_EQ(effects.size(), 4U);
    // The analysis of variance estimates, exact for a balanced design.
    const double residual = 1.0;
    const double between = 22.0 - residual / 3.0;
    const double reliability = between / (between + residual / 3.0);
    EXPECT_TRUE(closeTo(effects[3].intercept, 6.0 * reliability, {.relative = 1e-6}));
    EXPECT_TRUE(closeTo(effects[3].interceptError, std::sqrt(between * (1.0 - reliability)),
                        {.relative = 1e-6}));
    EXPECT_FALSE(effects[3].slope);
}

/// Neither where both variances are tiny nor where the slope has its zero far away does a result tell
/// in its variances and their correlation how clusters depart.
/// Where they are independent at a zero far from all values, the likelihood has a maximum without a
/// variance of the slope as well, far below the other.
TEST(MultilevelModel, FindsIndependentSlopesFarFromZero) {
    for (const double zero : {65.0, 300.0, 2010.0}) {
        SCOPED_TRACE(zero);
        SplitMix64 random(11);
        const auto spread = [&random](double width) {
            return width * (2.0 * random.nextUnitDouble() - 1.0);
        };
        Cells outcome;
        Cells x;
        Labels clusters;
        for (int c = 0; c < 20; ++c) {
            const double level = 2.0 + spread(1.7);
            const double slope = 0.3 + spread(0.7);
            for (int i = 0; i < 8; ++i) {
                x.emplace_back(zero + i - 3.5);
                outcome.emplace_back(level + slope * (i - 3.5) + spread(0.35));
                clusters.push_back("c" + std::to_string(c));
            }
        }
        const MultilevelData data = dataOf(outcome, {x}, clusters);
        MultilevelOptions options = namedOptions(1);
        const auto fixed = MultilevelModel::fit(data, options);
        options.randomSlopeName = "x1";
        options.correlateRandomEffects = false;
        const auto independent = MultilevelModel::fit(data, options);
        EXPECT_GT(independent->logLikelihood, fixed->logLikelihood + 30.0);
        EXPECT_GT(independent->fixedEffects[1].standardError,
                  2.0 * fixed->fixedEffects[1].standardError);
    }
}

TEST(MultilevelModel, DepartsAlikeInAnyUnitAndWhereverTheSlopeHasItsZero) {
    const Simulated rows = sloping();
    MultilevelOptions options = namedOptions(1);
    options.randomSlopeName = "x1";
    const auto departures = [&](double unit, double zero) {
        const MultilevelData data =
            dataOf(shifted(rows.outcome, unit, 0.0), {shifted(rows.x, 1.0, zero)}, rows.cluster);
        const auto fit = MultilevelModel::fit(data, options);
        EXPECT_EQ(fit->randomEffectCorrelation.has_value(), unit == 1.0);
        return MultilevelModel::clusterEffects(data, options, *fit);
    };
    const auto effects = departures(1.0, 0.0);
    double mean = 0.0;
    for (const std::optional<double>& x : rows.x) {
        mean += *x / static_cast<double>(rows.x.size());
    }
    // As of years, of dates written as 20230101 and of seconds since 1970.
    const std::vector<std::pair<double, double>> cases = {
        {1e-9, 0.0}, {1.0, 2000.0}, {1.0, 2e7}, {1.0, 1.6e9}};
    for (const auto& [unit, zero] : cases) {
        SCOPED_TRACE(testing::Message() << unit << ", " << zero);
        const auto others = departures(unit, zero);
        ASSERT_EQ(others.size(), effects.size());
        for (std::size_t c = 0; c < effects.size(); ++c) {
            const double slope = *others[c].slope / unit;
            EXPECT_TRUE(closeTo(slope, *effects[c].slope, {.relative = 1e-4, .absolute = 1e-4}));
            EXPECT_TRUE(closeTo(others[c].middle / unit, effects[c].middle,
                                {.relative = 1e-4, .absolute = 1e-4}));
            EXPECT_TRUE(closeTo(others[c].intercept / unit,
                                others[c].middle / unit - slope * (zero + mean),
                                {.relative = 1e-6, .absolute = 1e-6}));
        }
    }
}

TEST(MultilevelInputs, LagsWithinClustersByTime) {
    const Labels clusters = {"a", "b", "a", " a", "", "b", "a"};
    const Cells time = {3.0, 1.0, 1.0, 7.0, 1.0, {}, 1.0};
    const Cells outcome = {30.0, 5.0, 10.0, 70.0, 1.0, 6.0, 11.0};
    const auto lagged = MultilevelInputs::lagWithinCluster(
        NumericColumn(outcome), *TextColumn::of(clusters), NumericColumn(time));
    EXPECT_EQ(lagged, (Cells{11.0, {}, {}, 30.0, {}, {}, 10.0}));
    const auto unfit = MultilevelInputs::lagWithinCluster(
        NumericColumn(outcome), *TextColumn::of(Labels{"a"}), NumericColumn(time));
    EXPECT_EQ(unfit, Cells(7));
}

TEST(MultilevelInputs, JoinsLabelsOfOuterAndInnerClusters) {
    const auto joined =
        MultilevelInputs::innerWithinOuter(*TextColumn::of(Labels{"a", " a", "b", "", "b"}),
                                           *TextColumn::of(Labels{"1 ", "2", "1", "1", " "}));
    EXPECT_EQ(*joined, *TextColumn::of(Labels{"a:1", "a:2", "b:1", "", ""}));
}

}  // namespace
}  // namespace sorvane
