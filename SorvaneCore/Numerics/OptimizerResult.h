#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <limits>
#include <vector>

namespace sorvane {

/// Why a Newton iteration ended.
enum class OptimizerStop {
    converged,
    /// Arguments whose sizes do not fit; nothing was iterated.
    badArguments,
    /// The negative Hessian has no inverse.
    singular,
    /// A parameter, a derivative or the objective is not finite.
    nonFinite,
    /// The likelihood grows, or stays, without end along a direction: there is no finite optimum.
    diverged,
    iterationLimit,
};
BOOST_DESCRIBE_ENUM(
    OptimizerStop, converged, badArguments, singular, nonFinite, diverged, iterationLimit)

/// Where a Newton iteration ended.
struct OptimizerResult {
    /// The last ones, converged or not.
    std::vector<double> parameters{};
    /// At the parameters; NaN where the iteration sees derivatives only.
    double objective = std::numeric_limits<double>::quiet_NaN();
    /// Of the negative Hessian of the last round, row-major; empty where there is none.
    std::vector<double> inverseNegativeHessian{};
    /// Steps taken.
    std::int64_t iterations = 0;
    bool converged = false;
    OptimizerStop stop = OptimizerStop::badArguments;

    bool operator==(const OptimizerResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(OptimizerResult,
                      (),
                      (parameters, objective, inverseNegativeHessian, iterations, converged, stop))

}  // namespace sorvane
