#pragma once

#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"

namespace sorvane {

/// The marginal likelihood of counts or shares with a random intercept, by adaptive quadrature.
///
/// Rows stand cluster by cluster. A search asks for settings next to each other, so each cluster's
/// mode starts from that of the setting before.
class InterceptQuadrature {
public:
    /// Both must outlive this.
    InterceptQuadrature(const LinkedDesign& design, const ClusterCodes& clusters);

    /// Input      the linear predictor of each row; sigma > 0
    /// Method     15 Gauss-Hermite points about the mode of each cluster, at its curvature
    /// Cost       an exponential a row, a division a row and Newton step; clusters on all threads
    double logLikelihood(std::span<const double> predictor, double sigma);

    /// See `LinkedInformation`, at the setting last asked for.
    std::vector<double> information(std::span<const double> predictor, double sigma) const;

    /// A cluster's most likely intercept at the setting last asked for, with the error that the
    /// curvature there stands for.
    struct Mode {
        double intercept = 0.0;
        double error = 0.0;
    };
    std::vector<Mode> modes(double sigma) const;

private:
    struct Cluster {
        std::size_t first = 0;
        std::size_t size = 0;
        double outcomeSum = 0.0;
        /// In standard deviations.
        double mode = 0.0;
        double curvature = 1.0;
        double logLikelihood = 0.0;
    };

    void integrate(Cluster& cluster, std::span<const double> predictor, double sigma) const;

    const LinkedDesign& design_;
    std::vector<Cluster> clusters_;
};

}  // namespace sorvane
