#include "SorvaneCore/Models/Multilevel/MultilevelOrdinal.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/Multilevel/ClusterDepartures.h"
#include "SorvaneCore/Models/Multilevel/FixedEffectTable.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"
#include "SorvaneCore/Models/Multilevel/OrdinalQuadrature.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/OrdinalLikelihood.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"

namespace sorvane::MultilevelOrdinal {

namespace {

using Numbers = std::vector<double>;
constexpr double logisticVariance = std::numbers::pi * std::numbers::pi / 3.0;

/// The complete rows cluster by cluster, predictors in standard deviations from their means.
struct Design {
    MultilevelRows rows{};
    /// The distinct outcomes, ascending, how often each occurs, and the position of each row's.
    Numbers levels{};
    std::vector<std::int64_t> levelCounts{};
    std::vector<std::uint32_t> codes{};
    Numbers means{};
    Numbers deviations{};
    /// Row-major: a one and the predictors; and the predictors alone.
    Numbers withOnes{};
    Numbers predictors{};
    std::vector<std::size_t> sizes{};
    bool hasFullRank = false;

    std::size_t width() const { return means.size(); }
    std::size_t parameterCount() const { return levels.size() - 1 + width() + 1; }
    OrdinalClusters clusters() const {
        return {.levels = codes,
                .levelCount = levels.size(),
                .predictors = predictors,
                .width = width(),
                .sizes = sizes};
    }
};

void setLevels(Design& design) {
    design.levels = design.rows.outcome;
    std::ranges::sort(design.levels);
    design.levels.erase(std::unique(design.levels.begin(), design.levels.end()),
                        design.levels.end());
    design.levelCounts.assign(design.levels.size(), 0);
    for (const double outcome : design.rows.outcome) {
        const auto place = std::ranges::lower_bound(design.levels, outcome);
        design.codes.push_back(static_cast<std::uint32_t>(place - design.levels.begin()));
        ++design.levelCounts[design.codes.back()];
    }
}

void setPredictors(Design& design) {
    const std::size_t n = design.rows.count();
    const std::size_t width = design.rows.predictors.size();
    design.withOnes.assign(n * (width + 1), 1.0);
    design.predictors.assign(n * width, 0.0);
    for (std::size_t j = 0; j < width; ++j) {
        const Numbers& values = design.rows.predictors[j];
        const double mean = SampleMoments::mean(values);
        const double deviation =
            std::sqrt(SampleMoments::sumOfSquares(values, mean) / static_cast<double>(n));
        design.means.push_back(mean);
        design.deviations.push_back(deviation > 0.0 ? deviation : 1.0);
        for (std::size_t i = 0; i < n; ++i) {
            const double scaled = (values[i] - mean) / design.deviations.back();
            design.predictors[i * width + j] = scaled;
            design.withOnes[i * (width + 1) + j + 1] = scaled;
        }
    }
    design.hasFullRank =
        TallLeastSquares::reduceRows(design.withOnes, n, width + 1, design.rows.outcome)
            .has_value();
}

Design designOf(const MultilevelRows& rows) {
    Design design{.rows = rows.sortedByCluster(), .sizes = rows.cluster.sizes()};
    setLevels(design);
    setPredictors(design);
    return design;
}

/// The rows of a model with one factor and no slope.
std::optional<MultilevelRows> nestedRows(MultilevelData data, MultilevelOptions options) {
    data.cluster2.reset();
    options.randomSlopeName.reset();
    return MultilevelRows::of(data, options);
}

IRLS::Limits limits() {
    return {.maxIterations = 100, .tolerance = 1e-8};
}

bool provesNothing(std::span<const double> /*step*/) {
    return false;
}

/// Thresholds and slopes without clusters; absent where there is no maximum.
std::optional<Numbers> withoutClusters(const Design& design) {
    const OrdinalLikelihood likelihood(design.withOnes, design.width() + 1, design.codes,
                                       design.levels.size());
    Numbers start;
    std::int64_t upTo = 0;
    for (std::size_t j = 0; j + 1 < design.levels.size(); ++j) {
        upTo += design.levelCounts[j];
        const double share = static_cast<double>(upTo) / static_cast<double>(design.rows.count());
        start.push_back(std::log(share / (1.0 - share)));
    }
    start.resize(likelihood.parameterCount(), 0.0);
    OptimizerResult fit = IRLS::dampedNewton(
        start, limits(), [&](std::span<const double> at) { return likelihood.at(at); },
        provesNothing);
    return fit.converged ? std::optional(std::move(fit.parameters)) : std::nullopt;
}

/// Turns the curvature in the spread about where the likelihood bends upward in it, as it does near
/// a spread of zero below the likeliest one, so that Newton's step leads uphill.
void bendDown(IRLS::Evaluation& evaluation) {
    const std::size_t count = evaluation.gradient.size();
    const std::size_t others = count - 1;
    Numbers block;
    Numbers mixed;
    for (std::size_t i = 0; i < others; ++i) {
        const double* row = &evaluation.negativeHessian[i * count];
        block.insert(block.end(), row, row + others);
        mixed.push_back(row[others]);
    }
    const auto inverse = LinearAlgebra::invert(block, others);
    if (!inverse) {
        return;
    }
    const Numbers solved = LinearAlgebra::multiply(*inverse, others, others, mixed, 1);
    double& curvature = evaluation.negativeHessian.back();
    const double own =
        curvature - std::inner_product(mixed.begin(), mixed.end(), solved.begin(), 0.0);
    if (own < 0.0) {
        curvature -= 2.0 * own;
    }
}

bool isMaximum(const OptimizerResult& fit) {
    const std::size_t count = fit.parameters.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!(fit.inverseNegativeHessian[i * count + i] > 0.0)) {
            return false;
        }
    }
    return true;
}

