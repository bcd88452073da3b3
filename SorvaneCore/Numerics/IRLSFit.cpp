#include <optional>

#include "SorvaneCore/Numerics/CanonicalLikelihood.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::IRLS {

namespace {

/// How far a linear predictor must be from 0 before a fit can be suspected of running away.
constexpr double suspiciousDistance = 15.0;

bool haveShape(const Observations& data) {
    return data.cols >= 1 && data.response.size() == data.rows &&
           data.designMatrix.size() % data.cols == 0 &&
           data.designMatrix.size() / data.cols == data.rows;
}

/// One step of weighted least squares at fitted values next to the response.
std::optional<std::vector<double>> firstFit(const Evaluation& start, std::size_t cols) {
    const auto inverse = LinearAlgebra::invert(start.negativeHessian, cols);
    return inverse ? std::optional(LinearAlgebra::multiply(*inverse, cols, cols, start.gradient, 1))
                   : std::nullopt;
}

}  // namespace

OptimizerResult fit(const Observations& observations, Link link, const Limits& limits) {
    if (!haveShape(observations)) {
        return {};
    }
    const CanonicalLikelihood likelihood(observations, link);
    const Evaluation start = likelihood.start().evaluation;
    if (!start.isFinite()) {
        return {.stop = OptimizerStop::nonFinite};
    }
    const auto first = firstFit(start, observations.cols);
    if (!first) {
        return {.stop = OptimizerStop::singular};
    }
    Pass last;
    const auto evaluate = [&likelihood, &last](std::span<const double> parameters) {
        last = likelihood.at(parameters);
        return last.evaluation;
    };
    const auto provesDivergence = [&](std::span<const double> step) {
        return (link == Link::logit && last.smallestMargin > 0.0) ||
               (last.farthest > suspiciousDistance && likelihood.growsForever(step));
    };
    OptimizerResult result = dampedNewton(
        *first, {.maxIterations = limits.maxIterations - 1, .tolerance = limits.tolerance},
        evaluate, provesDivergence);
    ++result.iterations;
    return result;
}

}  // namespace sorvane::IRLS
