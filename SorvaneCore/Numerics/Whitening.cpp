#include "SorvaneCore/Numerics/Whitening.h"

#include <cmath>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::Whitening {

namespace {

using Matrix = std::vector<double>;

std::optional<Matrix> lowerFactor(std::span<const double> e, std::size_t p) {
    constexpr double ownShare = 1e-12;
    Matrix lower(p * p, 0.0);
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            double left = e[i * p + j];
            for (std::size_t l = 0; l < j; ++l) {
                left -= lower[i * p + l] * lower[j * p + l];
            }
            if (j < i) {
                lower[i * p + j] = left / lower[j * p + j];
            } else if (left > ownShare * e[i * p + i]) {
                lower[i * p + i] = std::sqrt(left);
            } else {
                return std::nullopt;
            }
        }
    }
    return lower;
}

}  // namespace

std::optional<Matrix> inverseOf(std::span<const double> e, std::size_t p) {
    const std::optional<Matrix> lower = lowerFactor(e, p);
    if (!lower) {
        return std::nullopt;
    }
    Matrix inverse(p * p, 0.0);
    for (std::size_t column = 0; column < p; ++column) {
        for (std::size_t i = column; i < p; ++i) {
            double left = i == column ? 1.0 : 0.0;
            for (std::size_t l = column; l < i; ++l) {
                left -= (*lower)[i * p + l] * inverse[l * p + column];
            }
            inverse[i * p + column] = left / (*lower)[i * p + i];
        }
    }
    return inverse;
}

Matrix sandwich(std::span<const double> a, std::span<const double> b, std::size_t p) {
    const Matrix left = LinearAlgebra::multiply(a, p, p, b, p);
    Matrix result(p * p, 0.0);
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            for (std::size_t l = 0; l < p; ++l) {
                result[i * p + j] += left[i * p + l] * a[j * p + l];
            }
            result[j * p + i] = result[i * p + j];
        }
    }
    return result;
}

Matrix transposedTimes(std::span<const double> a, std::span<const double> v, std::size_t p) {
    Matrix result(p, 0.0);
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < p; ++j) {
            result[j] += a[i * p + j] * v[i];
        }
    }
    return result;
}

}  // namespace sorvane::Whitening
