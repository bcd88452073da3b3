#pragma once

#include <optional>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelData.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"

namespace sorvane {

/// Linear mixed models of Gaussian outcomes.
namespace MultilevelModel {

/// A random intercept, one with a random slope, or the intercepts of two crossed factors.
///
/// Method     fixed effects and residual variance are profiled out of the likelihood, which leaves
///            the variances relative to the residual one. Nested: an intercept by Brent's search
///            around the best of powers of ten and the analysis of variance estimate; with a slope,
///            a simplex from the best point of a grid, then once more in the slope's own units;
///            crossed likewise from a grid. The criteria are those of the usual package up to
///            constants, and the log likelihood has them all. Satterthwaite: numerical Hessian of
///            the deviance in the relative standard deviations and the residual one.
///            Kenward-Roger: expected information in the variances, from the fit as it is, in units
///            of the data, so that it holds where the package's own inverse fails; crossed models
///            take Satterthwaite's df and unadjusted errors
/// Failure    absent: lengths or names that do not match, a slope that is no predictor, no more
///            cases than fixed effects. Blocked: fewer than two clusters, fewer than two levels of
///            a crossed factor or more than 4,000 of both, no usable solution (collinear
///            predictors, no residual variance)
/// Accuracy   fixed effects 1e-6 relative, variances 1e-5, criteria 1e-8 absolute
/// Cost       O(n p^2) once; an evaluation O(clusters p^2), or for crossed factors O(n + b^3) with b
///            the levels of the smaller. 20 to 1,100 evaluations
/// Reference  Bates et al. (2015), Fitting linear mixed-effects models using lme4; Kuznetsova et
///            al. (2017), lmerTest; Kenward and Roger (1997); Halekoh and Hojsgaard (2014)
std::optional<MultilevelResult> fit(const MultilevelData& data, const MultilevelOptions& options);

/// The departures of the clusters under a model fitted to the same data, in order of first
/// appearance; those of the first factor where two are crossed.
///
/// Method     conditional means given the estimates; the errors hold the fixed effects for known
/// Failure    a result that is blocked or of another model -> none
/// Cost       as a few evaluations of the fit
std::vector<MultilevelClusterEffect> clusterEffects(const MultilevelData& data,
                                                    const MultilevelOptions& options,
                                                    const MultilevelResult& result);

}  // namespace MultilevelModel

}  // namespace sorvane
