#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneCore/Models/Multilevel/CrossedLaplace.h"
#include "SorvaneCore/Models/Multilevel/FixedEffectTable.h"
#include "SorvaneCore/Models/Multilevel/InterceptQuadrature.h"
#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"
#include "SorvaneCore/Models/Multilevel/LinkedMaximizer.h"
#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"
#include "SorvaneCore/Models/Multilevel/SlopeLaplace.h"

namespace sorvane::MultilevelGLMM {

namespace {

using LinkedMaximizer::Fit;
using LinkedMaximizer::LogLikelihood;

enum class Structure { intercept, slope, twoFactors };

/// Levels of two factors together.
constexpr std::size_t mostLevels = 4000;
/// From this many clusters on nothing is said about their number.
constexpr std::int64_t enoughClusters = 10;

std::string minimumOf(LinkedFamily family, Structure structure) {
    const bool isLogistic = family == LinkedFamily::logistic;
    switch (structure) {
        case Structure::intercept:
            return isLogistic ? MultilevelWording::shareMinimum()
                              : MultilevelWording::countMinimum();
        case Structure::slope:
            return isLogistic ? MultilevelWording::shareSlopeMinimum()
                              : MultilevelWording::countSlopeMinimum();
        case Structure::twoFactors:
            return MultilevelWording::factorsMinimum();
    }
    return {};
}

/// One request: what is modelled, and the rows for it.
struct Task {
    LinkedFamily family;
    Structure structure;
    const MultilevelOptions& options;
    std::size_t totalRows = 0;
    /// Cluster by cluster.
    MultilevelRows rows{};
};

bool isCoded(double outcome, LinkedFamily family) {
    return family == LinkedFamily::logistic ? outcome == 0.0 || outcome == 1.0
                                            : outcome >= 0.0 && outcome == std::floor(outcome);
}

MultilevelResult started(const Task& task) {
    const MultilevelRows& rows = task.rows;
    MultilevelResult result{.logLikelihood = std::numeric_limits<double>::quiet_NaN(),
                            .estimator = MultilevelEstimator::ml,
                            .n = static_cast<std::int64_t>(rows.count()),
                            .nClusters = static_cast<std::int64_t>(rows.cluster.count()),
                            .predictorCount = static_cast<std::int64_t>(rows.predictors.size())};
    if (task.structure == Structure::twoFactors) {
        result.nClustersSecondary = static_cast<std::int64_t>(rows.cluster2.count());
    }
    if (task.structure == Structure::slope) {
        result.randomSlopeName = task.options.randomSlopeName;
    }
    return result;
}

void setReadiness(MultilevelResult& result,
                  const Task& task,
                  std::vector<AnalysisReadinessIssue> issues) {
    result.readiness = AnalysisReadiness::of(minimumOf(task.family, task.structure),
                                             static_cast<std::int64_t>(task.totalRows), result.n,
                                             std::move(issues), result.nClusters);
}

/// Why there can be no fit; empty where there may be one.
std::string obstacle(const Task& task) {
    const MultilevelRows& rows = task.rows;
    if (task.structure == Structure::twoFactors) {
        if (std::min(rows.cluster.count(), rows.cluster2.count()) < 2) {
            return MultilevelWording::needsTwoLevels();
        }
        if (rows.cluster.count() + rows.cluster2.count() > mostLevels) {
            return MultilevelWording::tooManyLevels();
        }
    } else if (rows.cluster.count() < 2) {
        return MultilevelWording::needsTwoClusters();
    }
    const auto [least, most] = std::ranges::minmax(rows.outcome);
    if (least < most) {
        return {};
    }
    if (task.family == LinkedFamily::logistic) {
        return MultilevelWording::allOneShare();
    }
    return most == 0.0 ? MultilevelWording::noEvents() : MultilevelWording::noCountVariation();
}

MultilevelResult blocked(const Task& task, std::string why) {
    MultilevelResult result = started(task);
    result.fixedEffects = FixedEffectTable::blank(task.options.fixedNames);
    setReadiness(result, task, {AnalysisReadinessIssue::blocked(std::move(why))});
    return result;
}

/// How the variance parameters of a search are read: coordinates of about a standard error each.
struct SpreadScale {
    double unit = 1.0;

