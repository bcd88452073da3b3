#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

/// The maximum of a marginal likelihood, and how sure its fixed effects are.
namespace sorvane::LinkedMaximizer {

/// What is maximised, over coordinates of which the first `fixed` are fixed effects, the rest
/// variance parameters in units of about a standard error.
struct Likelihood {
    std::size_t fixed = 0;
    std::function<double(std::span<const double> point)> log{};
    /// Next to the negative Hessian in the fixed effects; empty where there is none.
    std::function<std::vector<double>(std::span<const double> point)> information{};
};

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
/// Method     quasi-Newton steps with numerical derivatives, in fixed effects in which the
///            information is the identity, as strong clusters make that of some a millionth of that
///            of others; once more where it no longer is at their end. Then a small simplex about
///            it, which must not move far to have converged; at most 2,000 rounds
Fit maximize(const std::vector<std::vector<double>>& starts, const Likelihood& likelihood);

/// The inverse of the negative Hessian in the fixed coordinates, the others held.
///
/// Method     central differences in steps in which the information is the identity; the inverse of
///            the information where they show no parabola, as where predictors separate outcomes
/// Failure    neither -> absent
std::optional<std::vector<double>> fixedCovariance(std::span<const double> point,
                                                   const Likelihood& likelihood);

}  // namespace sorvane::LinkedMaximizer
