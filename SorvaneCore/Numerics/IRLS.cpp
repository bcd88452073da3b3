#include "SorvaneCore/Numerics/IRLS.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::IRLS {

namespace {

OptimizerResult stopped(OptimizerResult result, OptimizerStop stop) {
    result.stop = stop;
    result.converged = stop == OptimizerStop::converged;
    return result;
}

/// Adds the step; whether every entry of it is below the tolerance, which no NaN is.
bool takeStep(std::vector<double>& parameters, std::span<const double> step, double tolerance) {
    bool isSmall = true;
    for (std::size_t j = 0; j < parameters.size(); ++j) {
        parameters[j] += step[j];
        isSmall = isSmall && std::abs(step[j]) < tolerance;
    }
    return isSmall;
}

}  // namespace

OptimizerResult newton(std::size_t cols,
                       std::span<const double> initial,
                       const Limits& limits,
                       const Derivative& gradient,
                       const Derivative& negativeHessian) {
    OptimizerResult result{.parameters = {initial.begin(), initial.end()}};
    if (cols < 1 || initial.size() != cols) {
        return stopped(std::move(result), OptimizerStop::badArguments);
    }
    while (result.iterations < limits.maxIterations) {
        const std::vector<double> slope = gradient(result.parameters);
        const std::vector<double> curvature = negativeHessian(result.parameters);
        if (slope.size() != cols || curvature.size() != cols * cols) {
            return stopped(std::move(result), OptimizerStop::badArguments);
        }
        std::optional<std::vector<double>> inverse = LinearAlgebra::invert(curvature, cols);
        if (!inverse) {
            return stopped(std::move(result), OptimizerStop::singular);
        }
        const std::vector<double> step = LinearAlgebra::multiply(*inverse, cols, cols, slope, 1);
        result.inverseNegativeHessian = std::move(*inverse);
        ++result.iterations;
        if (takeStep(result.parameters, step, limits.tolerance)) {
            return stopped(std::move(result), OptimizerStop::converged);
        }
    }
    return stopped(std::move(result), OptimizerStop::iterationLimit);
}

}  // namespace sorvane::IRLS
