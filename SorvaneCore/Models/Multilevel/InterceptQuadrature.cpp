#include "SorvaneCore/Models/Multilevel/InterceptQuadrature.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "SorvaneCore/Models/Multilevel/GaussHermite.h"
#include "SorvaneCore/Models/Multilevel/LinkedInformation.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

using GaussHermite::nodes;
using GaussHermite::pointCount;
using GaussHermite::Points;
using GaussHermite::weights;

/// One cluster at one setting.
struct Rows {
    LinkedFamily family;
    std::span<const double> outcome;
    std::span<const double> peak;
    std::span<const double> predictor;
    /// Of the predictor.
    std::vector<double> exponentials{};
    double outcomeSum = 0.0;
    /// Of the predictors less their peaks.
    double weightedSum = 0.0;
    double farthest = 0.0;
    double exponentialSum = 0.0;

    Rows(const LinkedDesign& design, std::size_t first, std::span<const double> eta)
        : family(design.family()),
          outcome(design.outcome().subspan(first, eta.size())),
          peak(design.peaks().subspan(first, eta.size())),
          predictor(eta),
          exponentials(eta.size()) {
        // Beyond this the exponential of a sum would not be the product of exponentials.
        constexpr double largest = 300.0;
        for (std::size_t i = 0; i < eta.size(); ++i) {
            exponentials[i] = std::exp(std::clamp(eta[i], -largest, largest));
            outcomeSum += outcome[i];
            weightedSum += outcome[i] * (eta[i] - peak[i]);
            farthest = std::max(farthest, std::abs(eta[i]));
            exponentialSum += exponentials[i];
        }
    }

    bool isUnfelt(double shift) const { return farthest + std::abs(shift) < linked_bounds::unfelt; }
    LinkedMass massAt(std::size_t row, double shift) const {
        return LinkedMass::of(family, outcome[row], peak[row], predictor[row] + shift);
    }
};

/// Sums over the rows, their predictors shifted by b.
struct Derivatives {
    double residual = 0.0;
    double weight = 0.0;
};

Derivatives derivativesAt(const Rows& rows, double b) {
    Derivatives sums;
    if (!rows.isUnfelt(b)) {
        for (std::size_t i = 0; i < rows.outcome.size(); ++i) {
            const LinkedMass mass = rows.massAt(i, b);
            sums.residual += rows.outcome[i] - mass.mean;
            sums.weight += mass.weight;
        }
        return sums;
    }
    const double shift = std::exp(b);
    if (rows.family == LinkedFamily::poisson) {
        sums.weight = shift * rows.exponentialSum;
        sums.residual = rows.outcomeSum - sums.weight;
        return sums;
    }
    double means = 0.0;
    for (const double exponential : rows.exponentials) {
        const double rest = 1.0 / (1.0 + exponential * shift);
        const double share = 1.0 - rest;
        means += share;
        sums.weight += share * rest;
    }
    sums.residual = rows.outcomeSum - means;
    return sums;
}

/// The log masses at shifts near enough for no bound to be felt.
void addUnboundedMasses(const Rows& rows, const Points& shifts, Points& values) {
    Points factors{};
    for (std::size_t k = 0; k < pointCount; ++k) {
        factors[k] = std::exp(shifts[k]);
        values[k] += rows.weightedSum + rows.outcomeSum * shifts[k];
    }
    if (rows.family == LinkedFamily::poisson) {
        for (std::size_t k = 0; k < pointCount; ++k) {
            values[k] -= factors[k] * rows.exponentialSum - rows.outcomeSum;
        }
        return;
    }
    // One logarithm for the product of sixteen rows, which cannot overflow: (1e12)^16.
    constexpr std::size_t rowsPerLogarithm = 16;
    for (std::size_t first = 0; first < rows.exponentials.size(); first += rowsPerLogarithm) {
        const std::size_t end = std::min(first + rowsPerLogarithm, rows.exponentials.size());
        Points products;
        products.fill(1.0);
        for (std::size_t i = first; i < end; ++i) {
            const double exponential = rows.exponentials[i];
            for (std::size_t k = 0; k < pointCount; ++k) {
                products[k] *= 1.0 + exponential * factors[k];
            }
        }
        for (std::size_t k = 0; k < pointCount; ++k) {
            values[k] -= std::log(products[k]);
        }
    }
}

