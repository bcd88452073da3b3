#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "SorvaneCore/Numerics/OptimizerResult.h"

/// Newton iteration for likelihoods.
namespace sorvane::IRLS {

/// Derivatives at given parameters.
using Derivative = std::function<std::vector<double>(std::span<const double> parameters)>;

struct Limits {
    int maxIterations = 100;
    /// The largest absolute entry of a step that still counts as a move.
    double tolerance = 1e-10;
};

/// Newton's iteration to a maximum, full steps only.
///
/// Input      `cols` >= 1 parameters, `initial` as many; `negativeHessian` gives cols * cols
///            entries, row-major
/// Method     the step is the inverse of the negative Hessian times the gradient; it ends when the
///            largest absolute entry of a step is below the tolerance
/// Failure    sizes that do not fit -> `badArguments`; a negative Hessian that
///            `LinearAlgebra::invert` refuses -> `singular`. The parameters are then the last ones
/// Cost       O(cols^3) a round beside the derivatives
OptimizerResult newton(std::size_t cols,
                       std::span<const double> initial,
                       const Limits& limits,
                       const Derivative& gradient,
                       const Derivative& negativeHessian);

}  // namespace sorvane::IRLS
