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

/// How often a step is halved at most.
constexpr int mostHalvings = 40;
/// Of the objective: what rounding may take from it.
constexpr double noise = 1e-10;

bool isWorse(const Evaluation& next, double before) {
    return !next.isFinite() || next.objective < before - noise * (std::abs(before) + 1.0);
}

/// Evaluates where the step has led, and takes half of it back as long as that is worse.
Evaluation evaluateHalving(std::vector<double>& parameters,
                           std::vector<double>& step,
                           double before,
                           const Evaluate& evaluate) {
    Evaluation next = evaluate(parameters);
    for (int halving = 0; halving < mostHalvings && isWorse(next, before); ++halving) {
        for (std::size_t j = 0; j < step.size(); ++j) {
            step[j] *= 0.5;
            parameters[j] -= step[j];
        }
        next = evaluate(parameters);
    }
    return next;
}

void add(std::vector<double>& parameters, std::span<const double> step) {
    for (std::size_t j = 0; j < parameters.size(); ++j) {
        parameters[j] += step[j];
    }
}

/// Whether every entry is below the tolerance, which no NaN is.
bool isSmall(std::span<const double> step, double tolerance) {
    return std::ranges::all_of(step,
                               [tolerance](double each) { return std::abs(each) < tolerance; });
}

/// The same beside the size of a large parameter, of which rounding leaves no such digits.
bool isSmallBeside(std::span<const double> parameters,
                   std::span<const double> step,
                   double tolerance) {
    for (std::size_t j = 0; j < step.size(); ++j) {
        if (!(std::abs(step[j]) < tolerance * std::max(1.0, std::abs(parameters[j])))) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool Evaluation::isFinite() const {
    const auto finite = [](double value) {
        return std::isfinite(value);
    };
    return finite(objective) && std::ranges::all_of(gradient, finite) &&
           std::ranges::all_of(negativeHessian, finite);
}

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
        add(result.parameters, step);
        if (isSmall(step, limits.tolerance)) {
            return stopped(std::move(result), OptimizerStop::converged);
        }
    }
    return stopped(std::move(result), OptimizerStop::iterationLimit);
}

OptimizerResult dampedNewton(std::span<const double> initial,
                             const Limits& limits,
                             const Evaluate& evaluate,
                             const ProvesDivergence& provesDivergence) {
    const std::size_t count = initial.size();
    OptimizerResult result{.parameters = {initial.begin(), initial.end()}};
    Evaluation current = evaluate(initial);
    std::vector<double> step(count, 0.0);
    while (current.isFinite()) {
        result.objective = current.objective;
        if (result.iterations >= limits.maxIterations) {
            return stopped(std::move(result), provesDivergence(step)
                                                  ? OptimizerStop::diverged
                                                  : OptimizerStop::iterationLimit);
        }
        std::optional<std::vector<double>> inverse =
            LinearAlgebra::invert(current.negativeHessian, count);
        if (!inverse) {
            return stopped(std::move(result), provesDivergence(step) ? OptimizerStop::diverged
                                                                     : OptimizerStop::singular);
        }
        step = LinearAlgebra::multiply(*inverse, count, count, current.gradient, 1);
        result.inverseNegativeHessian = std::move(*inverse);
        ++result.iterations;
        add(result.parameters, step);
        if (isSmallBeside(result.parameters, step, limits.tolerance)) {
            return stopped(std::move(result), OptimizerStop::converged);
        }
        current = evaluateHalving(result.parameters, step, current.objective, evaluate);
        if (current.isFinite() && provesDivergence(step)) {
            return stopped(std::move(result), OptimizerStop::diverged);
        }
    }
    return stopped(std::move(result), OptimizerStop::nonFinite);
}

}  // namespace sorvane::IRLS
