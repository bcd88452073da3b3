#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include "SorvaneCore/Models/Multilevel/ClusterSums.h"
#include "SorvaneCore/Models/Multilevel/CrossedLikelihood.h"
#include "SorvaneCore/Models/Multilevel/FixedEffectTable.h"
#include "SorvaneCore/Models/Multilevel/KenwardRoger.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"
#include "SorvaneCore/Models/Multilevel/NestedLikelihood.h"
#include "SorvaneCore/Models/Multilevel/Satterthwaite.h"
#include "SorvaneCore/Models/Multilevel/SlopeFactor.h"
#include "SorvaneCore/Models/Multilevel/SlopeScale.h"
#include "SorvaneCore/Models/Multilevel/VarianceSearch.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::MultilevelModel {

namespace {

using VarianceSearch::Found;
using Issues = std::vector<AnalysisReadinessIssue>;

constexpr std::size_t mostCrossedLevels = 4000;

MultilevelResult started(const MultilevelRows& rows, const MultilevelOptions& options) {
    MultilevelResult result{.estimator = options.estimator,
                            .n = static_cast<std::int64_t>(rows.count()),
                            .nClusters = static_cast<std::int64_t>(rows.cluster.count()),
                            .predictorCount = static_cast<std::int64_t>(rows.predictors.size())};
    if (rows.slope) {
        result.randomSlopeName = options.randomSlopeName;
    }
    return result;
}

AnalysisReadiness readinessOf(const MultilevelResult& result,
                              std::string minimum,
                              std::size_t totalRows,
                              Issues issues) {
    return AnalysisReadiness::of(std::move(minimum), static_cast<std::int64_t>(totalRows), result.n,
                                 std::move(issues), result.nClusters);
}

MultilevelResult blocked(MultilevelResult result,
                         const MultilevelOptions& options,
                         std::size_t totalRows,
                         std::string why) {
    result.fixedEffects = FixedEffectTable::blank(options.fixedNames);
    result.logLikelihood = std::numeric_limits<double>::quiet_NaN();
    result.readiness = readinessOf(result,
                                   result.nClustersSecondary ? MultilevelWording::crossedMinimum()
                                                             : MultilevelWording::nestedMinimum(),
                                   totalRows, {AnalysisReadinessIssue::blocked(std::move(why))});
    return result;
}

/// A search that ended in a fit, and what it searched.
struct Fitted {
    const MultilevelRows& rows;
    const ScaledDesign& design;
    const MultilevelCriterion& criterion;
    const Found& found;
    /// Of the fixed effects on the scale of the design, relative to the residual variance.
    std::vector<double> covariance{};

    const MultilevelProfile& profile() const { return *found.profile; }
};

FixedEffectTable::Estimates estimatesOf(const Fitted& fit) {
    FixedEffectTable::Estimates estimates{.values = fit.design.estimates(fit.profile().beta),
                                          .variances = fit.design.variances(fit.covariance)};
    for (double& variance : estimates.variances) {
        variance *= fit.profile().sigma2;
    }
    return estimates;
}

std::vector<double> containmentDegrees(const Fitted& fit) {
    const auto p = static_cast<double>(fit.rows.fixedCount());
    double spent = static_cast<double>(fit.rows.cluster.count()) - 1.0;
    if (fit.rows.cluster2.count() > 0) {
        spent += static_cast<double>(fit.rows.cluster2.count()) - 1.0;
    }
    const double df = static_cast<double>(fit.rows.count()) - p - spent;
    return std::vector<double>(fit.rows.fixedCount(), std::max(df, 1.0));
}

void setFit(MultilevelResult& result, const Fitted& fit, const MultilevelOptions& options) {
    result.logLikelihood = fit.criterion.logLikelihood(fit.profile());
    if (options.estimator == MultilevelEstimator::reml) {
        result.remlCriterion = -2.0 * result.logLikelihood;
    }
    result.converged = true;
    result.iterations = fit.found.evaluations;
}

void addComponent(MultilevelResult& result, std::string name, double variance) {
    result.varianceComponents.push_back({.name = std::move(name),
                                         .variance = variance,
                                         .standardDeviation = std::sqrt(std::max(variance, 0.0))});
}

double nearZero(double sigma2) {
    return 1e-10 * std::max(1.0, sigma2);
}

/// Of a nested model with or without a slope, which is taken in its own units: at a zero far from all
/// values, as that of years, the terms of the covariance cancel each other, and what is left of
/// their sums and differences would be rounding.
struct NestedTask {
    NestedTask(const MultilevelRows& nestedRows, const MultilevelOptions& options)
        : rows(nestedRows),
          correlated(options.correlateRandomEffects),
          slopeScale(rows.slope ? SlopeUnits::of(rows.predictors[*rows.slope]) : SlopeUnits{},
                     correlated),
          design(rows),
          sums(
              design,
              rows.cluster,
              rows.slope ? slopeScale.scaled(rows.predictors[*rows.slope]) : std::vector<double>{}),
          criterion{.estimator = options.estimator, .n = rows.count(), .p = rows.fixedCount()},
          likelihood(sums, design, criterion) {}