/// From the spread that fits best of several; the next best where Newton's iteration goes astray.
std::optional<OptimizerResult> maximize(const Design& design, const Numbers& fixed) {
    const OrdinalClusters clusters = design.clusters();
    OrdinalQuadrature quadrature(clusters);
    const auto evaluate = [&](std::span<const double> at) {
        IRLS::Evaluation evaluation = quadrature.at(at);
        if (evaluation.isFinite()) {
            bendDown(evaluation);
        }
        return evaluation;
    };
    std::vector<std::pair<double, Numbers>> starts;
    for (const double sigma : {0.25, 0.5, 1.0, 2.0}) {
        // Within clusters effects are larger than over all, as the spread comes on top.
        const double growth = std::sqrt(1.0 + sigma * sigma / logisticVariance);
        Numbers start = fixed;
        for (double& parameter : start) {
            parameter *= growth;
        }
        start.push_back(sigma);
        starts.emplace_back(-evaluate(start).objective, std::move(start));
    }
    std::ranges::stable_sort(starts, {}, &std::pair<double, Numbers>::first);
    for (const auto& [value, start] : starts) {
        OptimizerResult fit = IRLS::dampedNewton(start, limits(), evaluate, provesNothing);
        if (fit.converged && isMaximum(fit)) {
            return fit;
        }
    }
    return std::nullopt;
}

/// Estimates and variances in the predictors' own units, the spread left out.
FixedEffectTable::Estimates inOwnUnits(const Design& design, const OptimizerResult& fit) {
    const std::size_t count = fit.parameters.size();
    const std::size_t thresholds = design.levels.size() - 1;
    FixedEffectTable::Estimates result;
    for (std::size_t k = 0; k + 1 < count; ++k) {
        Numbers weights(count, 0.0);
        weights[k] = k < thresholds ? 1.0 : 1.0 / design.deviations[k - thresholds];
        for (std::size_t j = 0; k < thresholds && j < design.width(); ++j) {
            weights[thresholds + j] = design.means[j] / design.deviations[j];
        }
        double estimate = 0.0;
        double variance = 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            estimate += weights[i] * fit.parameters[i];
            for (std::size_t j = 0; j < count; ++j) {
                variance += weights[i] * weights[j] * fit.inverseNegativeHessian[i * count + j];
            }
        }
        result.values.push_back(estimate);
        result.variances.push_back(variance);
    }
    return result;
}

