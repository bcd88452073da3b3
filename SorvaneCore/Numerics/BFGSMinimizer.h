#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <vector>

/// Minimization of a smooth function.
namespace sorvane::BFGSMinimizer {

using Objective = std::function<double(std::span<const double> point)>;
using Gradient = std::function<std::vector<double>(std::span<const double> point)>;

struct Limits {
    int maxIterations = 300;
    /// The length of the gradient below which a point is a minimum.
    double gradientTolerance = 1e-7;
};

/// Where the search ended.
struct Result {
    std::vector<double> parameters{};
    double objective = std::numeric_limits<double>::quiet_NaN();
    double gradientNorm = std::numeric_limits<double>::quiet_NaN();
    std::int64_t iterations = 0;
    /// By the gradient or by the length of the last move; not when no step lowers the objective,
    /// nor at the limit.
    bool converged = false;

    bool operator==(const Result&) const = default;
};
BOOST_DESCRIBE_STRUCT(Result, (), (parameters, objective, gradientNorm, iterations, converged))

/// The identity matrix, n by n, row-major.
std::vector<double> identity(std::size_t n);

/// A local minimum of the objective near the start.
///
/// Method     quasi-Newton on the inverse Hessian, from the identity; gradient by central
///            differences of step max(1e-6 |x|, 1e-6); backtracking line search by halves from step
///            1, at most 60 times, to a decrease of 1e-4 of the slope; an update without positive
///            curvature (1e-12) is left out
/// Returns    the last point; an objective that is not finite reads as 1e12
/// Accuracy   the differences leave about 1e-10 of the objective's scale in the gradient
/// Cost       2n evaluations and O(n^2) a round, beside the line search
/// Reference  Nocedal and Wright (2006), Numerical Optimization, 6.1
Result minimize(std::span<const double> start, const Objective& objective, const Limits& limits);

/// The same with an exact gradient, which is asked for at points of which the objective was asked
/// just before.
Result minimize(std::span<const double> start,
                const Objective& objective,
                const Gradient& gradient,
                const Limits& limits);

}  // namespace sorvane::BFGSMinimizer