void addMasses(const Rows& rows, const Points& shifts, Points& values) {
    if (rows.isUnfelt(std::max(std::abs(shifts.front()), std::abs(shifts.back())))) {
        addUnboundedMasses(rows, shifts, values);
        return;
    }
    for (std::size_t k = 0; k < pointCount; ++k) {
        for (std::size_t i = 0; i < rows.outcome.size(); ++i) {
            values[k] += rows.massAt(i, shifts[k]).logMass;
        }
    }
}

}  // namespace

InterceptQuadrature::InterceptQuadrature(const LinkedDesign& design, const ClusterCodes& clusters)
    : design_(design) {
    std::size_t first = 0;
    for (const std::size_t size : clusters.sizes()) {
        clusters_.push_back({.first = first, .size = size});
        first += size;
    }
}

double InterceptQuadrature::logLikelihood(std::span<const double> predictor, double sigma) {
    constexpr std::size_t clustersPerTask = 32;
    constexpr std::size_t fewestRowsForThreads = 4000;
    const unsigned threads = predictor.size() < fewestRowsForThreads ? 1 : hardwareThreads();
    parallelFor(
        (clusters_.size() + clustersPerTask - 1) / clustersPerTask, threads, [&](std::size_t task) {
            const std::size_t end = std::min((task + 1) * clustersPerTask, clusters_.size());
            for (std::size_t c = task * clustersPerTask; c < end; ++c) {
                integrate(clusters_[c], predictor, sigma);
            }
        });
    double sum = 0.0;
    for (const Cluster& cluster : clusters_) {
        sum += cluster.logLikelihood;
    }
    return design_.constant() + sum;
}

std::vector<double> InterceptQuadrature::information(std::span<const double> predictor,
                                                     double sigma) const {
    LinkedInformation sums(design_);
    for (const Cluster& cluster : clusters_) {
        const Rows rows(design_, cluster.first, predictor.subspan(cluster.first, cluster.size));
        LinkedInformation::Cluster each{.first = cluster.first};
        for (std::size_t i = 0; i < cluster.size; ++i) {
            each.weights.push_back(rows.massAt(i, sigma * cluster.mode).weight);
            each.loadings.push_back({sigma, 0.0});
        }
        sums.add(each);
    }
    return sums.take();
}

std::vector<InterceptQuadrature::Mode> InterceptQuadrature::modes(double sigma) const {
    std::vector<Mode> result;
    for (const Cluster& cluster : clusters_) {
        result.push_back(
            {.intercept = sigma * cluster.mode, .error = sigma / std::sqrt(cluster.curvature)});
    }
    return result;
}

void InterceptQuadrature::integrate(Cluster& cluster,
                                    std::span<const double> predictor,
                                    double sigma) const {
    constexpr int stepLimit = 60;
    constexpr double smallestStep = 1e-11;
    // A longer one overshoots where rates grow by e with each unit.
    constexpr double longestShift = 4.0;
    const Rows rows(design_, cluster.first, predictor.subspan(cluster.first, cluster.size));
    // In standard deviations u of the intercept the curvature is at least 1, whatever sigma.
    double u = std::isfinite(cluster.mode) ? cluster.mode : 0.0;
    double curvature = 1.0;
    for (int i = 0; i < stepLimit; ++i) {
        const Derivatives sums = derivativesAt(rows, sigma * u);
        curvature = 1.0 + sigma * sigma * sums.weight;
        const double step = (sigma * sums.residual - u) / curvature;
        const double longest = longestShift / sigma;
        u += std::clamp(step, -longest, longest);
        if (!(std::abs(step) >= smallestStep)) {
            break;
        }
    }
    cluster.mode = u;
    cluster.curvature = curvature;
    const double spread = std::numbers::sqrt2 / std::sqrt(curvature);
    Points shifts;
    Points values;
    for (std::size_t k = 0; k < pointCount; ++k) {
        const double at = u + spread * nodes[k];
        shifts[k] = sigma * at;
        values[k] = nodes[k] * nodes[k] - 0.5 * at * at;
    }
    addMasses(rows, shifts, values);
    const double largest = *std::ranges::max_element(values);
    double sum = 0.0;
    for (std::size_t k = 0; k < pointCount; ++k) {
        sum += weights[k] * std::exp(values[k] - largest);
    }
    constexpr double halfLogTwoPi = 0.9189385332046727;
    cluster.logLikelihood = largest + std::log(sum) + std::log(spread) - halfLogTwoPi;
}

}  // namespace sorvane
