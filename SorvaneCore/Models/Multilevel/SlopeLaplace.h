#pragma once

#include <array>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/ClusterDepartures.h"
#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"
#include "SorvaneCore/Models/Multilevel/RandomCovariance.h"

namespace sorvane {

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

    /// What is most likely of the clusters at the setting last asked for, and the curvature there.
    std::vector<ClusterPosterior> posteriors() const;

private:
    struct Cluster {
        std::size_t first = 0;
        std::size_t size = 0;
        ClusterPosterior posterior{};
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
