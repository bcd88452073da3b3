#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"
#include "SorvaneCore/Survey/SurveyModel.h"

namespace sorvane {

/// The rows of a design that count for a model, with predictors in standard deviations from their
/// means.
struct SurveyModelFrame {
    const SurveyDesign& design;
    /// Positions in the design.
    std::vector<std::size_t> activeRows{};
    std::vector<double> outcome{};
    /// rows * cols entries, row-major; the first column is 1.
    std::vector<double> matrix{};
    std::size_t cols = 1;
    std::vector<double> means{};
    std::vector<double> deviations{};
    /// No predictor is constant or a sum of others.
    bool hasFullRank = false;

    std::size_t rows() const { return outcome.size(); }
    std::span<const double> row(std::size_t i) const {
        return std::span(matrix).subspan(i * cols, cols);
    }
    /// Those of the active rows among one weight per row of the design, divided by their mean.
    std::vector<double> scaledWeights(std::span<const double> ofDesign) const;

    /// Input      columns as long as the design, which has no structural errors
    static SurveyModelFrame of(const NumericColumn& outcome,
                               std::span<const NumericColumn> predictors,
                               const SurveyDesign& design);
};

/// A fit under some weights, in standardized predictors.
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

/// Fills in coefficients with the errors that the design gives them.
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
