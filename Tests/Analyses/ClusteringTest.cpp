#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/Clustering/HierarchicalClustering.h"
#include "SorvaneCore/Analyses/Clustering/KMeansClustering.h"
#include "Tests/Analyses/ReadinessIssues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {

namespace {

using ClusterAnalysis::cutTree;
using ClusterAnalysis::hierarchical;
using ClusterAnalysis::kMeans;
using test::cautions;
using test::closeTo;
using Labels = std::vector<std::int64_t>;
using Rows = std::vector<std::vector<double>>;
using Texts = std::vector<std::string>;

CaseRows cases(const Rows& rows) {
    return *CaseRows::of(rows);
}

/// Answers from 1 to `levels`: full of ties when there are few.
CaseRows answers(std::size_t count, std::size_t width, unsigned levels) {
    std::mt19937_64 random(7);
    CaseRows rows{.count = count, .width = width, .cells = std::vector<double>(count * width)};
    for (double& cell : rows.cells) {
        cell = static_cast<double>(1 + random() % levels);
    }
    return rows;
}

TEST(KMeans, RefusesWhatCannotBeDivided) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        int line;
        Rows rows;
        std::int64_t k;
        std::int64_t maxIterations;
        bool runs;
    };
    const std::vector<Case> table = {
        {__LINE__, {}, 1, 100, false},
        {__LINE__, {{1}, {2}}, 3, 100, false},
        {__LINE__, {{1}, {2}}, 0, 100, false},
        {__LINE__, {{1}, {2}}, 2, 0, false},
        {__LINE__, {{1}, {nan}}, 1, 100, false},
        {__LINE__, {{1}, {1}, {2}}, 3, 100, false},
        {__LINE__, {{1}, {1}, {2}}, 2, 100, true},
        {__LINE__, {{4, 4}, {4, 4}}, 1, 100, true},
    };
    for (const Case& each : table) {
        for (const bool standardize : {false, true}) {
            const auto result = kMeans(
                cases(each.rows),
                {.k = each.k, .standardize = standardize, .maxIterations = each.maxIterations});
            EXPECT_EQ(result.has_value(), each.runs) << each.line;
        }
    }
    EXPECT_FALSE(CaseRows::of(Rows{{1, 2}, {3}}));
}

TEST(KMeans, EndsWithMeansOfTheRowsNearestToThem) {
    const CaseRows rows = answers(20000, 4, 9);
    const auto result = kMeans(rows, {.k = 6, .standardize = false});
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->converged);
    double total = 0.0;
    for (std::size_t i = 0; i < rows.count; ++i) {
        std::vector<double> distances;
        for (const std::vector<double>& centre : result->centroids) {
            double squared = 0.0;
            for (std::size_t j = 0; j < rows.width; ++j) {
                squared += std::pow(rows.row(i)[j] - centre[j], 2);
            }
            distances.push_back(squared);
        }
        const auto nearest = std::ranges::min_element(distances) - distances.begin();
        ASSERT_EQ(result->assignments[i], nearest) << i;
        total += distances[static_cast<std::size_t>(nearest)];
    }
    EXPECT_TRUE(closeTo(result->totalWithinClusterSumOfSquares, total, {.relative = 1e-10}));
    EXPECT_EQ(kMeans(rows, {.k = 6, .standardize = false}), result);
    EXPECT_NE(kMeans(rows, {.k = 6, .standardize = false, .seed = 1}), result);
}

TEST(KMeans, TakesTheMeanAsTheOnlyCentre) {
    const auto result = kMeans(cases({{1, 10}, {2, 20}, {6, 60}}), {.k = 1, .standardize = false});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->centroids, (Rows{{3, 30}}));
    EXPECT_EQ(result->iterations, 2);
    EXPECT_EQ(result->clusters[0].size, 3);
    const auto standard = kMeans(cases({{1, 5}, {2, 5}, {3, 5}}), {.k = 3, .standardize = true});
    Rows centres = standard->centroids;
    std::ranges::sort(centres);
    EXPECT_EQ(centres, (Rows{{-1, 0}, {0, 0}, {1, 0}}));
}

