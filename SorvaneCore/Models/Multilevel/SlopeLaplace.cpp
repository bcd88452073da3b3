#include "SorvaneCore/Models/Multilevel/SlopeLaplace.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Models/Multilevel/LinkedInformation.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

constexpr int stepLimit = 60;
constexpr int halvingLimit = 30;
constexpr double smallestStep = 1e-11;

/// The joint log density of a cluster's outcomes and effects u, with its derivatives.
struct JointDensity {
    double value = 0.0;
    std::array<double, 2> gradient{};
    /// The negative Hessian: first, mixed and second entry.
    std::array<double, 3> curvature{};

    double determinant() const { return curvature[0] * curvature[2] - curvature[1] * curvature[1]; }
    std::array<double, 2> newtonStep() const {
        return {(curvature[2] * gradient[0] - curvature[1] * gradient[1]) / determinant(),
                (curvature[0] * gradient[1] - curvature[1] * gradient[0]) / determinant()};
    }
};

struct ClusterRows {
    LinkedFamily family;
    std::span<const double> outcome;
    std::span<const double> peak;
    std::span<const double> predictor;
    std::span<const double> slope;
    SlopeSpread spread;

    JointDensity at(const std::array<double, 2>& u) const {
        JointDensity result{.value = -0.5 * (u[0] * u[0] + u[1] * u[1]),
                            .gradient = {-u[0], -u[1]},
                            .curvature = {1.0, 0.0, 1.0}};
        for (std::size_t i = 0; i < outcome.size(); ++i) {
            const auto& [first, second] = spread.loadings(slope[i]);
            const LinkedMass mass = LinkedMass::of(family, outcome[i], peak[i],
                                                   predictor[i] + first * u[0] + second * u[1]);
            result.value += mass.logMass;
            result.gradient[0] += first * (outcome[i] - mass.mean);
            result.gradient[1] += second * (outcome[i] - mass.mean);
            result.curvature[0] += first * first * mass.weight;
            result.curvature[1] += first * second * mass.weight;
            result.curvature[2] += second * second * mass.weight;
        }
        return result;
    }
};

}  // namespace

SlopeLaplace::SlopeLaplace(const LinkedDesign& design,
                           const ClusterCodes& clusters,
                           std::span<const double> slope)
    : design_(design), slope_(slope) {
    std::size_t first = 0;
    for (const std::size_t size : clusters.sizes()) {
        clusters_.push_back({.first = first, .size = size});
        first += size;
    }
}

double SlopeLaplace::logLikelihood(std::span<const double> predictor, const SlopeSpread& spread) {
    constexpr std::size_t clustersPerTask = 16;
    constexpr std::size_t fewestRowsForThreads = 2000;
    const unsigned threads = predictor.size() < fewestRowsForThreads ? 1 : hardwareThreads();
    parallelFor(
        (clusters_.size() + clustersPerTask - 1) / clustersPerTask, threads, [&](std::size_t task) {
            const std::size_t end = std::min((task + 1) * clustersPerTask, clusters_.size());
            for (std::size_t c = task * clustersPerTask; c < end; ++c) {
                approximate(clusters_[c], predictor, spread);
            }
        });
    double sum = 0.0;
    for (const Cluster& cluster : clusters_) {
        sum += cluster.logLikelihood;
    }
    return design_.constant() + sum;
}

std::vector<double> SlopeLaplace::information(std::span<const double> predictor,
                                              const SlopeSpread& spread) const {
    LinkedInformation sums(design_);
    for (const Cluster& cluster : clusters_) {
        const std::array<double, 2>& mode = cluster.posterior.mean;
        LinkedInformation::Cluster each{.first = cluster.first};
        for (std::size_t i = cluster.first; i < cluster.first + cluster.size; ++i) {
            const std::array<double, 2> loadings = spread.loadings(slope_[i]);
            const double shift = loadings[0] * mode[0] + loadings[1] * mode[1];
            each.weights.push_back(LinkedMass::of(design_.family(), design_.outcome()[i],
                                                  design_.peaks()[i], predictor[i] + shift)
                                       .weight);
            each.loadings.push_back(loadings);
        }
        sums.add(each);
    }
    return sums.take();
}

std::vector<ClusterPosterior> SlopeLaplace::posteriors() const {
    std::vector<ClusterPosterior> result;
    for (const Cluster& cluster : clusters_) {
        result.push_back(cluster.posterior);
    }
    return result;
}

void SlopeLaplace::approximate(Cluster& cluster,
                               std::span<const double> predictor,
                               const SlopeSpread& spread) const {
    const ClusterRows rows{.family = design_.family(),
                           .outcome = design_.outcome().subspan(cluster.first, cluster.size),
                           .peak = design_.peaks().subspan(cluster.first, cluster.size),
                           .predictor = predictor.subspan(cluster.first, cluster.size),
                           .slope = slope_.subspan(cluster.first, cluster.size),
                           .spread = spread};
    std::array<double, 2> u = cluster.posterior.mean;
    JointDensity now = rows.at(u);
    for (int i = 0; i < stepLimit; ++i) {
        const std::array<double, 2> step = now.newtonStep();
        double share = 1.0;
        std::array<double, 2> next = {u[0] + step[0], u[1] + step[1]};
        JointDensity there = rows.at(next);
        // Short steps are let pass, as rounding decides about their gain.
        const double length = std::max(std::abs(step[0]), std::abs(step[1]));
        for (int h = 0; h < halvingLimit && length > 1e-6 && !(there.value >= now.value); ++h) {
            share *= 0.5;
            next = {u[0] + share * step[0], u[1] + share * step[1]};
            there = rows.at(next);
        }
        u = next;
        now = there;
        if (!(length >= smallestStep)) {
            break;
        }
    }
    cluster.posterior = {
        .mean = std::isfinite(u[0]) && std::isfinite(u[1]) ? u : std::array<double, 2>{},
        .precision = SmallFactor::of(now.curvature[0], now.curvature[1], now.determinant())};
    // The constants of the effects' density and of the integral cancel.
    cluster.logLikelihood = now.value - 0.5 * std::log(now.determinant());
}

}  // namespace sorvane
