#include "SorvaneCore/Analyses/Clustering/KMeansClustering.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>
#include <utility>

#include "SorvaneCore/Analyses/Clustering/CaseColumns.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Numerics/SplitMix64.h"

namespace sorvane::ClusterAnalysis {

namespace {

constexpr std::size_t blockRows = 256;
/// What one thread takes at a time. Sums are added up chunk by chunk, so that results do not depend
/// on the number of threads.
constexpr std::size_t chunkRows = 8192;

std::string notConverged() {
    return "K-means reached the iteration cap before assignments stabilized; treat the partition "
           "as approximate.";
}

std::string emptyClusters(std::int64_t count) {
    return NumberText::integer(count) + " requested clusters ended up empty; consider a smaller k.";
}

std::string fewCasesPerCluster(double casesPerCluster) {
    return "There are fewer than 5 cases per cluster (" + NumberText::clean(casesPerCluster) +
           "); cluster centers may be unstable.";
}

AnalysisReadiness readiness(const KMeansResult& result) {
    constexpr std::int64_t enoughPerCluster = 5;
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    const auto cases = static_cast<std::int64_t>(result.assignments.size());
    const auto empty = std::ranges::count(result.clusters, 0, &KMeansClusterSummary::size);
    if (!result.converged) {
        caution(notConverged());
    }
    if (empty > 0) {
        caution(emptyClusters(empty));
    }
    if (cases < enoughPerCluster * result.k) {
        caution(fewCasesPerCluster(static_cast<double>(cases) / static_cast<double>(result.k)));
    }
    return AnalysisReadiness::of("at least k distinct cases, ideally several cases per cluster",
                                 cases, cases, std::move(issues));
}

/// Points of one width, one after another.
struct Centres {
    std::size_t width = 0;
    std::vector<double> cells{};

    std::size_t count() const { return cells.size() / width; }
    std::span<const double> operator[](std::size_t c) const {
        return std::span(cells).subspan(c * width, width);
    }
    bool holds(std::span<const double> point) const {
        for (std::size_t c = 0; c < count(); ++c) {
            if (std::ranges::equal((*this)[c], point)) {
                return true;
            }
        }
        return false;
    }
    void add(std::span<const double> point) {
        cells.insert(cells.end(), point.begin(), point.end());
    }
};

bool haveDistinctRows(const CaseRows& rows, std::size_t wanted) {
    Centres found{.width = rows.width};
    for (std::size_t i = 0; i < rows.count && found.count() < wanted; ++i) {
        if (!found.holds(rows.row(i))) {
            found.add(rows.row(i));
        }
    }
    return found.count() == wanted;
}

std::size_t firstDistinctIndex(const CaseRows& rows, const Centres& centres) {
    for (std::size_t i = 0; i < rows.count; ++i) {
        if (!centres.holds(rows.row(i))) {
            return i;
        }
    }
    return 0;
}

/// The first row at which the running sum reaches the target.
std::size_t indexAt(const std::vector<double>& weights, double target) {
    double sum = 0.0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        sum += weights[i];
        if (sum >= target) {
            return i;
        }
    }
    return weights.size() - 1;
}

/// Centres drawn from the rows, each with a chance in proportion to its squared distance from the
/// centres before it.
Centres kMeansPlusPlusInit(const CaseRows& rows,
                           const CaseColumns& columns,
                           const KMeansOptions& options) {
    SplitMix64 random(options.seed);
    Centres centres{.width = rows.width};
    centres.add(rows.row(random.next() % rows.count));
    std::vector<double> nearest(rows.count, std::numeric_limits<double>::infinity());
    std::vector<double> distances(rows.count);
    for (std::int64_t c = 1; c < options.k; ++c) {
        columns.squaredDistances(centres[static_cast<std::size_t>(c - 1)], 0, distances);
        for (std::size_t i = 0; i < rows.count; ++i) {
            nearest[i] = std::min(nearest[i], distances[i]);
        }
        const double total = std::accumulate(nearest.begin(), nearest.end(), 0.0);
        centres.add(rows.row(total > 0.0 ? indexAt(nearest, total * random.nextUnitDouble())
                                         : firstDistinctIndex(rows, centres)));
    }
    return centres;
}

/// One run of Lloyd's passes.
class Partition {
public:
    Partition(const CaseRows& rows, const CaseColumns& columns, Centres centres)
        : rows_(rows),
          columns_(columns),
          centres_(std::move(centres)),
          clusterCount_(centres_.count()),
          clusterOf_(rows.count, unassigned) {}

    /// Assigns every row to its nearest centre; whether any changed.
    bool assign() {
        const std::size_t chunks = (rows_.count + chunkRows - 1) / chunkRows;
        partial_.assign(chunks, {});
        parallelFor(chunks, hardwareThreads(), [this](std::size_t chunk) { assignChunk(chunk); });
        return std::ranges::any_of(partial_, &Partial::changed);
    }
    /// Moves each centre to the mean of its rows.
    void moveCentres();
    KMeansResult result() const;

private:
    static constexpr std::uint32_t unassigned = std::numeric_limits<std::uint32_t>::max();

    /// What one chunk adds to the means.
    struct Partial {
        bool changed = false;
        std::vector<double> sums{};
        std::vector<std::int64_t> sizes{};
    };

    void assignChunk(std::size_t chunk);
    void nearestCentres(std::size_t first, std::span<std::uint32_t> nearest) const;

