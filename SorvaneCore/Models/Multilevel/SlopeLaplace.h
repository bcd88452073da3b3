#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"

namespace sorvane {

/// The factor (intercept, 0; along, alone) of the covariance of an intercept and a slope: part of
/// the slope goes along with the intercept.
struct SlopeSpread {
    double intercept = 1.0;
    double along = 0.0;
    double alone = 1.0;

    /// Of standard deviations and their correlation.
    static SlopeSpread of(double intercept, double slope, double correlation) {
        const double rest = std::sqrt(std::max(1.0 - correlation * correlation, 0.0));
        return {.intercept = intercept, .along = slope * correlation, .alone = slope * rest};
    }
    /// What each of two independent effects of variance 1 adds to a predictor.
    std::array<double, 2> loadings(double slope) const {
        return {intercept + slope * along, slope * alone};
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

    /// See `LinkedInformation`, at the setting last asked for.
    std::vector<double> information(std::span<const double> predictor,
                                    const SlopeSpread& spread) const;

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
