#include "SorvaneCore/Models/Multilevel/LinkedMaximizer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Numerics/BFGSMinimizer.h"
#include "SorvaneCore/Numerics/BlockedCholesky.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/NelderMeadOptimizer.h"

namespace sorvane::LinkedMaximizer {

namespace {

/// Ends quasi-Newton steps where the simplex does the rest: in standard errors, a gradient as large
/// as this stands for a distance as large.
constexpr double gradientTolerance = 1e-4;
constexpr int quasiNewtonRounds = 200;
constexpr int quasiNewtonStarts = 4;
/// Steps are made anew where they have become this much longer or shorter, but not where they have
/// grown so long that the likelihood is flat: there is no end that way.
constexpr double alike = 2.0;
constexpr double flat = 30.0;
constexpr int simplexRounds = 2000;
/// The simplex starts with vertices a tenth of this away.
constexpr double simplexUnit = 0.02;

double negated(double logLikelihood) {
    return std::isfinite(logLikelihood) ? -logLikelihood : std::numeric_limits<double>::infinity();
}

/// The transposed inverse of the factor of a matrix, which turns steps in which the matrix would be
/// the identity into its coordinates; absent where it is not positive definite.
std::optional<std::vector<double>> roundDirections(std::vector<double> matrix, std::size_t n) {
    constexpr double smallestShare = 1e-15;
    if (matrix.size() != n * n) {
        return std::nullopt;
    }
    std::vector<double> diagonal(n);
    for (std::size_t i = 0; i < n; ++i) {
        diagonal[i] = matrix[i * n + i];
    }
    if (!BlockedCholesky::factor(matrix, n)) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < n; ++i) {
        const double pivot = matrix[i * n + i];
        if (!(pivot * pivot > smallestShare * diagonal[i])) {
            return std::nullopt;
        }
    }
    std::vector<double> directions = BFGSMinimizer::identity(n);
    BlockedCholesky::solveLowerTransposed(matrix, n, directions, n);
    return directions;
}

/// Points by steps from an origin, in fixed effects in which the information there is the identity.
class RoundSteps {
public:
    RoundSteps(std::vector<double> origin, const Likelihood& likelihood)
        : origin_(std::move(origin)),
          fixed_(likelihood.fixed),
          directions_(BFGSMinimizer::identity(fixed_)) {
        if (auto found = roundDirections(likelihood.information(origin_), fixed_)) {
            directions_ = std::move(*found);
            isRound_ = true;
        }
    }

    /// Whether there was an information to go by.
    bool isRound() const { return isRound_; }
    std::vector<double> at(std::span<const double> steps) const {
        std::vector<double> point = origin_;
        for (std::size_t i = 0; i < fixed_; ++i) {
            for (std::size_t j = i; j < fixed_; ++j) {
                point[i] += directions_[i * fixed_ + j] * steps[j];
            }
        }
        for (std::size_t i = fixed_; i < point.size(); ++i) {
            point[i] += steps[i];
        }
        return point;
    }
    /// The fixed coordinates that each step moves, row by row.
    const std::vector<double>& directions() const { return directions_; }
    /// How many times as far a step goes as one of others, at most.
    double stretchOver(const RoundSteps& others) const {
        double most = 0.0;
        for (std::size_t i = 0; i < fixed_; ++i) {
            const double alone = directions_[i * fixed_ + i] / others.directions_[i * fixed_ + i];
            most = std::max({most, alone, error(i) / others.error(i)});
        }
        return most;
    }
    const std::vector<double>& origin() const { return origin_; }
    void moveTo(std::vector<double> origin) { origin_ = std::move(origin); }

private:
    /// The standard error of a coordinate.
    double error(std::size_t i) const {
        double sum = 0.0;
        for (std::size_t j = i; j < fixed_; ++j) {
            sum += directions_[i * fixed_ + j] * directions_[i * fixed_ + j];
        }
        return std::sqrt(sum);
    }

