#pragma once

#include <optional>
#include <span>

#include "SorvaneCore/Survey/SurveyModel.h"

namespace sorvane::SurveyRegression {

/// Linear regression of an outcome on the predictors, for the population of a sample design.
///
/// Input      columns of one entry per row of the design; rows with an absent or infinite value do
///            not count, as if they had not been sampled
/// Method     weighted least squares; errors by linearization over strata and primary sampling
///            units, with the scores w e x, or by the fit under each replicate weight. t and F tests
///            on the design's degrees of freedom less the predictors
/// Returns    R squared and the residual standard deviation by the weights (no correction for the
///            number of coefficients)
/// Failure    names that do not match -> absent. A structural error of the design, columns of
///            another length, too few rows, collinear predictors, an outcome that does not vary but
///            for rounding -> blocked. A coefficient of error 0 (no more than eight units in the
///            last place of the largest outcome could give, with replicates in each of them) is not
///            tested: t, p and bounds NaN, as is F where it is a slope or a combination of slopes
/// Accuracy   rounding times the condition number of the standardized predictors, F too
/// Cost       O(rows p^2), and as much a replicate, on all cores with the same result
/// Reference  Binder (1983), On the variances of asymptotically normal estimators from complex
///            surveys; Fuller (1975), Regression analysis for sample survey
std::optional<SurveyModelResult> fit(const NumericColumn& outcome,
                                     std::span<const NumericColumn> predictors,
                                     const SurveyDesign& design,
                                     const SurveyModelOptions& options);

}  // namespace sorvane::SurveyRegression
