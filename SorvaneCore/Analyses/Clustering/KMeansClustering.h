#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Basics/CaseRows.h"

namespace sorvane {

struct KMeansClusterSummary {
    std::int64_t size = 0;
    std::vector<double> centroid{};
    double withinClusterSumOfSquares = 0.0;

    bool operator==(const KMeansClusterSummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(KMeansClusterSummary, (), (size, centroid, withinClusterSumOfSquares))

struct KMeansResult {
    /// The cluster of each case, from 0 in the order in which the centres were drawn.
    std::vector<std::int64_t> assignments{};
    /// One row per cluster, in standard scores where `standardized`.
    std::vector<std::vector<double>> centroids{};
    std::vector<KMeansClusterSummary> clusters{};
    double totalWithinClusterSumOfSquares = 0.0;
    /// Passes of assignment, the one that changed nothing among them.
    std::int64_t iterations = 0;
    bool converged = false;
    std::int64_t k = 0;
    bool standardized = false;
    AnalysisReadiness readiness{};

    bool operator==(const KMeansResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(KMeansResult,
                      (),
                      (assignments,
                       centroids,
                       clusters,
                       totalWithinClusterSumOfSquares,
                       iterations,
                       converged,
                       k,
                       standardized,
                       readiness))

/// How well one number of clusters does.
struct ElbowPoint {
    std::int64_t k = 0;
    double totalWithinClusterSumOfSquares = 0.0;

    bool operator==(const ElbowPoint&) const = default;
};
BOOST_DESCRIBE_STRUCT(ElbowPoint, (), (k, totalWithinClusterSumOfSquares))

struct KMeansOptions {
    std::int64_t k = 3;
    /// Whether each variable is first brought to mean 0 and standard deviation 1 (n - 1).
    bool standardize = true;
    std::int64_t maxIterations = 100;
    std::uint64_t seed = 0x9e3779b97f4a7c15;

    bool operator==(const KMeansOptions&) const = default;
};
BOOST_DESCRIBE_STRUCT(KMeansOptions, (), (k, standardize, maxIterations, seed))

namespace ClusterAnalysis {

/// Cases divided into k clusters around their means.
///
/// Input      finite numbers
/// Method     k-means++ centres from one run of the seeded generator, then Lloyd's passes until one
///            changes no assignment; of equally near centres the first; a cluster that is left
///            empty keeps its centre
/// Returns    one run, which can end in a local optimum; the same bits for the same seed
/// Failure    no pass allowed, k below 1, fewer distinct cases than k, numbers that are not finite,
///            or whose squared distances are not -> absent
/// Cost       O(n k width) a pass: about 3 ms for 100,000 cases, k 5 and 10 variables
/// Reference  Arthur & Vassilvitskii (2007), k-means++
std::optional<KMeansResult> kMeans(const CaseRows& rows, const KMeansOptions& options = {});

/// The total within sum of squares of each number of clusters, those that have no result left out.
///
/// Input      `kRange` takes the place of the `k` of the options
std::vector<ElbowPoint> elbowCurve(const CaseRows& rows,
                                   std::span<const std::int64_t> kRange,
                                   const KMeansOptions& options = {});

}  // namespace ClusterAnalysis

}  // namespace sorvane