void addEstimates(MultilevelOrdinalResult& result,
                  const Design& design,
                  const OptimizerResult& fit,
                  const MultilevelOptions& options) {
    const std::size_t thresholds = design.levels.size() - 1;
    const FixedEffectTable::Estimates all = inOwnUnits(design, fit);
    for (std::size_t k = 0; k < thresholds; ++k) {
        result.thresholds.push_back({.name = result.levels[k] + "|" + result.levels[k + 1],
                                     .estimate = all.values[k],
                                     .standardError = std::sqrt(std::max(all.variances[k], 0.0))});
    }
    // The table begins with an intercept, for which the last threshold stands in.
    const auto from = static_cast<std::ptrdiff_t>(thresholds) - 1;
    result.fixedEffects = FixedEffectTable::of(
        options.fixedNames,
        {.values = Numbers(all.values.begin() + from, all.values.end()),
         .variances = Numbers(all.variances.begin() + from, all.variances.end())},
        options.confidenceLevel);
    result.fixedEffects.erase(result.fixedEffects.begin());
    for (const MultilevelFixedEffect& effect : result.fixedEffects) {
        result.oddsRatios.push_back(std::exp(effect.estimate));
        result.oddsRatioLowerBounds.push_back(std::exp(effect.lowerBound));
        result.oddsRatioUpperBounds.push_back(std::exp(effect.upperBound));
    }
    const double sigma = std::abs(fit.parameters.back());
    result.varianceComponents.push_back({.name = options.clusterLabel + " (Intercept)",
                                         .variance = sigma * sigma,
                                         .standardDeviation = sigma});
    result.latentICC = sigma * sigma / (sigma * sigma + logisticVariance);
    const auto count = static_cast<double>(fit.parameters.size());
    result.logLikelihood = fit.objective;
    result.aic = 2.0 * (count - fit.objective);
    result.bic = count * std::log(static_cast<double>(result.n)) - 2.0 * fit.objective;
    result.converged = true;
    result.iterations = fit.iterations;
}

/// Fills in the estimates, or tells what stands in the way.
std::optional<std::string> fitted(MultilevelOrdinalResult& result,
                                  const Design& design,
                                  const MultilevelOptions& options) {
    constexpr std::size_t fewestLevels = 3;
    if (design.rows.cluster.count() < 2) {
        return MultilevelWording::needsTwoClusters();
    }
    if (design.levels.size() < fewestLevels) {
        return MultilevelWording::tooFewLevels(static_cast<std::int64_t>(design.levels.size()));
    }
    if (design.rows.count() <= design.parameterCount()) {
        return MultilevelWording::tooFewCases(result.n,
                                              static_cast<std::int64_t>(design.parameterCount()));
    }
    const std::optional<Numbers> fixed =
        design.hasFullRank ? withoutClusters(design) : std::nullopt;
    if (!fixed) {
        return MultilevelWording::levelsSeparated();
    }
    const std::optional<OptimizerResult> fit = maximize(design, *fixed);
    if (!fit) {
        return MultilevelWording::notConverged();
    }
    addEstimates(result, design, *fit, options);
    return std::nullopt;
}

std::vector<AnalysisReadinessIssue> cautions(const MultilevelOrdinalResult& result,
                                             const Design& design) {
    constexpr std::int64_t enoughClusters = 10;
    constexpr std::int64_t enoughCasesPerLevel = 10;
    constexpr double nearZero = 1e-3;
    std::vector<AnalysisReadinessIssue> issues;
    const auto cautionIf = [&issues](bool holds, std::string message) {
        if (holds) {
            issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
        }
    };
    const std::int64_t singletons = std::ranges::count(design.sizes, 1U);
    const std::int64_t sparsest = std::ranges::min(result.levelCounts);
    cautionIf(result.nClusters < enoughClusters,
              MultilevelWording::fewInterceptClusters(result.nClusters));
    cautionIf(singletons > 0, MultilevelWording::singletons(singletons));
    cautionIf(sparsest < enoughCasesPerLevel, MultilevelWording::sparseLevel(sparsest));
    cautionIf(result.varianceComponents.front().standardDeviation < nearZero,
              MultilevelWording::interceptNearZero());
    cautionIf(true, MultilevelWording::proportionalOddsAssumed());
    return issues;
}