TEST(KMeans, StandardizesInAnyUnitAndRefusesDistancesBeyondAllNumbers) {
    const auto inUnits = [](double unit) {
        return cases({{1 * unit, 7}, {2 * unit, 9}, {8 * unit, 1}, {9 * unit, 3}, {9 * unit, 2}});
    };
    const auto plain = kMeans(inUnits(1.0), {.k = 2});
    for (const int exponent : {1000, 550, -550, -1000}) {
        EXPECT_EQ(kMeans(inUnits(std::ldexp(1.0, exponent)), {.k = 2}), plain) << exponent;
    }
    EXPECT_FALSE(kMeans(inUnits(1e200), {.k = 2, .standardize = false}));
    EXPECT_FALSE(hierarchical(inUnits(1e200), {.standardize = false}));
}

TEST(KMeans, SaysWhatItsPartitionIsGoodFor) {
    const auto few = kMeans(cases({{1}, {2}, {8}, {9}, {9}}), {.k = 2});
    EXPECT_EQ(cautions(few->readiness),
              (Texts{"There are fewer than 5 cases per cluster (2.50); cluster centers may be "
                     "unstable."}));
    const auto cut = kMeans(answers(500, 3, 9), {.k = 5, .maxIterations = 1});
    EXPECT_FALSE(cut->converged);
    EXPECT_EQ(cautions(cut->readiness),
              (Texts{"K-means reached the iteration cap before assignments stabilized; treat the "
                     "partition as approximate."}));
}

TEST(KMeans, LeavesOutOfTheElbowWhatHasNoResult) {
    const CaseRows rows = cases({{1}, {2}, {8}, {8}});
    const Labels range = {0, 1, 2, 3, 4};
    const auto curve = ClusterAnalysis::elbowCurve(rows, range, {.standardize = false});
    ASSERT_EQ(curve.size(), 3U);
    EXPECT_TRUE(closeTo(curve[0].totalWithinClusterSumOfSquares, 42.75));
    EXPECT_EQ(curve[2], (ElbowPoint{.k = 3, .totalWithinClusterSumOfSquares = 0.0}));
}

/// The tree by its definition: all pairs looked at before each merge.
std::vector<HierarchicalMerge> plainTree(const CaseRows& rows, HierarchicalLinkage linkage) {
    const bool squared = linkage == HierarchicalLinkage::ward;
    const std::size_t most = 2 * rows.count;
    std::vector<double> d(most * most, 0.0);
    std::vector<double> size(most, 1.0);
    std::vector<std::size_t> active(rows.count);
    std::iota(active.begin(), active.end(), std::size_t{0});
    for (std::size_t i = 0; i < rows.count; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            double sum = 0.0;
            for (std::size_t v = 0; v < rows.width; ++v) {
                const double difference = rows.row(j)[v] - rows.row(i)[v];
                sum += difference * difference;
            }
            d[i * most + j] = d[j * most + i] = squared ? sum : std::sqrt(sum);
        }
    }
    std::vector<HierarchicalMerge> merges;
    for (std::size_t made = rows.count; active.size() > 1; ++made) {
        std::size_t a = active[0];
        std::size_t b = active[1];
        for (std::size_t i = 0; i < active.size(); ++i) {
            for (std::size_t j = i + 1; j < active.size(); ++j) {
                if (d[active[i] * most + active[j]] < d[a * most + b]) {
                    a = active[i];
                    b = active[j];
                }
            }
        }
        const double ab = d[a * most + b];
        std::erase(active, a);
        std::erase(active, b);
        size[made] = size[a] + size[b];
        for (const std::size_t k : active) {
            const double ak = d[a * most + k];
            const double bk = d[b * most + k];
            const double joined =
                squared ? ((size[a] + size[k]) * ak + (size[b] + size[k]) * bk - size[k] * ab) /
                              (size[made] + size[k])
                : linkage == HierarchicalLinkage::complete ? std::max(ak, bk)
                : linkage == HierarchicalLinkage::average
                    ? (size[a] * ak + size[b] * bk) / size[made]
                    : std::min(ak, bk);
            d[made * most + k] = d[k * most + made] = joined;
        }
        active.push_back(made);
        merges.push_back({.clusterA = static_cast<std::int64_t>(a),
                          .clusterB = static_cast<std::int64_t>(b),
                          .height = squared ? std::sqrt(std::max(ab, 0.0)) : ab,
                          .size = static_cast<std::int64_t>(size[made])});
    }
    return merges;
}

