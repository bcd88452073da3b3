#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

/// The maximum of a marginal likelihood in round coordinates.
namespace sorvane::LinkedMaximizer {

/// The first `fixed` coordinates are fixed effects, the rest variance parameters.
using LogLikelihood = std::function<double(std::span<const double> point)>;

/// Where the search ended.
struct Fit {
    std::vector<double> point{};
    /// The log likelihood there.
    double value = 0.0;
    bool converged = false;
    /// Settings tried.
    std::int64_t iterations = 0;
};

/// The maximum from the best of several starts.
///
/// Method     quasi-Newton steps with numerical derivatives, then a small simplex about their end,
///            which must not move far to have converged; at most 2,000 rounds
Fit maximize(const std::vector<std::vector<double>>& starts, const LogLikelihood& f);

/// The inverse of the negative Hessian in the first `fixed` coordinates, the others held.
///
/// Method     central differences
/// Failure    no positive definite Hessian -> absent
std::optional<std::vector<double>> fixedCovariance(std::span<const double> point,
                                                   std::size_t fixed,
                                                   const LogLikelihood& f);

}  // namespace sorvane::LinkedMaximizer
