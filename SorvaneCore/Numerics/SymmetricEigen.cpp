#include <algorithm>
#include <cmath>
#include <numeric>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::LinearAlgebra {

namespace {

constexpr int sweepLimit = 100;
constexpr double sweepGoal = 1e-30;
constexpr double acceptedRemainder = 1e-18;
constexpr double negligibleEntry = 1e-300;

struct Rotation {
    double cosine = 1.0;
    double sine = 0.0;
};

double squaresAboveDiagonal(const std::vector<double>& a, std::size_t n) {
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i + 1; j < n; ++j) {
            sum += a[i * n + j] * a[i * n + j];
        }
    }
    return sum;
}

/// The rotation that clears the entry between two diagonal entries, by the smaller of its two
/// angles.
Rotation clearingRotation(double first, double between, double second) {
    const double theta = (second - first) / (2.0 * between);
    const double root = std::sqrt(theta * theta + 1.0);
    const double tangent = theta >= 0.0 ? 1.0 / (theta + root) : -1.0 / (root - theta);
    const double cosine = 1.0 / std::sqrt(tangent * tangent + 1.0);
    return {.cosine = cosine, .sine = tangent * cosine};
}

/// Rotates two vectors of n entries that lie `stride` apart.
void rotate(double* p, double* q, std::size_t n, std::size_t stride, Rotation by) {
    for (std::size_t i = 0; i < n * stride; i += stride) {
        const double oldP = p[i];
        const double oldQ = q[i];
        p[i] = by.cosine * oldP - by.sine * oldQ;
        q[i] = by.sine * oldP + by.cosine * oldQ;
    }
}

/// One pass over all pairs. `vectors` holds the eigenvectors as rows.
void sweep(std::vector<double>& a, std::vector<double>& vectors, std::size_t n) {
    for (std::size_t p = 0; p + 1 < n; ++p) {
        for (std::size_t q = p + 1; q < n; ++q) {
            const double between = a[p * n + q];
            if (std::abs(between) < negligibleEntry) {
                continue;
            }
            const Rotation by = clearingRotation(a[p * n + p], between, a[q * n + q]);
            rotate(&a[p], &a[q], n, n, by);
            rotate(&a[p * n], &a[q * n], n, 1, by);
            rotate(&vectors[p * n], &vectors[q * n], n, 1, by);
        }
    }
}

/// Unit length, and the component of largest absolute value positive.
void normalize(std::vector<double>& vector) {
    double squares = 0.0;
    for (const double component : vector) {
        squares += component * component;
    }
    const double norm = std::sqrt(squares);
    double largest = vector.front();
    for (const double component : vector) {
        if (std::abs(component) > std::abs(largest)) {
            largest = component;
        }
    }
    const double divisor = (norm > 0.0 ? norm : 1.0) * (largest < 0.0 ? -1.0 : 1.0);
    for (double& component : vector) {
        component /= divisor;
    }
}

/// The diagonal and the vectors, sorted by value from the largest.
SymmetricEigen sortedPairs(const std::vector<double>& a,
                           const std::vector<double>& vectors,
                           std::size_t n) {
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(
        order, [&](std::size_t l, std::size_t r) { return a[l * n + l] > a[r * n + r]; });
    SymmetricEigen eigen;
    for (const std::size_t i : order) {
        eigen.values.push_back(a[i * n + i]);
        const auto first = vectors.begin() + static_cast<std::ptrdiff_t>(i * n);
        eigen.vectors.emplace_back(first, first + static_cast<std::ptrdiff_t>(n));
        normalize(eigen.vectors.back());
    }
    return eigen;
}

}  // namespace

std::optional<SymmetricEigen> symmetricEigen(std::span<const double> matrix, std::size_t n) {
    if (n < 1 || matrix.size() % n != 0 || matrix.size() / n != n) {
        return std::nullopt;
    }
    if (n == 1) {
        return SymmetricEigen{.values = {matrix[0]}, .vectors = {{1.0}}};
    }
    std::vector<double> a(matrix.begin(), matrix.end());
    std::vector<double> vectors(n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        vectors[i * n + i] = 1.0;
    }
    for (int pass = 0; pass < sweepLimit; ++pass) {
        const double remainder = squaresAboveDiagonal(a, n);
        // A NaN never leaves the matrix again.
        if (remainder < sweepGoal || std::isnan(remainder)) {
            break;
        }
        sweep(a, vectors, n);
    }
    if (!(squaresAboveDiagonal(a, n) < acceptedRemainder)) {
        return std::nullopt;
    }
    return sortedPairs(a, vectors, n);
}

}  // namespace sorvane::LinearAlgebra
