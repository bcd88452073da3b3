#include "SorvaneCore/Numerics/NelderMeadOptimizer.h"

#include <algorithm>
#include <cmath>

namespace sorvane::NelderMeadOptimizer {

namespace {

using Point = std::vector<double>;
using Function = std::function<double(std::span<const double>)>;

constexpr double relativeStep = 0.1;
constexpr double zeroCoordinate = 1e-8;
constexpr double stepAtZero = 0.1;
constexpr double expansion = 2.0;
constexpr double contraction = -0.5;
constexpr double shrinkage = 0.5;
constexpr double leastSpread = 1e-10;

struct Vertex {
    Point point{};
    double value = 0.0;
};

/// The vertices, best first.
class Simplex {
public:
    Simplex(std::span<const double> start, const Function& f) : f_(f) {
        const Point first(start.begin(), start.end());
        vertices_.push_back(at(first));
        for (std::size_t i = 0; i < first.size(); ++i) {
            Point moved = first;
            const double size = std::abs(first[i]);
            moved[i] += size > zeroCoordinate ? relativeStep * size : stepAtZero;
            vertices_.push_back(at(moved));
        }
        sort();
    }

    const Vertex& best() const { return vertices_.front(); }
    double spread() const { return vertices_.back().value - vertices_.front().value; }

    /// One move of the worst vertex, or of all but the best.
    void move() {
        centroid_ = centroid();
        const Vertex reflected = combine(1.0);
        if (reflected.value < vertices_.front().value) {
            const Vertex expanded = combine(expansion);
            vertices_.back() = expanded.value < reflected.value ? expanded : reflected;
        } else if (reflected.value < vertices_[vertices_.size() - 2].value) {
            vertices_.back() = reflected;
        } else if (const Vertex contracted = combine(contraction);
                   contracted.value < vertices_.back().value) {
            vertices_.back() = contracted;
        } else {
            shrink();
        }
        sort();
    }

private:
    Vertex at(const Point& point) const {
        const double value = f_(point);
        return {.point = point,
                .value = std::isnan(value) ? std::numeric_limits<double>::infinity() : value};
    }

    /// Of all but the worst.
    Point centroid() const {
        const std::size_t n = vertices_.size() - 1;
        Point mean(n, 0.0);
        for (std::size_t v = 0; v < n; ++v) {
            for (std::size_t i = 0; i < n; ++i) {
                mean[i] += vertices_[v].point[i] / static_cast<double>(n);
            }
        }
        return mean;
    }

    /// The centroid plus t times the way from the worst vertex to it.
    Vertex combine(double t) const {
        Point point = centroid_;
        for (std::size_t i = 0; i < point.size(); ++i) {
            point[i] += t * (centroid_[i] - vertices_.back().point[i]);
        }
        return at(point);
    }

    void shrink() {
        const Point& target = vertices_.front().point;
        for (std::size_t v = 1; v < vertices_.size(); ++v) {
            Point point = target;
            for (std::size_t i = 0; i < point.size(); ++i) {
                point[i] += shrinkage * (vertices_[v].point[i] - target[i]);
            }
            vertices_[v] = at(point);
        }
    }

    void sort() { std::ranges::stable_sort(vertices_, {}, &Vertex::value); }

    const Function& f_;
    std::vector<Vertex> vertices_;
    Point centroid_;
};

}  // namespace

Fit minimize(std::span<const double> start, int maxIterations, const Function& f) {
    Simplex simplex(start, f);
    int iterations = 0;
    // Not >=, which a spread of two infinities would end.
    while (!(simplex.spread() < leastSpread) && iterations < maxIterations) {
        simplex.move();
        ++iterations;
    }
    return {.parameters = simplex.best().point,
            .objective = simplex.best().value,
            .iterations = iterations,
            .converged = simplex.spread() < leastSpread};
}

}  // namespace sorvane::NelderMeadOptimizer
