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
#include "SorvaneCore/Models/Multilevel/LinkedTask.h"
#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"
#include "SorvaneCore/Models/Multilevel/SlopeFactor.h"
#include "SorvaneCore/Models/Multilevel/SlopeLaplace.h"
#include "SorvaneCore/Models/Multilevel/SlopeScale.h"

namespace sorvane::MultilevelGLMM {

namespace {

using LinkedMaximizer::Fit;
using LinkedMaximizer::Likelihood;

/// How the variance parameters of a search are read: coordinates of about a standard error each.
struct SpreadScale {
    double unit = 1.0;

    explicit SpreadScale(std::size_t clusters)
        : unit(1.0 / std::sqrt(static_cast<double>(clusters))) {}

    double sigma(double coordinate) const {
        return std::exp(std::clamp(unit * coordinate, -longest, longest));
    }
    double coordinateOf(double sigma) const { return std::log(sigma) / unit; }
    /// That of the smallest standard deviation.
    double least() const { return -longest / unit; }

private:
    /// Beyond, nothing can be told from no variance or from clusters that share nothing.
    static constexpr double longest = 15.0;
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

/// Moves a fit that is near the bound of a variance onto it: where some coordinates at the values
/// that stand for no variance make it no less likely.
void moveToBound(Fit& fit,
                 const Likelihood& likelihood,
                 const std::vector<std::pair<std::size_t, double>>& bound) {
    std::vector<double> point = fit.point;
    for (const auto& [coordinate, value] : bound) {
        point[coordinate] = value;
    }
    ++fit.iterations;
    if (const double value = likelihood.log(point); value >= fit.value) {
        fit.value = value;
        fit.point = std::move(point);
    }
}

/// The result of a search whose variance components are still to be added.
MultilevelResult searched(const LinkedTask& task,
                          const LinkedDesign& design,
                          const Fit& fit,
                          const Likelihood& likelihood) {
    MultilevelResult result = task.started();
    const std::size_t p = design.fixedCount();
    const auto covariance = LinkedMaximizer::fixedCovariance(fit.point, likelihood);
    const FixedEffectTable::Estimates estimates{
        .values = design.effects(std::span(fit.point).first(p)),
        .variances = covariance ? design.variances(*covariance)
                                : std::vector<double>(p, std::numeric_limits<double>::quiet_NaN())};
    result.fixedEffects =
        FixedEffectTable::of(task.options.fixedNames, estimates, task.options.confidenceLevel);
    result.logLikelihood = fit.value;
    result.converged = fit.converged;
    result.iterations = fit.iterations;
    task.setReadiness(result);
    return result;
}

void addComponent(MultilevelResult& result, std::string name, double sigma) {
    result.varianceComponents.push_back(
        {.name = std::move(name), .variance = sigma * sigma, .standardDeviation = sigma});
}

/// A marginal likelihood by the fixed effects of its design and what it reads off the rest of a
/// point.
template <typename Marginal, typename SpreadOf>
Likelihood likelihoodOf(const LinkedDesign& design, Marginal& marginal, SpreadOf spreadOf) {
    const std::size_t p = design.fixedCount();
    const auto log = [&design, &marginal, spreadOf, p](std::span<const double> point) {
        return marginal.logLikelihood(design.predictor(point.first(p)), spreadOf(point.subspan(p)));
    };
    return {.fixed = p,
            .log = log,
            .information = [&design, &marginal, spreadOf, p, log](std::span<const double> point) {
                // Moves the clusters to their modes at this point.
                static_cast<void>(log(point));
                return marginal.information(design.predictor(point.first(p)),
                                            spreadOf(point.subspan(p)));
            }};
}

MultilevelResult fitIntercept(const LinkedTask& task, const LinkedDesign& design) {
    const std::size_t p = design.fixedCount();
    const SpreadScale scale(task.rows.cluster.count());
    InterceptQuadrature quadrature(design, task.rows.cluster);
    const Likelihood likelihood = likelihoodOf(
        design, quadrature, [&](std::span<const double> point) { return scale.sigma(point[0]); });
    Fit fit = LinkedMaximizer::maximize(startsAt(p, 1, scale), likelihood);
    moveToBound(fit, likelihood, {{p, scale.least()}});
    MultilevelResult result = searched(task, design, fit, likelihood);
    addComponent(result, task.options.clusterLabel + " (Intercept)", scale.sigma(fit.point[p]));
    return result;
}

/// An independent slope keeps its zero, and so its unit is its root mean square.
SlopeUnits unitsOf(const std::vector<double>& slope, bool correlated) {
    SlopeUnits units = SlopeUnits::of(slope);
    if (!correlated) {
        const double square = units.deviation * units.deviation + units.mean * units.mean;
        units.deviation = square > 0.0 ? std::sqrt(square) : 1.0;
    }
    return units;
}

/// The same with the entries of a factor for logarithms of standard deviations, as a correlation
/// next to 1 lies infinitely far in its own coordinate.
std::vector<std::vector<double>> correlatedStarts(std::size_t fixed, const SpreadScale& scale) {
    std::vector<std::vector<double>> starts = startsAt(fixed, 2, scale);
    for (std::vector<double>& start : starts) {
        const double intercept = scale.sigma(start[fixed]) / scale.unit;
        const double slope = scale.sigma(start[fixed + 1]) / scale.unit;
        start.resize(fixed);
        start.insert(start.end(), {intercept, 0.0, slope});
    }
    return starts;
}

void setSlopeVariances(MultilevelResult& result,
                       const MultilevelOptions& options,
                       const RandomCovariance& g) {
    constexpr double smallestRoot = 1e-14;
    const double intercept = std::sqrt(g[0]);
    const double slope = std::sqrt(g[3]);
    addComponent(result, options.clusterLabel + " (Intercept)", intercept);
    addComponent(result, options.clusterLabel + " (" + *options.randomSlopeName + ")", slope);
    if (options.correlateRandomEffects && intercept * slope > smallestRoot) {
        result.randomEffectCorrelation = std::clamp(g[1] / (intercept * slope), -1.0, 1.0);
    }
}

/// Starts of independent effects whose intercepts, at a zero far from all values, vary by as much as
/// the slopes do on the way there; the slope is in units of its root mean square.
std::vector<std::vector<double>> ridgeStarts(std::size_t fixed,
                                             const SlopeUnits& units,
                                             const SpreadScale& scale) {
    std::vector<std::vector<double>> starts;
    for (const double deviation : {0.3, 1.0}) {
        std::vector<double> start(fixed, 0.0);
        start.push_back(scale.coordinateOf(deviation * units.distance()));
        start.push_back(scale.coordinateOf(deviation * std::hypot(units.distance(), 1.0)));
        starts.push_back(std::move(start));
    }
    return starts;
}

MultilevelResult fitSlope(const LinkedTask& task, const LinkedDesign& design) {
    const std::size_t p = design.fixedCount();
    const SpreadScale scale(task.rows.cluster.count());
    const bool correlated = task.options.correlateRandomEffects;
    const std::vector<double>& slope = task.rows.predictors[*task.rows.slope];
    const SlopeScale slopeScale(unitsOf(slope, correlated), correlated);
    const std::vector<double> scaledSlope = slopeScale.scaled(slope);
    SlopeLaplace laplace(design, task.rows.cluster, scaledSlope);
    const auto entries = [&](std::span<const double> t) {
        return correlated ? std::vector{scale.unit * t[0], scale.unit * t[1], scale.unit * t[2]}
                          : std::vector{scale.sigma(t[0]), scale.sigma(t[1])};
    };
    const Likelihood likelihood = likelihoodOf(
        design, laplace, [&](std::span<const double> t) { return SlopeFactor::full(entries(t)); });
    Fit fit = LinkedMaximizer::maximize(
        correlated ? correlatedStarts(p, scale) : startsAt(p, 2, scale), likelihood);
    if (correlated) {
        moveToBound(fit, likelihood, {{p + 1, 0.0}, {p + 2, 0.0}});
        moveToBound(fit, likelihood, {{p + 2, 0.0}});
    } else {
        if (const SlopeUnits units = SlopeUnits::of(slope); units.distance() > 1.0) {
            Fit other = LinkedMaximizer::maximize(ridgeStarts(p, units, scale), likelihood);
            other.iterations += fit.iterations;
            if (other.value > fit.value) {
                fit = std::move(other);
            }
        }
        moveToBound(fit, likelihood, {{p, scale.least()}});
        moveToBound(fit, likelihood, {{p + 1, scale.least()}});
    }
    MultilevelResult result = searched(task, design, fit, likelihood);
    const std::vector<double> factor = entries(std::span(fit.point).subspan(p));
    result.spread = {.factor = SlopeFactor::full(factor), .scale = slopeScale};
    setSlopeVariances(result, task.options, slopeScale.unscaled(result.spread->factor));
    result.isSingular = correlated && SlopeFactor::isSingular(factor);
    return result;
}

MultilevelResult fitTwoFactors(const LinkedTask& task, const LinkedDesign& design) {
    const std::size_t p = design.fixedCount();
    const SpreadScale scaleA(task.rows.cluster.count());
    const SpreadScale scaleB(task.rows.cluster2.count());
    CrossedLaplace laplace(design, task.rows);
    const Likelihood likelihood =
        likelihoodOf(design, laplace, [&scaleA, &scaleB](std::span<const double> t) {
            return CrossedSpread{.first = scaleA.sigma(t[0]), .second = scaleB.sigma(t[1])};
        });
    std::vector<std::vector<double>> starts = startsAt(p, 2, scaleA);
    for (std::vector<double>& start : starts) {
        start[p + 1] *= scaleA.unit / scaleB.unit;
    }
    Fit fit = LinkedMaximizer::maximize(starts, likelihood);
    moveToBound(fit, likelihood, {{p, scaleA.least()}});
    moveToBound(fit, likelihood, {{p + 1, scaleB.least()}});
    MultilevelResult result = searched(task, design, fit, likelihood);
    addComponent(result, task.options.clusterLabel + " (Intercept)", scaleA.sigma(fit.point[p]));
    addComponent(result, task.options.cluster2Label + " (Intercept)",
                 scaleB.sigma(fit.point[p + 1]));
    return result;
}

std::optional<MultilevelResult> fit(const MultilevelData& data,
                                    const MultilevelOptions& options,
                                    LinkedFamily family,
                                    LinkedStructure structure) {
    const std::optional<MultilevelRows> rows = MultilevelRows::of(data, options);
    if (!rows || !LinkedTask::isCoded(*rows, family)) {
        return std::nullopt;
    }
    const LinkedTask task{.family = family,
                          .structure = structure,
                          .options = options,
                          .totalRows = data.outcome.size(),
                          .rows = rows->sortedByCluster()};
    if (std::string why = task.obstacle(); !why.empty()) {
        return task.blocked(std::move(why));
    }
    const std::optional<LinkedDesign> design = LinkedDesign::of(task.rows, family);
    if (!design) {
        return task.blocked(MultilevelWording::notConverged());
    }
    switch (structure) {
        case LinkedStructure::intercept:
            return fitIntercept(task, *design);
        case LinkedStructure::slope:
            return fitSlope(task, *design);
        case LinkedStructure::twoFactors:
            return fitTwoFactors(task, *design);
    }
    return std::nullopt;
}

std::optional<MultilevelResult> fitRI(MultilevelData data,
                                      MultilevelOptions options,
                                      LinkedFamily family) {
    data.cluster2.reset();
    options.randomSlopeName.reset();
    return fit(data, options, family, LinkedStructure::intercept);
}

std::optional<MultilevelResult> fitRS(MultilevelData data,
                                      const MultilevelOptions& options,
                                      LinkedFamily family) {
    if (options.randomSlopeName.value_or("").empty()) {
        return std::nullopt;
    }
    data.cluster2.reset();
    return fit(data, options, family, LinkedStructure::slope);
}

std::optional<MultilevelResult> fitCrossed(const MultilevelData& data,
                                           MultilevelOptions options,
                                           LinkedFamily family) {
    options.randomSlopeName.reset();
    return data.cluster2 ? fit(data, options, family, LinkedStructure::twoFactors) : std::nullopt;
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
