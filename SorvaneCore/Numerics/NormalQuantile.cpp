#include "SorvaneCore/Numerics/NormalQuantile.h"

#include <array>
#include <cmath>
#include <limits>

#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane {

namespace {

constexpr double lowerRegionEnd = 0.02425;

/// The value of a polynomial, coefficients from the highest power down.
template <std::size_t Count>
double polynomial(const std::array<double, Count>& coefficients, double x) {
    double value = 0.0;
    for (const double coefficient : coefficients) {
        value = value * x + coefficient;
    }
    return value;
}

double centralApproximation(double p) {
    constexpr std::array numerator{-3.969683028665376e+01, 2.209460984245205e+02,
                                   -2.759285104469687e+02, 1.383577518672690e+02,
                                   -3.066479806614716e+01, 2.506628277459239e+00};
    constexpr std::array denominator{-5.447609879822406e+01, 1.615858368580409e+02,
                                     -1.556989798598866e+02, 6.680131188771972e+01,
                                     -1.328068155288572e+01, 1.0};
    const double q = p - 0.5;
    return q * polynomial(numerator, q * q) / polynomial(denominator, q * q);
}

double lowerApproximation(double p) {
    constexpr std::array numerator{-7.784894002430293e-03, -3.223964580411365e-01,
                                   -2.400758277161838e+00, -2.549732539343734e+00,
                                   4.374664141464968e+00,  2.938163982698783e+00};
    constexpr std::array denominator{7.784695709041462e-03, 3.224671290700398e-01,
                                     2.445134137142996e+00, 3.754408661907416e+00, 1.0};
    const double q = std::sqrt(-2.0 * std::log(p));
    return polynomial(numerator, q) / polynomial(denominator, q);
}

double approximation(double p) {
    if (p < lowerRegionEnd) {
        return lowerApproximation(p);
    }
    if (p <= 1.0 - lowerRegionEnd) {
        return centralApproximation(p);
    }
    return -lowerApproximation(1.0 - p);
}

double refined(double x, double p) {
    constexpr double rootTwoPi = 2.506628274631;
    const double error = MathDistributions::standardNormalCDF(x) - p;
    const double u = error * rootTwoPi * std::exp(x * x / 2.0);
    return x - u / (1.0 + x * u / 2.0);
}

}  // namespace

double inverseStandardNormalCDF(double p) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (p <= 0.0) {
        return -infinity;
    }
    if (p >= 1.0) {
        return infinity;
    }
    return refined(approximation(p), p);
}

}  // namespace sorvane
