#include "SorvaneCore/Models/Multilevel/LinkedMaximizer.h"

#include <cmath>
#include <limits>

#include "SorvaneCore/Numerics/BFGSMinimizer.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/NelderMeadOptimizer.h"

namespace sorvane::LinkedMaximizer {

namespace {

/// Ends quasi-Newton steps where the simplex does the rest: in standard errors, a gradient as large
/// as this stands for a distance as large.
constexpr double gradientTolerance = 1e-4;
constexpr int quasiNewtonRounds = 200;
constexpr int simplexRounds = 2000;
/// The simplex starts with vertices a tenth of this away.
constexpr double simplexUnit = 0.02;

double negated(double logLikelihood) {
    return std::isfinite(logLikelihood) ? -logLikelihood : std::numeric_limits<double>::infinity();
}

}  // namespace

Fit maximize(const std::vector<std::vector<double>>& starts, const LogLikelihood& f) {
    Fit fit;
    const auto objective = [&](std::span<const double> point) {
        ++fit.iterations;
        return negated(f(point));
    };
    double best = std::numeric_limits<double>::infinity();
    for (const std::vector<double>& start : starts) {
        if (const double value = objective(start); fit.point.empty() || value < best) {
            best = value;
            fit.point = start;
        }
    }
    const BFGSMinimizer::Result steps = BFGSMinimizer::minimize(
        fit.point, objective,
        {.maxIterations = quasiNewtonRounds, .gradientTolerance = gradientTolerance});
    const std::vector<double> origin = steps.parameters;
    const auto around = [&origin](std::span<const double> t) {
        std::vector<double> point = origin;
        for (std::size_t i = 0; i < point.size(); ++i) {
            point[i] += simplexUnit * t[i];
        }
        return point;
    };
    const NelderMeadOptimizer::Fit simplex = NelderMeadOptimizer::minimize(
        std::vector<double>(origin.size(), 0.0), simplexRounds,
        [&](std::span<const double> t) { return objective(around(t)); });
    fit.point = around(simplex.parameters);
    fit.value = -simplex.objective;
    fit.converged = simplex.converged && std::isfinite(simplex.objective);
    return fit;
}

std::optional<std::vector<double>> fixedCovariance(std::span<const double> point,
                                                   std::size_t fixed,
                                                   const LogLikelihood& f) {
    // In standard errors: differences keep nine digits, the fourth derivative costs less.
    constexpr double step = 3e-3;
    const auto at = [&](std::size_t i, double signI, std::size_t j, double signJ) {
        std::vector<double> moved(point.begin(), point.end());
        moved[i] += signI * step;
        moved[j] += signJ * step;
        return negated(f(moved));
    };
    const double centre = negated(f(point));
    std::vector<double> hessian(fixed * fixed);
    for (std::size_t i = 0; i < fixed; ++i) {
        hessian[i * fixed + i] = (at(i, 1, i, 0) - 2.0 * centre + at(i, -1, i, 0)) / (step * step);
        for (std::size_t j = i + 1; j < fixed; ++j) {
            const double difference =
                at(i, 1, j, 1) - at(i, 1, j, -1) - at(i, -1, j, 1) + at(i, -1, j, -1);
            hessian[i * fixed + j] = difference / (4.0 * step * step);
            hessian[j * fixed + i] = hessian[i * fixed + j];
        }
    }
    return LinearAlgebra::invert(hessian, fixed);
}

}  // namespace sorvane::LinkedMaximizer