TEST(Hierarchical, MergesTheFirstOfEquallyClosePairs) {
    for (const auto linkage : {HierarchicalLinkage::ward, HierarchicalLinkage::complete,
                               HierarchicalLinkage::average, HierarchicalLinkage::single}) {
        for (const unsigned levels : {2U, 3U, 5U, 1000U}) {
            const CaseRows rows = answers(150, 3, levels);
            const auto result = hierarchical(rows, {.linkage = linkage, .standardize = false});
            ASSERT_TRUE(result);
            EXPECT_EQ(result->merges, plainTree(rows, linkage))
                << static_cast<int>(linkage) << " with " << levels;
        }
    }
}

TEST(Hierarchical, GivesHeightsOnTheScaleOfDistances) {
    const CaseRows line = cases({{0}, {3}, {4}});
    const auto single =
        hierarchical(line, {.linkage = HierarchicalLinkage::single, .standardize = false});
    const std::vector<HierarchicalMerge> expected = {
        {.clusterA = 1, .clusterB = 2, .height = 1, .size = 2},
        {.clusterA = 0, .clusterB = 3, .height = 3, .size = 3}};
    EXPECT_EQ(single->merges, expected);
    const auto ward = hierarchical(line, {.standardize = false});
    EXPECT_EQ(ward->merges[0].height, 1.0);
    // Twice the increase of the sum of squares: 2 * 2/3 * 3.5^2.
    EXPECT_TRUE(closeTo(ward->merges[1].height, std::sqrt(4.0 / 3.0) * 3.5));
}

TEST(Hierarchical, SaysHowManyCasesItTakes) {
    EXPECT_FALSE(hierarchical(cases({{1}})));
    EXPECT_FALSE(hierarchical(cases({{1}, {std::numeric_limits<double>::infinity()}})));
    EXPECT_EQ(cautions(hierarchical(cases({{1}, {2}}))->readiness),
              (Texts{"2 case(s) are available; a dendrogram is degenerate below 3 cases."}));
    EXPECT_TRUE(cautions(hierarchical(cases({{1}, {2}, {4}}))->readiness).empty());
    const auto blocked = hierarchical({.count = 20001, .width = 1, .cells = {}});
    ASSERT_TRUE(blocked);
    EXPECT_EQ(blocked->readiness.status, AnalysisReadinessStatus::blocked);
    EXPECT_TRUE(blocked->merges.empty());
}

TEST(CutTree, LabelsClustersByTheirFirstCases) {
    const CaseRows rows = cases({{10}, {0}, {11}, {1}, {30}});
    const auto tree = hierarchical(rows, {.standardize = false});
    struct Case {
        int line;
        std::int64_t k;
        std::optional<Labels> labels;
    };
    const std::vector<Case> table = {
        {__LINE__, 0, std::nullopt},          {__LINE__, 1, Labels{0, 0, 0, 0, 0}},
        {__LINE__, 3, Labels{0, 1, 0, 1, 2}}, {__LINE__, 5, Labels{0, 1, 2, 3, 4}},
        {__LINE__, 6, std::nullopt},
    };
    for (const Case& each : table) {
        EXPECT_EQ(cutTree(tree->merges, 5, each.k), each.labels) << each.line;
    }
    EXPECT_FALSE(cutTree({}, 5, 2));
    const std::vector<HierarchicalMerge> impossible = {{.clusterA = 0, .clusterB = 9}};
    EXPECT_FALSE(cutTree(impossible, 2, 1));
}

}  // namespace

}  // namespace sorvane
