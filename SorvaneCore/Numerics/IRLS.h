#pragma once

#include <boost/describe/enum.hpp>
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

/// What an iteration that watches its objective needs at given parameters.
struct Evaluation {
    double objective = 0.0;
    std::vector<double> gradient{};
    /// n * n entries for n parameters, row-major.
    std::vector<double> negativeHessian{};

    bool isFinite() const;
};
using Evaluate = std::function<Evaluation(std::span<const double> parameters)>;
/// Whether a step from the parameters last evaluated proves that there is no finite maximum.
using ProvesDivergence = std::function<bool(std::span<const double> step)>;

/// Newton's iteration to the maximum of a concave function, safe from any start.
///
/// Method     as `newton`, but a step that lowers the objective, beyond what rounding may, is
///            halved up to 40 times, and the tolerance grows with a parameter above 1
/// Returns    `objective` and the inverse are those of the last round, before a step below the
///            tolerance
/// Failure    as `newton`; `provesDivergence`, asked after each step, when the negative Hessian has
///            no inverse and at the last round -> `diverged`; no finite value near -> `nonFinite`
OptimizerResult dampedNewton(std::span<const double> initial,
                             const Limits& limits,
                             const Evaluate& evaluate,
                             const ProvesDivergence& provesDivergence);

/// The canonical links: of a share in (0, 1), and of a rate above 0.
enum class Link { logit, log };
BOOST_DESCRIBE_ENUM(Link, logit, log)

/// A design and its response.
struct Observations {
    /// Row-major, rows * cols entries, the intercept a column like any other.
    std::span<const double> designMatrix{};
    std::size_t rows = 0;
    std::size_t cols = 0;
    /// 0 or 1 for `logit`, 0 and above for `log`.
    std::span<const double> response{};
};

/// Bounds that keep the arithmetic finite.
inline constexpr double smallestProbability = 1e-15;
/// ln(1e-15).
inline constexpr double smallestLogRate = -34.538776394910684;

/// The maximum-likelihood fit of a generalized linear model with its canonical link.
///
/// Method     `dampedNewton` from one step of weighted least squares, which counts as the first, at
///            fitted values next to the response. Fitted shares are held to [1e-15, 1 - 1e-15] and
///            log rates to at least ln(1e-15)
/// Returns    `objective` is the log likelihood without the terms of the response alone
/// Failure    no finite optimum -> `diverged`, on proof: parameters that set all ones apart from
///            all zeros, or a step with a part that moves some rows towards their response and none
///            away from it. Otherwise as `dampedNewton`
/// Accuracy   the test for singularity is absolute, so columns should have entries of order 1
/// Cost       O(rows * cols^2) a round, on all threads; sums run over fixed row blocks in order, so
///            that the bits do not depend on the number of threads
/// Reference  McCullagh and Nelder (1989), Generalized Linear Models, 2.5; Albert and Anderson
///            (1984), On the existence of maximum likelihood estimates in logistic regression models
OptimizerResult fit(const Observations& observations, Link link, const Limits& limits);

}  // namespace sorvane::IRLS
