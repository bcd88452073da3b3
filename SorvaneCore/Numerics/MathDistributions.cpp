#include "SorvaneCore/Numerics/MathDistributions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace sorvane::MathDistributions {

namespace {

// The limits of every series and continued fraction below.
constexpr double relativeTolerance = 3e-14;
constexpr int iterationLimit = 200;
constexpr double floorValue = 1e-300;
constexpr double ceilingValue = 9.999999999999999e299;

/// Beyond this denominator df the beta fraction multiplies to infinity; F is chi-square to the last
/// digit long before.
constexpr double chiSquareDf2 = 1e150;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

double heldToUnit(double p) {
    return std::clamp(p, 0.0, 1.0);
}

/// A denominator kept off zero, as the modified Lentz method asks.
double floored(double value) {
    return std::abs(value) < floorValue ? floorValue : value;
}

double invertedOrCeiling(double value) {
    return std::abs(value) < floorValue ? ceilingValue : 1.0 / value;
}

/// Lanczos' approximation with g = 7 and nine coefficients, relative error about 1e-15.
double logGamma(double x) {
    constexpr std::array coefficients{
        0.99999999999980993,  676.5203681218851,    -1259.1392167224028,
        771.3234287776531,    -176.6150291621406,   12.507343278686905,
        -0.13857109526572012, 9.984369578019572e-6, 1.5056327351493116e-7};
    constexpr double logPi = 1.1447298858494002;
    constexpr double halfLogTwoPi = 0.9189385332046727;
    if (x < 0.5) {
        return logPi - std::log(std::sin(std::numbers::pi * x)) - logGamma(1.0 - x);
    }
    const double z = x - 1.0;
    const double t = z + 7.5;
    double sum = coefficients[0];
    for (std::size_t i = 1; i < coefficients.size(); ++i) {
        sum += coefficients[i] / (z + static_cast<double>(i));
    }
    return halfLogTwoPi + (z + 0.5) * std::log(t) - t + std::log(sum);
}

/// The regularised lower incomplete gamma function by its power series, for x < a + 1.
double gammaSeriesP(double a, double x) {
    double term = 1.0 / a;
    double sum = term;
    double ap = a;
    for (int i = 0; i < iterationLimit; ++i) {
        ap += 1.0;
        term *= x / ap;
        sum += term;
        if (std::abs(term) < std::abs(sum) * relativeTolerance) {
            break;
        }
    }
    return sum * std::exp(a * std::log(x) - x - logGamma(a));
}

/// The regularised upper incomplete gamma function by Legendre's continued fraction, for x >= a
/// + 1.
double gammaContinuedFractionQ(double a, double x) {
    double b = x + 1.0 - a;
    double c = ceilingValue;
    double d = 1.0 / b;
    double h = d;
    for (int i = 1; i <= iterationLimit; ++i) {
        const double coefficient = -i * (i - a);
        b += 2.0;
        d = invertedOrCeiling(coefficient * d + b);
        c = floored(b + coefficient / c);
        const double change = d * c;
        h *= change;
        if (std::abs(change - 1.0) < relativeTolerance) {
            break;
        }
    }
    return h * std::exp(a * std::log(x) - x - logGamma(a));
}

/// The continued fraction of the incomplete beta function, even and odd steps in turn.
double betaContinuedFraction(double a, double b, double x) {
    double c = 1.0;
    double d = invertedOrCeiling(1.0 - (a + b) * x / (a + 1.0));
    double h = d;
    double change = 1.0;
    const auto step = [&](double coefficient) {
        d = invertedOrCeiling(1.0 + coefficient * d);
        c = floored(1.0 + coefficient / c);
        change = d * c;
        h *= change;
    };
    for (int m = 1; m <= iterationLimit; ++m) {
        const double m2 = 2.0 * m;
        step(x * m * (b - m) / ((a - 1.0 + m2) * (a + m2)));
        step(-x * (a + m) * (a + b + m) / ((a + m2) * (a + 1.0 + m2)));
        if (std::abs(change - 1.0) < relativeTolerance) {
            break;
        }
    }
    return h;
}

/// I(x; a, b). The fraction converges fast on one side of (a + 1)/(a + b + 2); the other side goes
/// by I(x; a, b) = 1 - I(1 - x; b, a).
double regularizedIncompleteBeta(double a, double b, double x) {
    if (x <= 0.0) {
        return 0.0;
    }
    if (x >= 1.0) {
        return 1.0;
    }
    const double front = std::exp(logGamma(a + b) - logGamma(a) - logGamma(b) + a * std::log(x) +
                                  b * std::log(1.0 - x));
    if (x < (a + 1.0) / (a + b + 2.0)) {
        return front * betaContinuedFraction(a, b, x) / a;
    }
    return 1.0 - front * betaContinuedFraction(b, a, 1.0 - x) / b;
}

/// P(|T| >= |t|) for x = df / (df + t^2): I(x; df/2, 1/2) with the logarithm of gamma(1/2) as a
/// constant.
double studentTwoSidedTail(double x, double df) {
    constexpr double logRootPi = 0.5723649429246995;
    if (x <= 0.0) {
        return 0.0;
    }
    if (x >= 1.0) {
        return 1.0;
    }
    const double a = df / 2.0;
    const double front = std::exp(logGamma(a + 0.5) - logGamma(a) - logRootPi + a * std::log(x) +
                                  0.5 * std::log(1.0 - x));
    if (x < (a + 1.0) / (a + 2.5)) {
        return front * betaContinuedFraction(a, 0.5, x) / a;
    }
    return 1.0 - 2.0 * front * betaContinuedFraction(0.5, a, 1.0 - x);
}

}  // namespace

