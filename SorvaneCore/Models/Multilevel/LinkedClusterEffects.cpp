#include "SorvaneCore/Models/Multilevel/ClusterDepartures.h"
#include "SorvaneCore/Models/Multilevel/CrossedLaplace.h"
#include "SorvaneCore/Models/Multilevel/InterceptQuadrature.h"
#include "SorvaneCore/Models/Multilevel/LinkedTask.h"
#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"
#include "SorvaneCore/Models/Multilevel/SlopeLaplace.h"

namespace sorvane::MultilevelGLMM {

namespace {

/// The linear predictor of each row at the estimates.
std::vector<double> predictorOf(const MultilevelRows& rows, const MultilevelResult& result) {
    std::vector<double> predictor(rows.count(), result.fixedEffects[0].estimate);
    for (std::size_t j = 0; j < rows.predictors.size(); ++j) {
        for (std::size_t i = 0; i < predictor.size(); ++i) {
            predictor[i] += result.fixedEffects[j + 1].estimate * rows.predictors[j][i];
        }
    }
    return predictor;
}

std::vector<MultilevelClusterEffect> interceptEffects(const LinkedDesign& design,
                                                      const MultilevelRows& rows,
                                                      const MultilevelResult& result) {
    InterceptQuadrature quadrature(design, rows.cluster);
    const double sigma = result.varianceComponents[0].standardDeviation;
    static_cast<void>(quadrature.logLikelihood(predictorOf(rows, result), sigma));
    const std::vector<InterceptQuadrature::Mode> modes = quadrature.modes(sigma);
    std::vector<MultilevelClusterEffect> effects = ClusterDepartures::named(rows);
    for (std::size_t c = 0; c < effects.size(); ++c) {
        effects[c].intercept = modes[c].intercept;
        effects[c].interceptError = modes[c].error;
    }
    return effects;
}

std::vector<MultilevelClusterEffect> slopeEffects(const LinkedDesign& design,
                                                  const MultilevelRows& rows,
                                                  const MultilevelResult& result) {
    const ClusterSpread& spread = *result.spread;
    const std::vector<double> slope = spread.scale.scaled(rows.predictors[*rows.slope]);
    SlopeLaplace laplace(design, rows.cluster, slope);
    static_cast<void>(laplace.logLikelihood(predictorOf(rows, result), spread.factor));
    return ClusterDepartures::of(rows, spread, laplace.posteriors(), 1.0);
}

std::vector<MultilevelClusterEffect> levelEffects(const LinkedDesign& design,
                                                  const MultilevelRows& rows,
                                                  const MultilevelResult& result) {
    CrossedLaplace laplace(design, rows);
    const auto modes =
        laplace.modes(predictorOf(rows, result), result.varianceComponents[0].standardDeviation,
                      result.varianceComponents[1].standardDeviation);
    std::vector<MultilevelClusterEffect> effects = ClusterDepartures::named(rows);
    for (std::size_t level = 0; level < modes.size(); ++level) {
        effects[level].intercept = modes[level].intercept;
        effects[level].interceptError = modes[level].error;
    }
    return modes.empty() ? std::vector<MultilevelClusterEffect>{} : effects;
}

}  // namespace

std::vector<MultilevelClusterEffect> clusterEffects(MultilevelFamily family,
                                                    const MultilevelData& data,
                                                    const MultilevelOptions& options,
                                                    const MultilevelResult& result) {
    const LinkedFamily linked =
        family == MultilevelFamily::binomial ? LinkedFamily::logistic : LinkedFamily::poisson;
    MultilevelOptions fitted = options;
    fitted.randomSlopeName = result.randomSlopeName;
    const std::optional<MultilevelRows> found = MultilevelRows::of(data, fitted);
    const std::size_t components = data.cluster2 || result.randomSlopeName ? 2 : 1;
    if (!found || !LinkedTask::isCoded(*found, linked) ||
        result.varianceComponents.size() != components || (found->slope && !result.spread) ||
        result.fixedEffects.size() != found->fixedCount()) {
        return {};
    }
    const MultilevelRows rows = found->sortedByCluster();
    const std::optional<LinkedDesign> design = LinkedDesign::of(rows, linked);
    if (!design) {
        return {};
    }
    if (data.cluster2) {
        return levelEffects(*design, rows, result);
    }
    return rows.slope ? slopeEffects(*design, rows, result)
                      : interceptEffects(*design, rows, result);
}

}  // namespace sorvane::MultilevelGLMM
