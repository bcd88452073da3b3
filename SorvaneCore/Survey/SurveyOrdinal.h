#pragma once

#include <optional>
#include <span>

#include "SorvaneCore/Survey/SurveyModel.h"

namespace sorvane::SurveyOrdinal {

/// Proportional-odds regression of an ordered outcome, for the population of a sample design:
/// logit P(Y <= j) = threshold j - x'b.
///
/// Input      as for `SurveyRegression::fit`; the outcome's distinct numbers in ascending order are
///            the levels
/// Method     pseudo maximum likelihood: Newton's iteration on the weighted likelihood of
///            predictors made uncorrelated; errors by linearization with the scores of the
///            likelihood and its observed information, or by the fit under each replicate weight
/// Failure    names that do not match -> absent. As `SurveyRegression`, and fewer than three levels,
///            separation -> blocked. A replicate that gives a level no weight counts for nothing
/// Accuracy   as `SurveyRegression`
/// Cost       O(rows (p + levels)^2) an iteration, about six of them; as much a replicate
/// Reference  McCullagh (1980), Regression models for ordinal data; Binder (1983)
std::optional<SurveyModelResult> fit(const NumericColumn& outcome,
                                     std::span<const NumericColumn> predictors,
                                     const SurveyDesign& design,
                                     const SurveyModelOptions& options);

}  // namespace sorvane::SurveyOrdinal
