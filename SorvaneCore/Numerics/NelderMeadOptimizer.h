#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <vector>

/// Minimization by function values alone.
namespace sorvane::NelderMeadOptimizer {

/// Where the simplex ended.
struct Fit {
    /// The best vertex.
    std::vector<double> parameters{};
    double objective = std::numeric_limits<double>::quiet_NaN();
    std::int64_t iterations = 0;
    bool converged = false;

    bool operator==(const Fit&) const = default;
};
BOOST_DESCRIBE_STRUCT(Fit, (), (parameters, objective, iterations, converged))

/// A local minimum of f near the start.
///
/// Method     a simplex of the start and one vertex per coordinate, a tenth of it away (0.1 where
///            it is next to zero); reflection, expansion by 2, contraction towards the centroid by
///            half, shrinking by half. It ends when the values of the vertices spread by less than
///            1e-10
/// Returns    a value that is not a number counts as positive infinity
/// Cost       one or two evaluations and O(n log n + n^2) a round
/// Reference  Nelder and Mead (1965), A simplex method for function minimization
Fit minimize(std::span<const double> start,
             int maxIterations,
             const std::function<double(std::span<const double> point)>& f);

}  // namespace sorvane::NelderMeadOptimizer
