#include "SorvaneCore/Models/Multilevel/ClusterDepartures.h"

#include <cmath>
#include <cstdint>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane::ClusterDepartures {

namespace {

using Loadings = std::array<double, 2>;

double meanOf(const ClusterPosterior& posterior, const Loadings& loadings) {
    return loadings[0] * posterior.mean[0] + loadings[1] * posterior.mean[1];
}

double errorOf(const ClusterPosterior& posterior, const Loadings& loadings) {
    const Loadings whitened = posterior.precision.forward(loadings);
    return std::hypot(whitened[0], whitened[1]);
}

}  // namespace

std::vector<MultilevelClusterEffect> named(const MultilevelRows& rows) {
    const std::vector<std::size_t> sizes = rows.cluster.sizes();
    std::vector<MultilevelClusterEffect> effects;
    for (std::size_t c = 0; c < sizes.size(); ++c) {
        effects.push_back(
            {.cluster = rows.cluster.labels[c], .n = static_cast<std::int64_t>(sizes[c])});
    }
    return effects;
}

std::vector<MultilevelClusterEffect> of(const MultilevelRows& rows,
                                        const ClusterSpread& spread,
                                        std::span<const ClusterPosterior> posteriors,
                                        double deviation) {
    const Loadings atZero = spread.loadings(0.0);
    const double middle = rows.slope ? SampleMoments::mean(rows.predictors[*rows.slope]) : 0.0;
    std::vector<MultilevelClusterEffect> effects = named(rows);
    for (std::size_t c = 0; c < effects.size(); ++c) {
        effects[c].intercept = meanOf(posteriors[c], atZero);
        effects[c].interceptError = deviation * errorOf(posteriors[c], atZero);
        if (rows.slope) {
            effects[c].slope = meanOf(posteriors[c], spread.slopeLoadings());
            effects[c].middle = meanOf(posteriors[c], spread.loadings(middle));
        }
    }
    return effects;
}

}  // namespace sorvane::ClusterDepartures