double standardNormalCDF(double z) {
    return 0.5 * (1.0 + std::erf(z / std::numbers::sqrt2));
}

double chiSquareRightTailPValue(double x, double df) {
    if (!(x >= 0.0 && df > 0.0)) {
        return notANumber;
    }
    const double h = x / 2.0;
    if (h <= 0.0) {
        return 1.0;
    }
    if (std::isinf(h) && std::isfinite(df)) {
        return 0.0;
    }
    const double a = df / 2.0;
    const double lower = h < a + 1.0 ? gammaSeriesP(a, h) : 1.0 - gammaContinuedFractionQ(a, h);
    return heldToUnit(1.0 - lower);
}

double fRightTailPValue(double f, double df1, double df2) {
    if (!(df1 > 0.0 && df2 > 0.0 && f >= 0.0)) {
        return notANumber;
    }
    const double u = f * df1;
    if (std::isinf(u)) {
        return 0.0;
    }
    if (df2 > chiSquareDf2) {
        return chiSquareRightTailPValue(u, df1);
    }
    return heldToUnit(1.0 - regularizedIncompleteBeta(df1 / 2.0, df2 / 2.0, u / (u + df2)));
}

double studentTPValue(double t, double df) {
    if (!(df > 0.0) || std::isnan(t)) {
        return notANumber;
    }
    if (std::isinf(t)) {
        return 0.0;
    }
    const double lower = studentTCDF(std::abs(t), df);
    return heldToUnit((1.0 - lower) + (1.0 - lower));
}

double studentTCDF(double t, double df) {
    if (t == 0.0) {
        return 0.5;
    }
    if (std::isinf(df)) {
        return standardNormalCDF(t);
    }
    const double tail = studentTwoSidedTail(df / (df + t * t), df);
    return t > 0.0 ? 1.0 - tail / 2.0 : tail / 2.0;
}

double studentTCritical(double twoTailedAlpha, double df) {
    constexpr double bracketEnd = 100.0;
    constexpr int halvings = 120;
    if (!(twoTailedAlpha > 0.0 && twoTailedAlpha < 1.0) || !(df > 0.0)) {
        return notANumber;
    }
    const double target = 1.0 - twoTailedAlpha / 2.0;
    double low = 0.0;
    double high = bracketEnd;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (low + high) / 2.0;
        (studentTCDF(middle, df) < target ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

}  // namespace sorvane::MathDistributions
