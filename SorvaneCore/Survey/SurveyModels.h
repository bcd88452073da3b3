#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"
#include "SorvaneCore/Survey/SurveyModel.h"
#include "SorvaneCore/Survey/SurveyModelFrame.h"

namespace sorvane {

/// A fit under some weights, of the columns of a frame.
struct SurveyModelEstimates {
    std::vector<double> parameters{};
    /// The inverse of the information.
    std::vector<double> bread{};
    std::int64_t iterations = 0;
};

/// What sets one kind of model apart.
struct SurveyModelMethod {
    SurveyModelKind kind = SurveyModelKind::linear;
    /// Parameters that come before the slopes, and by what the mean of a predictor times its slope
    /// is added to them: -1 for an intercept, 1 for thresholds.
    std::size_t leading = 1;
    double meanSign = -1.0;
    /// Names of the leading parameters.
    std::vector<std::string> leadingNames{"Intercept"};
    /// The estimates under one weight per active row; absent where there are none.
    std::function<std::optional<SurveyModelEstimates>(std::span<const double> weights)> fit{};
    /// What a row of the frame adds to the estimating equations, before its weight.
    std::function<void(
        std::size_t row, std::span<const double> parameters, std::span<double> scores)>
        scores{};
};

/// What all models under a design have in common.
namespace SurveyModels {

/// The result before anything is fitted; blocked where the design or a column is not sound.
///
/// Failure    names that do not match the predictors -> absent
std::optional<SurveyModelResult> start(SurveyModelKind kind,
                                       const NumericColumn& outcome,
                                       std::span<const NumericColumn> predictors,
                                       const SurveyDesign& design,
                                       const SurveyModelOptions& options);

/// Blocks what must not be fitted: too few rows for the parameters, collinear predictors.
bool passes(SurveyModelResult& result, const SurveyModelFrame& frame, std::size_t parameters);

/// Fills in coefficients with the errors that the design gives them, and tests the slopes together.
///
/// Method     linearization, sandwich of the inverse information about the covariance of the summed
///            scores; or the fit made again under each replicate weight
/// Failure    no estimates, no replicate with any -> blocked
void finish(SurveyModelResult& result,
            const SurveyModelFrame& frame,
            const SurveyModelMethod& method,
            const SurveyModelOptions& options);

void block(SurveyModelResult& result, std::string message);
bool isBlocked(const SurveyModelResult& result);

}  // namespace SurveyModels

}  // namespace sorvane
