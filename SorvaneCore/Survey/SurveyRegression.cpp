#include "SorvaneCore/Survey/SurveyRegression.h"

#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"
#include "SorvaneCore/Survey/SurveyModels.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyRegression {

namespace {

using Numbers = std::vector<double>;

double residual(const SurveyModelFrame& frame, std::size_t i, std::span<const double> parameters) {
    double left = frame.outcome[i];
    for (std::size_t j = 0; j < frame.cols; ++j) {
        left -= frame.row(i)[j] * parameters[j];
    }
    return left;
}

/// Takes out of estimates what rounding has left of them: the effects of their own residuals.
void refine(SurveyModelEstimates& fit,
            const SurveyModelFrame& frame,
            std::span<const double> weights) {
    Numbers left(frame.cols, 0.0);
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        const double e = weights[i] * residual(frame, i, fit.parameters);
        for (std::size_t j = 0; j < frame.cols; ++j) {
            left[j] += e * frame.row(i)[j];
        }
    }
    const Numbers steps = LinearAlgebra::multiply(fit.bread, frame.cols, frame.cols, left, 1);
    for (std::size_t j = 0; j < frame.cols; ++j) {
        fit.parameters[j] += steps[j];
    }
}

std::optional<SurveyModelEstimates> leastSquares(const SurveyModelFrame& frame,
                                                 std::span<const double> weights) {
    Numbers matrix = frame.matrix;
    Numbers outcome = frame.outcome;
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        const double root = std::sqrt(weights[i]);
        outcome[i] *= root;
        for (std::size_t j = 0; j < frame.cols; ++j) {
            matrix[i * frame.cols + j] *= root;
        }
    }
    const auto reduced = TallLeastSquares::reduceRows(matrix, frame.rows(), frame.cols, outcome);
    if (!reduced) {
        return std::nullopt;
    }
    auto parameters =
        LinearAlgebra::solveUpperTriangular(reduced->rFactor, frame.cols, reduced->qtb);
    auto bread = LinearAlgebra::covarianceFactorFromR(reduced->rFactor, frame.cols);
    if (!parameters || !bread) {
        return std::nullopt;
    }
    SurveyModelEstimates fit{.parameters = std::move(*parameters), .bread = std::move(*bread)};
    refine(fit, frame, weights);
    return fit;
}

/// How well the weighted rows are fitted.
void addFit(SurveyModelResult& result, const SurveyModelFrame& frame) {
    const Numbers weights = frame.scaledWeights(frame.design.weights);
    const auto fit = leastSquares(frame, weights);
    if (!fit) {
        return;
    }
    const auto n = static_cast<double>(frame.rows());
    double mean = 0.0;
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        mean += weights[i] * frame.outcome[i] / n;
    }
    double left = 0.0;
    double all = 0.0;
    for (std::size_t i = 0; i < frame.rows(); ++i) {
        const double e = residual(frame, i, fit->parameters);
        const double deviation = frame.outcome[i] - mean;
        left += weights[i] * e * e;
        all += weights[i] * deviation * deviation;
    }
    result.rSquared = all > 0.0 ? 1.0 - left / all : std::nan("");
    result.residualStandardDeviation = std::sqrt(left / n);
}

}  // namespace

std::optional<SurveyModelResult> fit(const NumericColumn& outcome,
                                     std::span<const NumericColumn> predictors,
                                     const SurveyDesign& design,
                                     const SurveyModelOptions& options) {
    auto result =
        SurveyModels::start(SurveyModelKind::linear, outcome, predictors, design, options);
    if (!result || SurveyModels::isBlocked(*result)) {
        return result;
    }
    const SurveyModelFrame frame = SurveyModelFrame::of(outcome, predictors, design);
    if (!SurveyModels::passes(*result, frame, frame.cols)) {
        return result;
    }
    if (SampleMoments::areEqual(frame.outcome)) {
        SurveyModels::block(*result, SurveyWording::constantOutcome(SurveyModelKind::linear));
        return result;
    }
    SurveyModels::finish(
        *result, frame,
        {.kind = SurveyModelKind::linear,
         .fit = [&](std::span<const double> weights) { return leastSquares(frame, weights); },
         .scores =
             [&](std::size_t i, std::span<const double> parameters, std::span<double> scores) {
                 const double e = residual(frame, i, parameters);
                 for (std::size_t j = 0; j < frame.cols; ++j) {
                     scores[j] = e * frame.row(i)[j];
                 }
             }},
        options);
    if (!SurveyModels::isBlocked(*result)) {
        addFit(*result, frame);
    }
    return result;
}

}  // namespace sorvane::SurveyRegression
