#pragma once

#include <optional>
#include <span>

#include "SorvaneCore/Survey/SurveyModel.h"

/// Regressions of outcomes that are 0 or 1 (logit link) or counts (log link), for the population of
/// a sample design.
///
/// Input      as for `SurveyRegression::fit`
/// Method     pseudo maximum likelihood: Newton's iteration on the weighted likelihood of
///            predictors made uncorrelated; errors by linearization with the scores w (y - mu) x,
///            or by the fit under each replicate weight. They need no assumption on the outcome's
///            variance, so that counts that spread too widely for Poisson do no harm
/// Failure    names that do not match, an outcome that is not coded so -> absent. As
///            `SurveyRegression`, and shares that do not vary, counts that are all 0, separation
///            -> blocked
/// Accuracy   as `SurveyRegression`
/// Cost       O(rows p^2) an iteration, about six of them; as much a replicate, on all cores
/// Reference  Binder (1983); Lumley and Scott (2017), Fitting regression models to survey data
namespace sorvane::SurveyGLM {

std::optional<SurveyModelResult> fitLogistic(const NumericColumn& outcome,
                                             std::span<const NumericColumn> predictors,
                                             const SurveyDesign& design,
                                             const SurveyModelOptions& options);

std::optional<SurveyModelResult> fitPoisson(const NumericColumn& outcome,
                                            std::span<const NumericColumn> predictors,
                                            const SurveyDesign& design,
                                            const SurveyModelOptions& options);

}  // namespace sorvane::SurveyGLM
