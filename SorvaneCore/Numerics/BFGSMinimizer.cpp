#include "SorvaneCore/Numerics/BFGSMinimizer.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace sorvane::BFGSMinimizer {

namespace {

using Vector = std::vector<double>;

constexpr double unusableValue = 1e12;
constexpr double relativeDifference = 1e-6;
constexpr double sufficientDecrease = 1e-4;
constexpr int mostHalvings = 60;
constexpr double leastCurvature = 1e-12;
constexpr double leastMove = 1e-10;

double dot(const Vector& a, const Vector& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

double norm(const Vector& a) {
    return std::sqrt(dot(a, a));
}

/// A minus B.
Vector difference(const Vector& a, const Vector& b) {
    Vector result(a.size());
    std::transform(a.begin(), a.end(), b.begin(), result.begin(), std::minus<>());
    return result;
}

Vector times(const Vector& matrix, const Vector& x) {
    Vector result(x.size(), 0.0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < x.size(); ++j) {
            result[i] += matrix[i * x.size() + j] * x[j];
        }
    }
    return result;
}

double read(const Objective& objective, const Vector& point) {
    const double value = objective(point);
    return std::isfinite(value) ? value : unusableValue;
}

Vector differences(const Objective& objective, std::span<const double> at) {
    Vector point(at.begin(), at.end());
    Vector gradient(point.size());
    for (std::size_t i = 0; i < point.size(); ++i) {
        const double centre = point[i];
        const double h = std::max(std::abs(centre) * relativeDifference, relativeDifference);
        point[i] = centre + h;
        const double above = read(objective, point);
        point[i] = centre - h;
        const double below = read(objective, point);
        point[i] = centre;
        gradient[i] = (above - below) / (2.0 * h);
    }
    return gradient;
}

/// A point of the search, and what is known of the objective there.
struct Position {
    Vector point{};
    double value = 0.0;
    Vector gradient{};
};

/// The first halving of the direction that lowers the objective enough.
std::optional<Position> searchLine(const Objective& objective,
                                   const Position& from,
                                   const Vector& direction,
                                   double slope) {
    double step = 1.0;
    for (int halving = 0; halving <= mostHalvings; ++halving) {
        Position candidate{.point = from.point};
        for (std::size_t i = 0; i < direction.size(); ++i) {
            candidate.point[i] += step * direction[i];
        }
        candidate.value = read(objective, candidate.point);
        if (candidate.value <= from.value + sufficientDecrease * step * slope) {
            return candidate;
        }
        step *= 0.5;
    }
    return std::nullopt;
}

/// (I - s y'/s'y) H (I - y s'/s'y) + s s'/s'y, multiplied out.
void update(Vector& inverseHessian, const Vector& s, const Vector& y) {
    const double curvature = dot(s, y);
    if (!(curvature > leastCurvature)) {
        return;
    }
    const std::size_t n = s.size();
    const Vector hy = times(inverseHessian, y);
    const double factor = (1.0 + dot(y, hy) / curvature) / curvature;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            inverseHessian[i * n + j] +=
                factor * s[i] * s[j] - (hy[i] * s[j] + s[i] * hy[j]) / curvature;
        }
    }
}

Vector descentDirection(Vector& inverseHessian, const Vector& gradient) {
    const auto negated = [](Vector v) {
        std::transform(v.begin(), v.end(), v.begin(), std::negate<>());
        return v;
    };
    Vector direction = negated(times(inverseHessian, gradient));
    if (dot(gradient, direction) < 0.0) {
        return direction;
    }
    inverseHessian = identity(gradient.size());
    return negated(gradient);
}

Result resultOf(const Position& position, int iterations, bool converged) {
    return {.parameters = position.point,
            .objective = position.value,
            .gradientNorm = norm(position.gradient),
            .iterations = iterations,
            .converged = converged};
}

}  // namespace

Vector identity(std::size_t n) {
    Vector matrix(n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        matrix[i * n + i] = 1.0;
    }
    return matrix;
}

Result minimize(std::span<const double> start, const Objective& objective, const Limits& limits) {
    const auto gradient = [&objective](std::span<const double> point) {
        return differences(objective, point);
    };
    return minimize(start, objective, gradient, limits);
}

Result minimize(std::span<const double> start,
                const Objective& objective,
                const Gradient& gradient,
                const Limits& limits) {
    Position position{.point = {start.begin(), start.end()}};
    position.value = read(objective, position.point);
    position.gradient = gradient(position.point);
    Vector inverseHessian = identity(start.size());
    for (int round = 0; round < limits.maxIterations; ++round) {
        if (norm(position.gradient) < limits.gradientTolerance) {
            return resultOf(position, round, true);
        }
        const Vector direction = descentDirection(inverseHessian, position.gradient);
        const double slope = dot(position.gradient, direction);
        std::optional<Position> next = searchLine(objective, position, direction, slope);
        if (!next) {
            return resultOf(position, round, false);
        }
        next->gradient = gradient(next->point);
        const Vector move = difference(next->point, position.point);
        update(inverseHessian, move, difference(next->gradient, position.gradient));
        position = std::move(*next);
        if (norm(move) < leastMove) {
            return resultOf(position, round + 1, true);
        }
    }
    return resultOf(position, limits.maxIterations,
                    norm(position.gradient) < limits.gradientTolerance);
}

}  // namespace sorvane::BFGSMinimizer
