#include "SorvaneCore/Models/Multilevel/VarianceMinimizers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace sorvane::VarianceMinimizers {

namespace {

struct Vertex {
    std::vector<double> point{};
    double value = 0.0;
};

using Function = std::function<double(std::span<const double>)>;

std::vector<Vertex> firstSimplex(std::span<const double> start, const Function& f) {
    constexpr double share = 0.05;
    constexpr double nextToZero = 1e-6;
    std::vector<Vertex> simplex;
    std::vector<double> point(start.begin(), start.end());
    simplex.push_back({point, f(point)});
    for (std::size_t i = 0; i < start.size(); ++i) {
        const double size = std::abs(start[i]);
        point[i] = start[i] + (size > nextToZero ? share * size : share);
        simplex.push_back({point, f(point)});
        point[i] = start[i];
    }
    return simplex;
}

std::vector<double> centroidOfAllButLast(const std::vector<Vertex>& simplex) {
    std::vector<double> centre(simplex.size() - 1, 0.0);
    for (std::size_t v = 0; v + 1 < simplex.size(); ++v) {
        for (std::size_t i = 0; i < centre.size(); ++i) {
            centre[i] += simplex[v].point[i] / static_cast<double>(centre.size());
        }
    }
    return centre;
}

/// The point at `from`, moved by `factor` of the way to `to`.
Vertex between(const std::vector<double>& from,
               const std::vector<double>& to,
               double factor,
               const Function& f) {
    std::vector<double> point(from.size());
    for (std::size_t i = 0; i < point.size(); ++i) {
        point[i] = from[i] + factor * (to[i] - from[i]);
    }
    const double value = f(point);
    return {std::move(point), value};
}

/// Replaces the last, worst vertex of a sorted simplex, or shrinks it.
void moveWorst(std::vector<Vertex>& simplex, const Function& f) {
    constexpr double half = 0.5;
    const std::vector<double> centre = centroidOfAllButLast(simplex);
    Vertex& worst = simplex.back();
    Vertex reflected = between(centre, worst.point, -1.0, f);
    if (reflected.value < simplex.front().value) {
        Vertex expanded = between(centre, reflected.point, 2.0, f);
        worst = std::move(expanded.value < reflected.value ? expanded : reflected);
        return;
    }
    if (reflected.value < simplex[simplex.size() - 2].value) {
        worst = std::move(reflected);
        return;
    }
    const bool isOutside = reflected.value < worst.value;
    Vertex contracted = between(centre, isOutside ? reflected.point : worst.point, half, f);
    if (contracted.value < std::min(worst.value, reflected.value)) {
        worst = std::move(contracted);
        return;
    }
    for (std::size_t v = 1; v < simplex.size(); ++v) {
        simplex[v] = between(simplex.front().point, simplex[v].point, half, f);
    }
}

constexpr double goldenShare = 0.3819660112501051;

/// Where a search for one variable stands: its interval and the three best points.
struct Bracket {
    double a;
    double b;
    /// The best, the one before and the one before that.
    double x, w, v;
    double fx, fw, fv;
    /// The last step and the one before.
    double step = 0.0;
    double before = 0.0;

    double middle() const { return 0.5 * (a + b); }
    double tolerance() const { return std::abs(x) * 1e-10 + 1e-12; }

    /// The step to the vertex of the parabola through the three points, or a golden section.
    void chooseStep();
    void accept(double u, double fu);
};

void Bracket::chooseStep() {
    const double tol = tolerance();
    bool isParabolic = false;
    if (std::abs(before) > tol) {
        const double r = (x - w) * (fx - fv);
        double q = (x - v) * (fx - fw);
        double p = (x - v) * q - (x - w) * r;
        q = 2.0 * (q - r);
        p = q > 0.0 ? -p : p;
        q = std::abs(q);
        const double former = std::exchange(before, step);
        if (std::abs(p) < std::abs(0.5 * q * former) && p > q * (a - x) && p < q * (b - x)) {
            isParabolic = true;
            step = p / q;
            const double u = x + step;
            if (u - a < 2.0 * tol || b - u < 2.0 * tol) {
                step = std::copysign(tol, middle() - x);
            }
        }
    }
    if (!isParabolic) {
        before = x < middle() ? b - x : a - x;
        step = goldenShare * before;
    }
}

void Bracket::accept(double u, double fu) {
    if (fu <= fx) {
        (u < x ? b : a) = x;
        v = std::exchange(w, x);
        fv = std::exchange(fw, fx);
        x = u;
        fx = fu;
        return;
    }
    (u < x ? a : b) = u;
    if (fu <= fw || w == x) {
        v = std::exchange(w, u);
        fv = std::exchange(fw, fu);
    } else if (fu <= fv || v == x || v == w) {
        v = u;
        fv = fu;
    }
}

}  // namespace

double brent(double low, double high, const std::function<double(double)>& f) {
    constexpr int limit = 80;
    const double first = low + goldenShare * (high - low);
    const double value = f(first);
    Bracket bracket{.a = low,
                    .b = high,
                    .x = first,
                    .w = first,
                    .v = first,
                    .fx = value,
                    .fw = value,
                    .fv = value};
    for (int i = 0; i < limit; ++i) {
        const double tol = bracket.tolerance();
        if (std::abs(bracket.x - bracket.middle()) <= 2.0 * tol - 0.5 * (bracket.b - bracket.a)) {
            break;
        }
        bracket.chooseStep();
        const double u = std::abs(bracket.step) >= tol
                             ? bracket.x + bracket.step
                             : bracket.x + std::copysign(tol, bracket.step);
        bracket.accept(u, f(u));
    }
    return bracket.x;
}

std::vector<double> simplex(std::span<const double> start, const Function& f) {
    constexpr int limit = 250;
    constexpr double spread = 1e-10;
    std::vector<Vertex> vertices = firstSimplex(start, f);
    for (int round = 0;; ++round) {
        std::ranges::stable_sort(vertices, {}, &Vertex::value);
        if (round == limit || std::abs(vertices.back().value - vertices.front().value) < spread) {
            return vertices.front().point;
        }
        moveWorst(vertices, f);
    }
}

}  // namespace sorvane::VarianceMinimizers
