#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"
#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"

namespace sorvane {

namespace {

constexpr double confidenceLevel = 0.95;

MultilevelOptions optionsOf(const MultilevelChoice& choice) {
    MultilevelOptions options{.fixedNames = choice.predictors,
                              .estimator = choice.estimator,
                              .confidenceLevel = confidenceLevel,
                              .clusterLabel = choice.cluster,
                              .cluster2Label = choice.secondLabel(),
                              .correlateRandomEffects = choice.correlated,
                              .dfMethod = choice.dfMethod};
    if (!choice.slope.empty()) {
        options.randomSlopeName = choice.slope;
    }
    return options;
}

/// The groupings of three levels already stand as two factors.
std::optional<MultilevelResult> fit(const MultilevelChoice& choice,
                                    const MultilevelData& data,
                                    const MultilevelOptions& options) {
    const bool isLogistic = choice.family == MultilevelFamily::binomial;
    if (choice.family == MultilevelFamily::gaussian) {
        return MultilevelModel::fit(data, options);
    }
    if (choice.hasTwoFactors()) {
        return isLogistic ? MultilevelGLMM::fitLogisticCrossed(data, options)
                          : MultilevelGLMM::fitPoissonCrossed(data, options);
    }
    if (options.randomSlopeName) {
        return isLogistic ? MultilevelGLMM::fitLogisticRS(data, options)
                          : MultilevelGLMM::fitPoissonRS(data, options);
    }
    return isLogistic ? MultilevelGLMM::fitLogisticRI(data, options)
                      : MultilevelGLMM::fitPoissonRI(data, options);
}

std::vector<MultilevelClusterEffect> effectsOf(const MultilevelChoice& choice,
                                               const MultilevelData& data,
                                               const MultilevelOptions& options,
                                               const MultilevelResult& result) {
    return choice.family == MultilevelFamily::gaussian
               ? MultilevelModel::clusterEffects(data, options, result)
               : MultilevelGLMM::clusterEffects(choice.family, data, options, result);
}

/// Those of the second factor: the same model with the factors in the other order.
std::vector<MultilevelClusterEffect> secondEffectsOf(const MultilevelChoice& choice,
                                                     MultilevelData data,
                                                     MultilevelOptions options,
                                                     MultilevelResult result) {
    std::swap(data.cluster, data.cluster2);
    std::swap(options.clusterLabel, options.cluster2Label);
    std::swap(result.varianceComponents[0], result.varianceComponents[1]);
    return effectsOf(choice, data, options, result);
}

std::optional<ClusterLines> linesOf(const MultilevelData& data,
                                    const MultilevelOptions& options,
                                    const MultilevelResult& result) {
    const std::optional<MultilevelRows> rows = MultilevelRows::of(data, options);
    if (!rows || !rows->slope) {
        return std::nullopt;
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    ClusterLines lines{.ranges = std::vector<ClusterLines::Range>(
                           rows->cluster.count(), {.minimum = infinity, .maximum = -infinity})};
    const std::vector<double>& slope = rows->predictors[*rows->slope];
    for (std::size_t i = 0; i < slope.size(); ++i) {
        ClusterLines::Range& range = lines.ranges[rows->cluster.codes[i]];
        range.minimum = std::min(range.minimum, slope[i]);
        range.maximum = std::max(range.maximum, slope[i]);
    }
    for (std::size_t j = 0; j < rows->predictors.size(); ++j) {
        if (j == *rows->slope) {
            continue;
        }
        double mean = 0.0;
        for (const double value : rows->predictors[j]) {
            mean += value / static_cast<double>(slope.size());
        }
        lines.others += result.fixedEffects[j + 1].estimate * mean;
    }
    return lines;
}

}  // namespace

MultilevelRun MultilevelColumns::fitted() const {
    MultilevelRun run{.choice = choice};
    MultilevelData columns = data;
    if (choice.isThreeLevel()) {
        columns.cluster2 = MultilevelInputs::innerWithinOuter(*data.cluster, *data.cluster2);
    }
    const MultilevelOptions options = optionsOf(choice);
    run.result = fit(choice, columns, options);
    if (!run.result || run.result->varianceComponents.empty()) {
        return run;
    }
    run.effects = effectsOf(choice, columns, options, *run.result);
    if (choice.hasTwoFactors()) {
        run.secondEffects = secondEffectsOf(choice, columns, options, *run.result);
    }
    if (!choice.slope.empty()) {
        run.lines = linesOf(columns, options, *run.result);
    }
    return run;
}

}  // namespace sorvane