    const MultilevelRows& rows;
    bool correlated;
    SlopeScale slopeScale;
    ScaledDesign design;
    ClusterSums sums;
    MultilevelCriterion criterion;
    NestedLikelihood likelihood;
};

/// What a nested fit varies with: the relative standard deviation of an intercept, or the factor of
/// its covariance with a slope.
Satterthwaite::Parameters nestedParameters(const Fitted& fit, bool correlated) {
    Satterthwaite::Parameters result{.values = {std::sqrt(std::max(fit.found.g[0], 0.0))},
                                     .maySwitchSign = {false},
                                     .sigma = std::sqrt(fit.profile().sigma2)};
    if (fit.rows.slope) {
        result.values = SlopeFactor::entries(fit.found.g, correlated);
        result.maySwitchSign =
            correlated ? std::vector{false, true, false} : std::vector{false, false};
    }
    return result;
}

/// The inverse, with standard deviations below 0 read as 0.
RandomCovariance covarianceOf(std::vector<double> parameters) {
    parameters.front() = std::max(parameters.front(), 0.0);
    if (parameters.size() == 1) {
        return {parameters[0] * parameters[0], 0.0, 0.0, 0.0};
    }
    parameters.back() = std::max(parameters.back(), 0.0);
    return SlopeFactor::covariance(parameters);
}

FixedEffectTable::Estimates nestedEstimates(const NestedTask& task,
                                            const Fitted& fit,
                                            const MultilevelOptions& options) {
    FixedEffectTable::Estimates estimates = estimatesOf(fit);
    if (options.dfMethod == MultilevelDFMethod::wald) {
        return estimates;
    }
    if (options.dfMethod == MultilevelDFMethod::kenwardRoger) {
        if (auto adjustment = KenwardRoger::adjust(task.sums, fit.design, fit.profile(),
                                                   fit.found.g, task.correlated)) {
            estimates.variances = std::move(adjustment->variances);
            estimates.degrees = std::move(adjustment->degrees);
        }
    }
    if (options.dfMethod != MultilevelDFMethod::containment && !estimates.degrees) {
        estimates.degrees = Satterthwaite::degrees(
            nestedParameters(fit, task.correlated),
            [&task](std::span<const double> theta) {
                return task.likelihood.at(covarianceOf({theta.begin(), theta.end()}));
            },
            fit.design, fit.criterion);
    }
    if (!estimates.degrees) {
        estimates.degrees = containmentDegrees(fit);
    }
    return estimates;
}

std::int64_t singletonCount(const ClusterCodes& clusters) {
    return std::ranges::count(clusters.sizes(), std::size_t{1});
}

Issues nestedIssues(const Fitted& fit, const MultilevelResult& result) {
    constexpr std::int64_t veryFewClusters = 4;
    constexpr std::int64_t fewClusters = 9;
    Issues issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (const std::int64_t singletons = singletonCount(fit.rows.cluster); singletons > 0) {
        caution(MultilevelWording::singletons(singletons));
    }
    if (result.nClusters <= veryFewClusters) {
        caution(MultilevelWording::fewerThanFiveClusters());
    } else if (result.nClusters <= fewClusters) {
        caution(MultilevelWording::fewClusters(result.nClusters));
    }
    const double sigma2 = fit.profile().sigma2;
    if (result.varianceComponents.front().variance < nearZero(sigma2)) {
        caution(MultilevelWording::interceptNearZero());
    }
    if (fit.rows.slope && result.varianceComponents[1].variance < nearZero(sigma2)) {
        caution(MultilevelWording::slopeNearZero());
    }
    if (!result.converged) {
        caution(MultilevelWording::noConvergenceSignal());
    }
    return issues;
}

void setNestedVariances(MultilevelResult& result,
                        const NestedTask& task,
                        const Fitted& fit,
                        const MultilevelOptions& options) {
    constexpr double smallestRoot = 1e-14;
    const double sigma2 = fit.profile().sigma2;
    RandomCovariance tau = fit.found.g;
    result.spread = {.factor = {.intercept = std::sqrt(std::max(tau[0], 0.0))},
                     .scale = task.slopeScale};
    if (fit.rows.slope) {
        const std::vector<double> factor = SlopeFactor::entries(tau, task.correlated);
        result.isSingular = task.correlated && SlopeFactor::isSingular(factor);
        result.spread->factor = SlopeFactor::full(factor);
        tau = task.slopeScale.unscaled(result.spread->factor);
    }
    for (double& entry : tau) {
        entry *= sigma2;
    }
    addComponent(result, options.clusterLabel + " (Intercept)", tau[0]);
    if (fit.rows.slope) {
        addComponent(result, options.clusterLabel + " (" + *options.randomSlopeName + ")", tau[3]);
    }
    addComponent(result, "Residual", sigma2);
    if (tau[0] + sigma2 > 0.0) {
        result.icc = tau[0] / (tau[0] + sigma2);
    }
    const double root = std::sqrt(std::max(tau[0], 0.0) * std::max(tau[3], 0.0));
    if (fit.rows.slope && options.correlateRandomEffects && root > smallestRoot) {
        result.randomEffectCorrelation = std::clamp(tau[1] / root, -1.0, 1.0);
    }
}

Found searchNested(const NestedTask& task) {
    const VarianceSearch::NestedProfile profile = [&task](const RandomCovariance& g) {
        return task.likelihood.at(g);
    };
    if (task.rows.slope) {
        return VarianceSearch::interceptAndSlope(profile, task.correlated, task.slopeScale);
    }
    return VarianceSearch::intercept(
        profile, VarianceSearch::momentLambda(task.rows.outcome, task.rows.cluster));
}

/// The covariance of the fixed effects of a search that found something.
std::optional<std::vector<double>> fixedCovariance(const Found& found, std::size_t p) {
    return found.profile ? LinearAlgebra::invert(found.profile->xtwx, p) : std::nullopt;
}

MultilevelResult fitNested(const MultilevelRows& rows,
                           const MultilevelOptions& options,
                           std::size_t totalRows) {
    MultilevelResult result = started(rows, options);
    if (rows.cluster.count() < 2) {
        return blocked(std::move(result), options, totalRows,
                       MultilevelWording::needsTwoClusters());
    }
    const NestedTask task(rows, options);
    const Found found = searchNested(task);
    auto covariance = fixedCovariance(found, rows.fixedCount());
    if (!covariance) {
        return blocked(std::move(result), options, totalRows, MultilevelWording::notConverged());
    }
    const Fitted fit{.rows = rows,
                     .design = task.design,
                     .criterion = task.criterion,
                     .found = found,
                     .covariance = std::move(*covariance)};
    setFit(result, fit, options);
    result.fixedEffects = FixedEffectTable::of(
        options.fixedNames, nestedEstimates(task, fit, options), options.confidenceLevel);
    setNestedVariances(result, task, fit, options);
    result.readiness = readinessOf(result, MultilevelWording::nestedMinimum(), totalRows,
                                   nestedIssues(fit, result));
    return result;
}

FixedEffectTable::Estimates crossedEstimates(const Fitted& fit,
                                             const CrossedLikelihood& likelihood,
                                             const MultilevelOptions& options) {
    FixedEffectTable::Estimates estimates = estimatesOf(fit);
    if (options.dfMethod == MultilevelDFMethod::wald) {
        return estimates;
    }
    if (options.dfMethod != MultilevelDFMethod::containment) {
        estimates.degrees = Satterthwaite::degrees(
            {.values = {fit.found.g[0], fit.found.g[3]},
             .maySwitchSign = {false, false},
             .sigma = std::sqrt(fit.profile().sigma2)},
            [&likelihood](std::span<const double> lambda) {
                return likelihood.at(lambda[0], lambda[1], hardwareThreads());
            },
            fit.design, fit.criterion);
    }
    if (!estimates.degrees) {
        estimates.degrees = containmentDegrees(fit);
    }
    return estimates;
}

Issues crossedIssues(const Fitted& fit) {
    constexpr std::size_t fewLevels = 5;
    const double sigma2 = fit.profile().sigma2;
    Issues issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (std::min(fit.rows.cluster.count(), fit.rows.cluster2.count()) < fewLevels) {
        caution(MultilevelWording::fewerThanFiveLevels());
    }
    if (std::min(fit.found.g[0], fit.found.g[3]) * sigma2 < nearZero(sigma2)) {
        caution(MultilevelWording::crossedInterceptNearZero());
    }
    caution(MultilevelWording::noNestedICC());
    return issues;
}

MultilevelResult fitCrossed(const MultilevelRows& rows,
                            const MultilevelOptions& options,
                            std::size_t totalRows) {
    MultilevelResult result = started(rows, options);
    result.nClustersSecondary = static_cast<std::int64_t>(rows.cluster2.count());
    if (std::min(rows.cluster.count(), rows.cluster2.count()) < 2) {
        return blocked(std::move(result), options, totalRows, MultilevelWording::needsTwoLevels());
    }
    if (rows.cluster.count() + rows.cluster2.count() > mostCrossedLevels) {
        return blocked(std::move(result), options, totalRows, MultilevelWording::tooManyLevels());
    }
    const ScaledDesign design(rows);
    const MultilevelCriterion criterion{
        .estimator = options.estimator, .n = rows.count(), .p = rows.fixedCount()};
    const CrossedLikelihood likelihood(design, rows, criterion);
    const Found found =
        VarianceSearch::crossed([&likelihood](double lambdaA, double lambdaB, unsigned threads) {
            return likelihood.at(lambdaA, lambdaB, threads);
        });
    auto covariance = fixedCovariance(found, rows.fixedCount());
    if (!covariance) {
        return blocked(std::move(result), options, totalRows,
                       MultilevelWording::crossedNotConverged());
    }
    const Fitted fit{.rows = rows,
                     .design = design,
                     .criterion = criterion,
                     .found = found,
                     .covariance = std::move(*covariance)};
    setFit(result, fit, options);
    result.fixedEffects = FixedEffectTable::of(
        options.fixedNames, crossedEstimates(fit, likelihood, options), options.confidenceLevel);
    const double sigma2 = fit.profile().sigma2;
    addComponent(result, options.clusterLabel + " (Intercept)", std::max(found.g[0] * sigma2, 0.0));
    addComponent(result, options.cluster2Label + " (Intercept)",
                 std::max(found.g[3] * sigma2, 0.0));
    addComponent(result, "Residual", sigma2);
    result.readiness =
        readinessOf(result, MultilevelWording::crossedMinimum(), totalRows, crossedIssues(fit));
    return result;
}

}  // namespace

std::optional<MultilevelResult> fit(const MultilevelData& data, const MultilevelOptions& options) {
    const std::optional<MultilevelRows> rows = MultilevelRows::of(data, options);
    if (!rows) {
        return std::nullopt;
    }
    return data.cluster2 ? fitCrossed(*rows, options, data.outcome.size())
                         : fitNested(*rows, options, data.outcome.size());
}

}  // namespace sorvane::MultilevelModel