    std::vector<double> origin_;
    std::size_t fixed_;
    std::vector<double> directions_;
    bool isRound_ = false;
};

using Objective = std::function<double(std::span<const double> steps)>;

std::vector<double> gradientOf(const Objective& objective, std::span<const double> at) {
    constexpr double step = 1e-3;
    std::vector<double> moved(at.begin(), at.end());
    std::vector<double> gradient(at.size());
    for (std::size_t i = 0; i < at.size(); ++i) {
        moved[i] = at[i] + step;
        const double above = objective(moved);
        moved[i] = at[i] - step;
        gradient[i] = (above - objective(moved)) / (2.0 * step);
        moved[i] = at[i];
    }
    return gradient;
}

std::vector<double> hessianOf(const Objective& objective, std::size_t n) {
    // In standard errors: the function moves by a thousandth, the fourth derivative costs less.
    constexpr double step = 0.05;
    const auto at = [&](std::size_t i, double signI, std::size_t j, double signJ) {
        std::vector<double> moved(n, 0.0);
        moved[i] += signI * step;
        moved[j] += signJ * step;
        return objective(moved);
    };
    const double centre = objective(std::vector<double>(n, 0.0));
    std::vector<double> hessian(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        hessian[i * n + i] = (at(i, 1, i, 0) - 2.0 * centre + at(i, -1, i, 0)) / (step * step);
        for (std::size_t j = i + 1; j < n; ++j) {
            const double difference =
                at(i, 1, j, 1) - at(i, 1, j, -1) - at(i, -1, j, 1) + at(i, -1, j, -1);
            hessian[i * n + j] = difference / (4.0 * step * step);
            hessian[j * n + i] = hessian[i * n + j];
        }
    }
    return hessian;
}

/// Whether no diagonal entry is far from 1.
bool isNearIdentity(std::span<const double> matrix, std::size_t n) {
    constexpr double mostFactor = 10.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double entry = matrix[i * n + i];
        if (!(entry < mostFactor && entry > 1.0 / mostFactor)) {
            return false;
        }
    }
    return true;
}

}  // namespace

Fit maximize(const std::vector<std::vector<double>>& starts, const Likelihood& likelihood) {
    Fit fit;
    const auto objective = [&](std::span<const double> point) {
        ++fit.iterations;
        return negated(likelihood.log(point));
    };
    double best = std::numeric_limits<double>::infinity();
    for (const std::vector<double>& start : starts) {
        if (const double value = objective(start); fit.point.empty() || value < best) {
            best = value;
            fit.point = start;
        }
    }
    const std::vector<double> zero(fit.point.size(), 0.0);
    RoundSteps steps(fit.point, likelihood);
    for (int i = 0; i < quasiNewtonStarts; ++i) {
        const Objective along = [&](std::span<const double> t) {
            return objective(steps.at(t));
        };
        const BFGSMinimizer::Result end = BFGSMinimizer::minimize(
            zero, along, [&along](std::span<const double> t) { return gradientOf(along, t); },
            {.maxIterations = quasiNewtonRounds, .gradientTolerance = gradientTolerance});
        steps.moveTo(steps.at(end.parameters));
        RoundSteps anew(steps.origin(), likelihood);
        const double growth = anew.stretchOver(steps);
        const bool isSettled = std::max(growth, steps.stretchOver(anew)) < alike;
        if (isSettled || (end.converged && growth > flat)) {
            break;
        }
        steps = std::move(anew);
    }
    const auto around = [&steps](std::span<const double> t) {
        std::vector<double> scaled(t.begin(), t.end());
        for (double& entry : scaled) {
            entry *= simplexUnit;
        }
        return steps.at(scaled);
    };
    const NelderMeadOptimizer::Fit simplex = NelderMeadOptimizer::minimize(
        zero, simplexRounds, [&](std::span<const double> t) { return objective(around(t)); });
    fit.point = around(simplex.parameters);
    fit.value = -simplex.objective;
    fit.converged = simplex.converged && std::isfinite(simplex.objective);
    return fit;
}

std::optional<std::vector<double>> fixedCovariance(std::span<const double> point,
                                                   const Likelihood& likelihood) {
    const std::size_t n = likelihood.fixed;
    const RoundSteps steps({point.begin(), point.end()}, likelihood);
    const Objective along = [&](std::span<const double> t) {
        std::vector<double> all(t.begin(), t.end());
        all.resize(point.size(), 0.0);
        return negated(likelihood.log(steps.at(all)));
    };
    const std::vector<double> hessian = hessianOf(along, n);
    const auto curved = roundDirections(hessian, n);
    if (!steps.isRound()) {
        return curved ? std::optional(LinearAlgebra::gramOfColumns(*curved, n, n)) : std::nullopt;
    }
    const bool isParabola = curved && isNearIdentity(hessian, n);
    return LinearAlgebra::gramOfColumns(
        isParabola ? LinearAlgebra::multiply(steps.directions(), n, n, *curved, n)
                   : steps.directions(),
        n, n);
}

}  // namespace sorvane::LinkedMaximizer
