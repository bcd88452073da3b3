#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"

namespace sorvane {

/// The standard deviations of an intercept and a slope, and their correlation.
struct SlopeSpread {
    double intercept = 1.0;
    double slope = 1.0;
    double correlation = 0.0;

    /// The part of the slope that the intercept does not tell.
    double slopeAlone() const {
        return slope * std::sqrt(std::max(1.0 - correlation * correlation, 0.0));
    }
};

/// The marginal likelihood of counts or shares with a random intercept and slope, by Laplace's
/// approximation of each cluster's integral. Rows stand cluster by cluster.
class SlopeLaplace {
public:
    /// All must outlive this.
    SlopeLaplace(const LinkedDesign& design,
                 const ClusterCodes& clusters,
                 std::span<const double> slope);

    /// Method     Newton's iteration to each mode, from that of the setting before
    /// Cost       an exponential a row and step; clusters on all threads
    double logLikelihood(std::span<const double> predictor, const SlopeSpread& spread);

    /// A cluster's most likely intercept and slope at the setting last asked for, with the error of
    /// the intercept that the curvature there stands for.
    struct Mode {
        double intercept = 0.0;
        double interceptError = 0.0;
        double slope = 0.0;
    };
    std::vector<Mode> modes(const SlopeSpread& spread) const;

private:
    struct Cluster {
        std::size_t first = 0;
        std::size_t size = 0;
        /// In independent standard deviations.
        std::array<double, 2> mode{};
        /// Of the first entry of the mode.
        double variance = 1.0;
        double logLikelihood = 0.0;
    };

    void approximate(Cluster& cluster,
                     std::span<const double> predictor,
                     const SlopeSpread& spread) const;

    const LinkedDesign& design_;
    std::span<const double> slope_;
    std::vector<Cluster> clusters_;
};

}  // namespace sorvane