    explicit SpreadScale(std::size_t clusters)
        : unit(1.0 / std::sqrt(static_cast<double>(clusters))) {}

    double sigma(double coordinate) const {
        // Beyond, nothing can be told from no variance or from clusters that share nothing.
        constexpr double longest = 15.0;
        return std::exp(std::clamp(unit * coordinate, -longest, longest));
    }
    double correlation(double coordinate) const { return std::tanh(unit * coordinate); }
    double coordinateOf(double sigma) const { return std::log(sigma) / unit; }
};

/// Fixed effects at the fit without random effects, each variance parameter at each of some values.
std::vector<std::vector<double>> startsAt(std::size_t fixed,
                                          std::size_t sigmas,
                                          const SpreadScale& scale) {
    const std::vector<double> single = {0.25, 0.5, 1.0, 2.0};
    const std::vector<double> several = {0.3, 1.0};
    const std::vector<double>& values = sigmas == 1 ? single : several;
    std::vector<std::vector<double>> starts = {std::vector<double>(fixed, 0.0)};
    for (std::size_t s = 0; s < sigmas; ++s) {
        std::vector<std::vector<double>> longer;
        for (const std::vector<double>& start : starts) {
            for (const double value : values) {
                longer.push_back(start);
                longer.back().push_back(scale.coordinateOf(value));
            }
        }
        starts = std::move(longer);
    }
    return starts;
}

bool isSeparated(const std::vector<MultilevelFixedEffect>& effects) {
    constexpr double extremeEstimate = 8.0;
    constexpr double extremeError = 20.0;
    return std::ranges::any_of(effects, [](const MultilevelFixedEffect& effect) {
        return std::abs(effect.estimate) > extremeEstimate || effect.standardError > extremeError ||
               !std::isfinite(effect.standardError);
    });
}

std::vector<AnalysisReadinessIssue> issuesOf(const Task& task, const MultilevelResult& result) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (!result.converged) {
        caution(task.structure == Structure::intercept ? MultilevelWording::optimizerSignal()
                                                       : MultilevelWording::laplaceSignal());
    }
    const std::int64_t fewest =
        std::min(result.nClusters, result.nClustersSecondary.value_or(result.nClusters));
    if (fewest < enoughClusters) {
        caution(task.structure == Structure::intercept
                    ? MultilevelWording::fewInterceptClusters(fewest)
                : task.structure == Structure::slope ? MultilevelWording::fewSlopeClusters(fewest)
                                                     : MultilevelWording::fewFactorLevels(fewest));
    }
    if (task.family == LinkedFamily::logistic && isSeparated(result.fixedEffects)) {
        caution(MultilevelWording::separation());
    }
    if (task.structure == Structure::slope) {
        caution(MultilevelWording::slopeUsesLaplace());
    } else if (task.structure == Structure::twoFactors) {
        caution(MultilevelWording::factorsUseLaplace());
    }
    return issues;
}

/// The result of a search whose variance components are still to be added.
MultilevelResult searched(const Task& task,
                          const LinkedDesign& design,
                          const Fit& fit,
                          const LogLikelihood& logLikelihood) {
    MultilevelResult result = started(task);
    const std::size_t p = design.fixedCount();
    const auto covariance = LinkedMaximizer::fixedCovariance(fit.point, p, logLikelihood);
    const FixedEffectTable::Estimates estimates{
        .values = design.effects(std::span(fit.point).first(p)),
        .variances = covariance ? design.variances(*covariance)
                                : std::vector<double>(p, std::numeric_limits<double>::quiet_NaN())};
    result.fixedEffects =
        FixedEffectTable::of(task.options.fixedNames, estimates, task.options.confidenceLevel);
    result.logLikelihood = fit.value;
    result.converged = fit.converged;
    result.iterations = fit.iterations;
    setReadiness(result, task, issuesOf(task, result));
    return result;
}

void addComponent(MultilevelResult& result, std::string name, double sigma) {
    result.varianceComponents.push_back(
        {.name = std::move(name), .variance = sigma * sigma, .standardDeviation = sigma});
}

MultilevelResult fitIntercept(const Task& task, const LinkedDesign& design) {
    const std::size_t p = design.fixedCount();
    const SpreadScale scale(task.rows.cluster.count());
    InterceptQuadrature quadrature(design, task.rows.cluster);
    const LogLikelihood logLikelihood = [&](std::span<const double> point) {
        return quadrature.logLikelihood(design.predictor(point.first(p)), scale.sigma(point[p]));
    };
    const Fit fit = LinkedMaximizer::maximize(startsAt(p, 1, scale), logLikelihood);
    MultilevelResult result = searched(task, design, fit, logLikelihood);
    addComponent(result, task.options.clusterLabel + " (Intercept)", scale.sigma(fit.point[p]));
    return result;
}

double rootMeanSquare(const std::vector<double>& values) {
    double sum = 0.0;
    for (const double value : values) {
        sum += value * value;
    }
    return sum > 0.0 ? std::sqrt(sum / static_cast<double>(values.size())) : 1.0;
}

MultilevelResult fitSlope(const Task& task, const LinkedDesign& design) {
    const std::size_t p = design.fixedCount();
    const SpreadScale scale(task.rows.cluster.count());
    const bool correlated = task.options.correlateRandomEffects;
    std::vector<double> slope = task.rows.predictors[*task.rows.slope];
    const double slopeUnit = rootMeanSquare(slope);
    for (double& value : slope) {
        value /= slopeUnit;
    }
    SlopeLaplace laplace(design, task.rows.cluster, slope);
    const auto spread = [&](std::span<const double> point) {
        return SlopeSpread{.intercept = scale.sigma(point[p]),
                           .slope = scale.sigma(point[p + 1]),
                           .correlation = correlated ? scale.correlation(point[p + 2]) : 0.0};
    };
    const LogLikelihood logLikelihood = [&](std::span<const double> point) {
        return laplace.logLikelihood(design.predictor(point.first(p)), spread(point));
    };
    std::vector<std::vector<double>> starts = startsAt(p, 2, scale);
    for (std::vector<double>& start : starts) {
        start.resize(p + (correlated ? 3 : 2), 0.0);
    }
    const Fit fit = LinkedMaximizer::maximize(starts, logLikelihood);
    MultilevelResult result = searched(task, design, fit, logLikelihood);
    const SlopeSpread found = spread(fit.point);
    addComponent(result, task.options.clusterLabel + " (Intercept)", found.intercept);
    addComponent(result, task.options.clusterLabel + " (" + *task.options.randomSlopeName + ")",
                 found.slope / slopeUnit);
    if (correlated) {
        result.randomEffectCorrelation = found.correlation;
    }
    return result;
}

MultilevelResult fitTwoFactors(const Task& task, const LinkedDesign& design) {
    const std::size_t p = design.fixedCount();
    const SpreadScale scaleA(task.rows.cluster.count());
    const SpreadScale scaleB(task.rows.cluster2.count());
    CrossedLaplace laplace(design, task.rows);
    const LogLikelihood logLikelihood = [&](std::span<const double> point) {
        return laplace.logLikelihood(design.predictor(point.first(p)), scaleA.sigma(point[p]),
                                     scaleB.sigma(point[p + 1]));
    };
    std::vector<std::vector<double>> starts = startsAt(p, 2, scaleA);
    for (std::vector<double>& start : starts) {
        start[p + 1] *= scaleA.unit / scaleB.unit;
    }
    const Fit fit = LinkedMaximizer::maximize(starts, logLikelihood);
    MultilevelResult result = searched(task, design, fit, logLikelihood);
    addComponent(result, task.options.clusterLabel + " (Intercept)", scaleA.sigma(fit.point[p]));
    addComponent(result, task.options.cluster2Label + " (Intercept)",
                 scaleB.sigma(fit.point[p + 1]));
    return result;
}

std::optional<MultilevelResult> fit(const MultilevelData& data,
                                    const MultilevelOptions& options,
                                    LinkedFamily family,
                                    Structure structure) {
    const std::optional<MultilevelRows> rows = MultilevelRows::of(data, options);
    const auto coded = [family](double outcome) {
        return isCoded(outcome, family);
    };
    if (!rows || !std::ranges::all_of(rows->outcome, coded)) {
        return std::nullopt;
    }
    const Task task{.family = family,
                    .structure = structure,
                    .options = options,
                    .totalRows = data.outcome.size(),
                    .rows = rows->sortedByCluster()};
    if (std::string why = obstacle(task); !why.empty()) {
        return blocked(task, std::move(why));
    }
    const std::optional<LinkedDesign> design = LinkedDesign::of(task.rows, family);
    if (!design) {
        return blocked(task, MultilevelWording::notConverged());
    }
    switch (structure) {
        case Structure::intercept:
            return fitIntercept(task, *design);
        case Structure::slope:
            return fitSlope(task, *design);
        case Structure::twoFactors:
            return fitTwoFactors(task, *design);
    }
    return std::nullopt;
}

std::optional<MultilevelResult> fitRI(MultilevelData data,
                                      MultilevelOptions options,
                                      LinkedFamily family) {
    data.cluster2.reset();
    options.randomSlopeName.reset();
    return fit(data, options, family, Structure::intercept);
}

std::optional<MultilevelResult> fitRS(MultilevelData data,
                                      const MultilevelOptions& options,
                                      LinkedFamily family) {
    if (options.randomSlopeName.value_or("").empty()) {
        return std::nullopt;
    }
    data.cluster2.reset();
    return fit(data, options, family, Structure::slope);
}

std::optional<MultilevelResult> fitCrossed(const MultilevelData& data,
                                           const MultilevelOptions& options,
                                           LinkedFamily family) {
    return data.cluster2 ? fit(data, options, family, Structure::twoFactors) : std::nullopt;
}

std::optional<MultilevelResult> fitThreeLevel(MultilevelData data,
                                              MultilevelOptions options,
                                              LinkedFamily family) {
    if (!data.cluster || !data.cluster2) {
        return std::nullopt;
    }
    data.cluster2 = MultilevelInputs::innerWithinOuter(*data.cluster, *data.cluster2);
    options.cluster2Label = options.clusterLabel + ":" + options.cluster2Label;
    return fitCrossed(data, options, family);
}

}  // namespace

