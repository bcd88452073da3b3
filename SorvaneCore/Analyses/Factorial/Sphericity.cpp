#include "SorvaneCore/Analyses/Factorial/Sphericity.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane {

namespace {

/// Rounding leaves eigenvalues that should be 0 at about this share of the largest, or below.
constexpr double roundingShare = 1e-12;

/// Helmert's contrasts, k - 1 rows of k: each condition against the mean of those before it.
std::vector<double> orthonormalContrasts(std::size_t k) {
    std::vector<double> contrasts((k - 1) * k, 0.0);
    for (std::size_t row = 0; row + 1 < k; ++row) {
        const auto before = static_cast<double>(row + 1);
        const double norm = std::sqrt(before * (before + 1.0));
        for (std::size_t j = 0; j <= row; ++j) {
            contrasts[row * k + j] = 1.0 / norm;
        }
        contrasts[row * k + row + 1] = -before / norm;
    }
    return contrasts;
}

/// C S C'
std::vector<double> contrastCovariance(std::span<const double> covariance, std::size_t k) {
    const std::vector<double> contrasts = orthonormalContrasts(k);
    const std::size_t d = k - 1;
    std::vector<double> transposed(k * d);
    for (std::size_t i = 0; i < d; ++i) {
        for (std::size_t j = 0; j < k; ++j) {
            transposed[j * d + i] = contrasts[i * k + j];
        }
    }
    const std::vector<double> left = LinearAlgebra::multiply(contrasts, d, k, covariance, k);
    return LinearAlgebra::multiply(left, d, k, transposed, d);
}

/// The eigenvalues, but for a common factor; none when they cannot be had.
std::vector<double> scaledEigenvalues(std::vector<double> matrix, std::size_t d) {
    double trace = 0.0;
    for (std::size_t i = 0; i < d; ++i) {
        trace += matrix[i * d + i];
    }
    if (!(trace > 0.0) || !std::isfinite(trace)) {
        return {};
    }
    // W and the epsilons do not depend on the scale, but the test of the eigenvalues does. A power
    // of two costs no digits.
    const double scale = std::ldexp(1.0, -std::ilogb(trace));
    for (double& entry : matrix) {
        entry *= scale;
    }
    const auto eigen = LinearAlgebra::symmetricEigen(matrix, d);
    return eigen ? eigen->values : std::vector<double>();
}

/// Mauchly's W: NaN when there are no eigenvalues or one of them is 0.
double productToMean(const std::vector<double>& eigenvalues) {
    if (eigenvalues.empty() || !(eigenvalues.back() > roundingShare * eigenvalues.front())) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    double mean = 0.0;
    for (const double value : eigenvalues) {
        mean += value / static_cast<double>(eigenvalues.size());
    }
    double w = 1.0;
    for (const double value : eigenvalues) {
        w *= value / mean;
    }
    return std::clamp(w, 0.0, 1.0);
}

void setMauchly(Sphericity& result, double w, double d, double n) {
    const double correction = 1.0 - (2.0 * d * d + d + 2.0) / (6.0 * d * (n - 1.0));
    result.mauchlyW = w;
    // Less from 0, so that a W of 1 gives no negative zero.
    result.mauchlyChiSquare = 0.0 - (n - 1.0) * correction * std::log(w);
    result.mauchlyP = MathDistributions::chiSquareRightTailPValue(
        result.mauchlyChiSquare, static_cast<double>(result.mauchlyDF));
}

double greenhouseGeisser(const std::vector<double>& eigenvalues, double d) {
    double sum = 0.0;
    double squares = 0.0;
    for (const double value : eigenvalues) {
        sum += value;
        squares += value * value;
    }
    return squares > 0.0 ? std::clamp(sum * sum / (d * squares), 1.0 / d, 1.0) : 1.0;
}

double huynhFeldt(double epsilon, double d, double n) {
    const double denominator = d * (n - 1.0 - d * epsilon);
    // Two subjects make it zero, but for rounding.
    return std::abs(denominator) <= roundingShare * d * n
               ? 1.0
               : std::clamp((n * d * epsilon - 2.0) / denominator, 1.0 / d, 1.0);
}

}  // namespace

Sphericity Sphericity::of(std::span<const double> covariance, std::int64_t k, std::int64_t n) {
    const auto conditions = static_cast<std::size_t>(k);
    const auto d = static_cast<double>(k - 1);
    const auto subjects = static_cast<double>(n);
    const std::vector<double> eigenvalues =
        scaledEigenvalues(contrastCovariance(covariance, conditions), conditions - 1);
    Sphericity result{.mauchlyDF = (k - 1) * k / 2 - 1};
    if (k > 2) {
        setMauchly(result, productToMean(eigenvalues), d, subjects);
    }
    result.greenhouseGeisserEpsilon = greenhouseGeisser(eigenvalues, d);
    result.huynhFeldtEpsilon = huynhFeldt(result.greenhouseGeisserEpsilon, d, subjects);
    return result;
}

}  // namespace sorvane
