#include "SorvaneCore/Models/Structural/SEMFitMeasures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::SEMFitMeasures {

namespace {

double comparativeFit(double chiSquare, double df, double baseline, double baselineDf) {
    const double excess = std::max(chiSquare - df, 0.0);
    const double baselineExcess = baseline - baselineDf;
    const double whole = baselineExcess > 0.0 ? std::max(excess, baselineExcess) : excess;
    return whole > 0.0 ? 1.0 - excess / whole : 1.0;
}

double tuckerLewis(double chiSquare, double df, double baseline, double baselineDf) {
    if (!(df > 0.0) || !(baselineDf > 0.0)) {
        return 1.0;
    }
    const double ratio = baseline / baselineDf;
    return ratio == 1.0 ? 1.0 : (ratio - chiSquare / df) / (ratio - 1.0);
}

/// Terms beyond ten standard deviations and a little more do not count.
double farAbove(double mean) {
    return std::ceil(mean + 10.0 * std::sqrt(mean) + 20.0);
}

double farBelow(double mean) {
    return std::max(0.0, std::floor(mean - 10.0 * std::sqrt(mean) - 20.0));
}

/// Unlike that of the standard library it writes no global.
double logGamma(double x) {
    int sign = 0;
    return ::lgamma_r(x, &sign);
}

/// x^a e^-x / Gamma(a + 1).
double poissonTerm(double a, double x) {
    return x > 0.0 ? std::exp(a * std::log(x) - x - logGamma(a + 1.0)) : (a == 0.0 ? 1.0 : 0.0);
}

/// The noncentrality at which the chi-square leaves `target` below it.
double noncentralityAt(double chiSquare, double df, double target) {
    constexpr int mostDoublings = 59;
    constexpr int halvings = 120;
    const auto below = [&](double noncentrality) {
        return noncentralChiSquareCDF(chiSquare, df, noncentrality);
    };
    if (below(0.0) < target) {
        return 0.0;
    }
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < mostDoublings && below(high) >= target; ++i) {
        low = high;
        high *= 2.0;
    }
    for (int i = 0; i < halvings; ++i) {
        const double middle = std::midpoint(low, high);
        if (middle == low || middle == high) {
            break;
        }
        (below(middle) >= target ? low : high) = middle;
    }
    return std::midpoint(low, high);
}

}  // namespace

double noncentralChiSquareCDF(double x, double df, double noncentrality) {
    constexpr double nextToCentral = 1e-12;
    if (!(df > 0.0) || !(noncentrality >= 0.0) || !std::isfinite(x) ||
        !std::isfinite(noncentrality)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (!(x > 0.0)) {
        return 0.0;
    }
    const double half = 0.5 * x;
    const double mean = 0.5 * noncentrality;
    const double lastWeighted = mean > nextToCentral ? farAbove(mean) : 0.0;
    const double lastWithin = std::max(0.0, std::ceil(farAbove(half) - 0.5 * df));
    double j = std::max(lastWithin, 0.0);
    double density = poissonTerm(0.5 * df + j, half);
    double weight = poissonTerm(std::min(j, lastWeighted), mean);
    double central = 0.0;
    double sum = 0.0;
    // From the far end down, because P(a, x) = P(a + 1, x) + x^a e^-x / Gamma(a + 1) only adds.
    for (const double first = farBelow(mean); j >= first; --j) {
        central += density;
        density *= (0.5 * df + j) / half;
        if (j <= lastWeighted) {
            sum += weight * central;
            weight = j > 0.0 ? weight * (j / mean) : 0.0;
        }
    }
    return std::min(sum, 1.0);
}

std::optional<RMSEAInterval> rmseaConfidenceInterval(double chiSquare,
                                                     std::int64_t degreesOfFreedom,
                                                     std::int64_t n) {
    constexpr double upperTail = 0.95;
    constexpr double lowerTail = 0.05;
    if (degreesOfFreedom <= 0 || n <= 0 || !std::isfinite(chiSquare)) {
        return std::nullopt;
    }
    const auto df = static_cast<double>(degreesOfFreedom);
    const double scale = df * static_cast<double>(n);
    return RMSEAInterval{.lower = std::sqrt(noncentralityAt(chiSquare, df, upperTail) / scale),
                         .upper = std::sqrt(noncentralityAt(chiSquare, df, lowerTail) / scale)};
}

double computeSRMR(std::span<const double> implied, std::span<const double> sample, std::size_t p) {
    double sum = 0.0;
    double count = 0.0;
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            const double scale = std::sqrt(sample[i * p + i] * sample[j * p + j]);
            if (scale > 0.0) {
                const double difference = (implied[i * p + j] - sample[i * p + j]) / scale;
                sum += difference * difference;
                count += 1.0;
            }
        }
    }
    return count > 0.0 ? std::sqrt(sum / count) : 0.0;
}

SEMFitIndices indices(const Fit& fit) {
    const auto n = static_cast<double>(fit.n);
    const auto df = static_cast<double>(fit.degreesOfFreedom);
    const double baseline = n * fit.baselineDiscrepancy;
    const auto baselineDf = static_cast<double>(fit.observedCount * (fit.observedCount - 1) / 2);
    SEMFitIndices result{.chiSquare = std::max(n * fit.discrepancy, 0.0),
                         .degreesOfFreedom = fit.degreesOfFreedom};
    result.pValue = MathDistributions::chiSquareRightTailPValue(result.chiSquare, df);
    result.cfi = comparativeFit(result.chiSquare, df, baseline, baselineDf);
    result.tli = tuckerLewis(result.chiSquare, df, baseline, baselineDf);
    result.rmsea = df > 0.0 ? std::sqrt(std::max(result.chiSquare - df, 0.0) / (df * n)) : 0.0;
    if (const auto interval =
            rmseaConfidenceInterval(result.chiSquare, fit.degreesOfFreedom, fit.n)) {
        result.rmseaLower = interval->lower;
        result.rmseaUpper = interval->upper;
    }
    return result;
}

}  // namespace sorvane::SEMFitMeasures