std::optional<MultilevelResult> fitLogisticRI(const MultilevelData& data,
                                              const MultilevelOptions& options) {
    return fitRI(data, options, LinkedFamily::logistic);
}

std::optional<MultilevelResult> fitPoissonRI(const MultilevelData& data,
                                             const MultilevelOptions& options) {
    return fitRI(data, options, LinkedFamily::poisson);
}

std::optional<MultilevelResult> fitLogisticRS(const MultilevelData& data,
                                              const MultilevelOptions& options) {
    return fitRS(data, options, LinkedFamily::logistic);
}

std::optional<MultilevelResult> fitPoissonRS(const MultilevelData& data,
                                             const MultilevelOptions& options) {
    return fitRS(data, options, LinkedFamily::poisson);
}

std::optional<MultilevelResult> fitLogisticCrossed(const MultilevelData& data,
                                                   const MultilevelOptions& options) {
    return fitCrossed(data, options, LinkedFamily::logistic);
}

std::optional<MultilevelResult> fitPoissonCrossed(const MultilevelData& data,
                                                  const MultilevelOptions& options) {
    return fitCrossed(data, options, LinkedFamily::poisson);
}

std::optional<MultilevelResult> fitLogisticThreeLevel(const MultilevelData& data,
                                                      const MultilevelOptions& options) {
    return fitThreeLevel(data, options, LinkedFamily::logistic);
}

std::optional<MultilevelResult> fitPoissonThreeLevel(const MultilevelData& data,
                                                     const MultilevelOptions& options) {
    return fitThreeLevel(data, options, LinkedFamily::poisson);
}

}  // namespace sorvane::MultilevelGLMM