/// Thresholds and slopes as the design's standardized predictors have them.
Numbers standardizedParameters(const Design& design, const MultilevelOrdinalResult& result) {
    Numbers parameters;
    for (const MultilevelOrdinalThreshold& threshold : result.thresholds) {
        parameters.push_back(threshold.estimate);
    }
    for (std::size_t j = 0; j < design.width(); ++j) {
        const double slope = result.fixedEffects[j].estimate;
        for (std::size_t k = 0; k < result.thresholds.size(); ++k) {
            parameters[k] -= slope * design.means[j];
        }
        parameters.push_back(slope * design.deviations[j]);
    }
    return parameters;
}

}  // namespace

std::optional<MultilevelOrdinalResult> fit(const MultilevelData& data,
                                           const MultilevelOptions& options) {
    const std::optional<MultilevelRows> rows = nestedRows(data, options);
    if (!rows) {
        return std::nullopt;
    }
    const Design design = designOf(*rows);
    MultilevelOrdinalResult result{
        .levelCounts = design.levelCounts,
        .n = static_cast<std::int64_t>(rows->count()),
        .nClusters = static_cast<std::int64_t>(rows->cluster.count()),
        .predictorCount = static_cast<std::int64_t>(rows->predictors.size())};
    for (const double level : design.levels) {
        result.levels.push_back(NumberText::shortest(level));
    }
    const std::optional<std::string> obstacle = fitted(result, design, options);
    std::vector<AnalysisReadinessIssue> issues;
    if (obstacle) {
        result.fixedEffects = FixedEffectTable::blank(options.fixedNames);
        result.fixedEffects.erase(result.fixedEffects.begin());
        issues.push_back(AnalysisReadinessIssue::blocked(*obstacle));
    } else {
        issues = cautions(result, design);
    }
    const auto total = static_cast<std::int64_t>(data.outcome.size());
    if (total > result.n) {
        issues.push_back(
            AnalysisReadinessIssue::caution(MultilevelWording::rowsDropped(total - result.n)));
    }
    result.readiness = AnalysisReadiness::of(MultilevelWording::ordinalMinimum(), total, result.n,
                                             std::move(issues), result.nClusters);
    return result;
}

std::vector<MultilevelClusterEffect> clusterEffects(const MultilevelData& data,
                                                    const MultilevelOptions& options,
                                                    const MultilevelOrdinalResult& result) {
    const std::optional<MultilevelRows> rows = nestedRows(data, options);
    if (!rows || result.varianceComponents.empty() ||
        result.fixedEffects.size() != rows->predictors.size()) {
        return {};
    }
    const Design design = designOf(*rows);
    if (design.levelCounts != result.levelCounts) {
        return {};
    }
    Numbers parameters = standardizedParameters(design, result);
    const double sigma = result.varianceComponents.front().standardDeviation;
    parameters.push_back(sigma);
    const OrdinalClusters clusters = design.clusters();
    OrdinalQuadrature quadrature(clusters);
    static_cast<void>(quadrature.at(parameters));
    const std::vector<OrdinalQuadrature::Mode> modes = quadrature.modes(sigma);
    std::vector<MultilevelClusterEffect> effects = ClusterDepartures::named(*rows);
    for (std::size_t c = 0; c < effects.size(); ++c) {
        effects[c].intercept = modes[c].intercept;
        effects[c].interceptError = modes[c].error;
    }
    return effects;
}

std::string summary(const MultilevelOrdinalResult& result) {
    if (result.varianceComponents.empty()) {
        return "";
    }
    return "A proportional-odds model with a random intercept was fitted to " +
           NumberText::integer(result.n) + " cases in " + NumberText::integer(result.nClusters) +
           " clusters; the clusters' intercepts had a standard deviation of " +
           NumberText::fixed(result.varianceComponents.front().standardDeviation, 3) +
           " on the log-odds scale (latent intraclass correlation " +
           NumberText::fixed(*result.latentICC, 3) + ").";
}

}  // namespace sorvane::MultilevelOrdinal
