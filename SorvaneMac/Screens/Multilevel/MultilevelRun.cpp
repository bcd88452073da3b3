#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"
#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/SlopeScale.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelCharts.h"

namespace sorvane {

namespace {

using MultilevelCharts::Departures;
using MultilevelCharts::Lines;

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
    const bool isLogistic = choice.isLogistic();
    if (choice.isGaussian()) {
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
    return choice.isGaussian()
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

/// Input      rows with a slope
Lines linesOf(const MultilevelRows& rows, const MultilevelResult& result) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Lines lines{.ranges = std::vector<Lines::Range>(rows.cluster.count(),
                                                    {.minimum = infinity, .maximum = -infinity})};
    const std::vector<double>& slope = rows.predictors[*rows.slope];
    for (std::size_t i = 0; i < slope.size(); ++i) {
        Lines::Range& range = lines.ranges[rows.cluster.codes[i]];
        range.minimum = std::min(range.minimum, slope[i]);
        range.maximum = std::max(range.maximum, slope[i]);
    }
    lines.mean = SampleMoments::mean(slope);
    lines.level = result.fixedEffects[0].estimate;
    for (std::size_t j = 0; j < rows.predictors.size(); ++j) {
        lines.level +=
            result.fixedEffects[j + 1].estimate * SampleMoments::mean(rows.predictors[j]);
    }
    return lines;
}

double slopeSquareOf(const MultilevelRows& rows, bool isAboutMean) {
    const SlopeUnits units = SlopeUnits::of(rows.predictors[*rows.slope]);
    const double mean = isAboutMean ? 0.0 : units.mean;
    return units.deviation * units.deviation + mean * mean;
}

bool isZeroFarFrom(const std::vector<double>& values) {
    const auto [least, most] = std::ranges::minmax_element(values);
    return std::max(*least, -*most) > (*most - *least) / 2.0;
}

MultilevelRun::Sizes sizesOf(const std::vector<MultilevelClusterEffect>& effects) {
    if (effects.empty()) {
        return {};
    }
    const auto [least, most] =
        std::ranges::minmax_element(effects, {}, &MultilevelClusterEffect::n);
    return {.least = least->n, .most = most->n};
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
    Departures departures{.clusters = effectsOf(choice, columns, options, *run.result)};
    if (choice.hasTwoFactors()) {
        departures.second = secondEffectsOf(choice, columns, options, *run.result);
    }
    const std::optional<MultilevelRows> rows = MultilevelRows::of(columns, options);
    if (rows && rows->slope) {
        departures.lines = linesOf(*rows, *run.result);
        run.slopeSquare = slopeSquareOf(*rows, choice.correlated);
        run.isZeroFar = isZeroFarFrom(rows->predictors[*rows->slope]);
    }
    if (rows) {
        for (const std::vector<double>& predictor : rows->predictors) {
            run.predictorDeviations.push_back(SlopeUnits::of(predictor).deviation);
        }
    }
    run.sizes = sizesOf(departures.clusters);
    run.secondSizes = sizesOf(departures.second);
    run.charts = MultilevelCharts::of(choice, *run.result, departures);
    return run;
}

}  // namespace sorvane
