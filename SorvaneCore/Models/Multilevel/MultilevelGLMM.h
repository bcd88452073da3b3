#pragma once

#include <optional>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelData.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"

/// Mixed models of outcomes that are 0 or 1 (logit link) or counts (log link).
///
/// Input      as for `MultilevelModel::fit`; the estimator and the method for df are not read
/// Method     the marginal likelihood is maximised over fixed effects and log standard deviations,
///            or the factor of a covariance in the slope's own units: quasi-Newton steps in units of
///            the information, then a simplex. At a bound a standard deviation is next to 0, of the
///            linear predictor. A random intercept is integrated by 15-point adaptive Gauss-Hermite
///            quadrature, anything more by Laplace's approximation, as the usual package does.
///            Linear predictors are held to [-30, 30] and shares to [1e-12, 1 - 1e-12]. Errors come
///            from the Hessian in the fixed effects with the variances held, and are a little
///            smaller than those of the joint Hessian. Normal p-values and bounds
/// Failure    absent: as `MultilevelModel::fit`, and an outcome that is not coded so. Blocked: too
///            few clusters or too many levels, an outcome that does not vary
/// Accuracy   fixed effects and log likelihood 1e-4 of the package's
/// Cost       O(n p) an evaluation beside a few exponentials a row; a hundred to a few hundred
///            evaluations
/// Reference  Pinheiro and Bates (1995), Approximations to the log-likelihood function in the
///            nonlinear mixed-effects model; Bates et al. (2015)
namespace sorvane::MultilevelGLMM {

/// A random intercept by `cluster`.
std::optional<MultilevelResult> fitLogisticRI(const MultilevelData& data,
                                              const MultilevelOptions& options);
std::optional<MultilevelResult> fitPoissonRI(const MultilevelData& data,
                                             const MultilevelOptions& options);

/// A random intercept and slope by `cluster`; the slope must be named.
std::optional<MultilevelResult> fitLogisticRS(const MultilevelData& data,
                                              const MultilevelOptions& options);
std::optional<MultilevelResult> fitPoissonRS(const MultilevelData& data,
                                             const MultilevelOptions& options);

/// Random intercepts by `cluster` and by `cluster2`.
std::optional<MultilevelResult> fitLogisticCrossed(const MultilevelData& data,
                                                   const MultilevelOptions& options);
std::optional<MultilevelResult> fitPoissonCrossed(const MultilevelData& data,
                                                  const MultilevelOptions& options);

/// Random intercepts by `cluster`, the outer grouping, and by `cluster2` within it.
std::optional<MultilevelResult> fitLogisticThreeLevel(const MultilevelData& data,
                                                      const MultilevelOptions& options);
std::optional<MultilevelResult> fitPoissonThreeLevel(const MultilevelData& data,
                                                     const MultilevelOptions& options);

/// The departures of the clusters under a model fitted to the same data, in order of first
/// appearance; those of the first factor where there are two.
///
/// Input      `binomial` or `poisson`; three levels as the outer grouping and the inner one within
///            it
/// Method     the most likely values given the estimates; the errors are those of the curvature
/// Failure    a result that is blocked or of another model -> none
/// Cost       as a few evaluations of the fit
std::vector<MultilevelClusterEffect> clusterEffects(MultilevelFamily family,
                                                    const MultilevelData& data,
                                                    const MultilevelOptions& options,
                                                    const MultilevelResult& result);

}  // namespace sorvane::MultilevelGLMM