    const CaseRows& rows_;
    const CaseColumns& columns_;
    Centres centres_;
    std::size_t clusterCount_;
    std::vector<std::uint32_t> clusterOf_;
    std::vector<Partial> partial_;
};

void Partition::nearestCentres(std::size_t first, std::span<std::uint32_t> nearest) const {
    std::array<double, blockRows> best{};
    std::array<double, blockRows> distances{};
    best.fill(std::numeric_limits<double>::infinity());
    std::ranges::fill(nearest, 0U);
    for (std::size_t c = 0; c < clusterCount_; ++c) {
        columns_.squaredDistances(centres_[c], first, std::span(distances).first(nearest.size()));
        for (std::size_t i = 0; i < nearest.size(); ++i) {
            const bool isNearer = distances[i] < best[i];
            nearest[i] = isNearer ? static_cast<std::uint32_t>(c) : nearest[i];
            best[i] = isNearer ? distances[i] : best[i];
        }
    }
}

void Partition::assignChunk(std::size_t chunk) {
    Partial& partial = partial_[chunk];
    partial.sums.assign(clusterCount_ * rows_.width, 0.0);
    partial.sizes.assign(clusterCount_, 0);
    std::array<std::uint32_t, blockRows> nearest{};
    const std::size_t end = std::min((chunk + 1) * chunkRows, rows_.count);
    for (std::size_t first = chunk * chunkRows; first < end; first += blockRows) {
        const std::size_t count = std::min(blockRows, end - first);
        nearestCentres(first, std::span(nearest).first(count));
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t c = nearest[i];
            partial.changed = partial.changed || clusterOf_[first + i] != nearest[i];
            clusterOf_[first + i] = nearest[i];
            ++partial.sizes[c];
            const double* row = &rows_.cells[(first + i) * rows_.width];
            double* sums = &partial.sums[c * rows_.width];
            for (std::size_t j = 0; j < rows_.width; ++j) {
                sums[j] += row[j];
            }
        }
    }
}

void Partition::moveCentres() {
    for (std::size_t c = 0; c < clusterCount_; ++c) {
        std::vector<double> sums(rows_.width, 0.0);
        std::int64_t size = 0;
        for (const Partial& partial : partial_) {
            size += partial.sizes[c];
            for (std::size_t j = 0; j < rows_.width; ++j) {
                sums[j] += partial.sums[c * rows_.width + j];
            }
        }
        for (std::size_t j = 0; j < rows_.width && size > 0; ++j) {
            centres_.cells[c * rows_.width + j] = sums[j] / static_cast<double>(size);
        }
    }
}

KMeansResult Partition::result() const {
    KMeansResult result{.assignments = {clusterOf_.begin(), clusterOf_.end()},
                        .k = static_cast<std::int64_t>(clusterCount_)};
    for (std::size_t c = 0; c < clusterCount_; ++c) {
        result.centroids.emplace_back(centres_[c].begin(), centres_[c].end());
        result.clusters.push_back({.centroid = result.centroids.back()});
    }
    for (std::size_t i = 0; i < rows_.count; ++i) {
        KMeansClusterSummary& cluster = result.clusters[clusterOf_[i]];
        ++cluster.size;
        for (std::size_t j = 0; j < rows_.width; ++j) {
            const double difference = rows_.cells[i * rows_.width + j] - cluster.centroid[j];
            cluster.withinClusterSumOfSquares += difference * difference;
        }
    }
    for (const KMeansClusterSummary& cluster : result.clusters) {
        result.totalWithinClusterSumOfSquares += cluster.withinClusterSumOfSquares;
    }
    return result;
}

}  // namespace

std::optional<KMeansResult> kMeans(const CaseRows& rows, const KMeansOptions& options) {
    if (options.k < 1 || rows.width < 1 || static_cast<std::int64_t>(rows.count) < options.k ||
        options.maxIterations < 1) {
        return std::nullopt;
    }
    const std::optional<CaseColumns> columns = CaseColumns::of(rows, options.standardize);
    if (!columns) {
        return std::nullopt;
    }
    const CaseRows used = options.standardize ? columns->rows() : rows;
    if (!haveDistinctRows(used, static_cast<std::size_t>(options.k))) {
        return std::nullopt;
    }
    Partition partition(used, *columns, kMeansPlusPlusInit(used, *columns, options));
    std::int64_t iterations = 0;
    bool converged = false;
    while (!converged && iterations < options.maxIterations) {
        ++iterations;
        converged = !partition.assign();
        if (!converged) {
            partition.moveCentres();
        }
    }
    KMeansResult result = partition.result();
    if (!std::isfinite(result.totalWithinClusterSumOfSquares)) {
        return std::nullopt;
    }
    result.iterations = iterations;
    result.converged = converged;
    result.standardized = options.standardize;
    result.readiness = readiness(result);
    return result;
}

std::vector<ElbowPoint> elbowCurve(const CaseRows& rows,
                                   std::span<const std::int64_t> kRange,
                                   const KMeansOptions& options) {
    std::vector<ElbowPoint> curve;
    for (const std::int64_t k : kRange) {
        KMeansOptions one = options;
        one.k = k;
        if (const std::optional<KMeansResult> result = kMeans(rows, one)) {
            curve.push_back(
                {.k = k, .totalWithinClusterSumOfSquares = result->totalWithinClusterSumOfSquares});
        }
    }
    return curve;
}

}  // namespace sorvane::ClusterAnalysis
