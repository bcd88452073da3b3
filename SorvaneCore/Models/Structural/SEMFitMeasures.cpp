#include "SorvaneCore/Models/Structural/SEMFitMeasures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include "SorvaneCore/Numerics/GaussLegendre.h"
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

/// Unlike that of the standard library it writes no global.
double logGamma(double x) {
    int sign = 0;
    return ::lgamma_r(x, &sign);
}

/// The probability of values of the noncentral distribution of one degree of freedom up to x = root
/// squared.
///
/// Input      `excess`: x less the noncentrality, which keeps what is left of two large numbers
double withOneDegree(double root, double excess, double noncentrality) {
    const double sum = root + std::sqrt(noncentrality);
    return 0.5 *
           (std::erf(excess / sum / std::numbers::sqrt2) + std::erf(sum / std::numbers::sqrt2));
}

/// The noncentrality at which the chi-square leaves `target` below it.
double noncentralityAt(double chiSquare, double df, double target) {
    constexpr int mostDoublings = 59;
    constexpr int halvings = 120;
    constexpr double narrow = 1e-13;
    const auto below = [&](double noncentrality) {
        return noncentralChiSquareCDF(chiSquare, df, noncentrality);
    };
    if (below(0.0) < target) {
        return 0.0;
    }
    double low = 0.0;
    double high = std::max(1.0, chiSquare);
    for (int i = 0; i < mostDoublings && below(high) >= target; ++i) {
        low = high;
        high *= 2.0;
    }
    for (int i = 0; i < halvings && high - low > narrow * high; ++i) {
        const double middle = std::midpoint(low, high);
        (below(middle) >= target ? low : high) = middle;
    }
    return std::midpoint(low, high);
}

}  // namespace

double noncentralChiSquareCDF(double x, double df, double noncentrality) {
    constexpr double largestDf = 1e9;
    // A chi density is below 1e-16 this far beside its mode.
    constexpr double reachBelow = 7.0;
    constexpr double reachAbove = 9.0;
    if (!(df == 1.0 || (df >= 2.0 && df <= largestDf)) || !(noncentrality >= 0.0) ||
        !std::isfinite(x) || !std::isfinite(noncentrality)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (!(x > 0.0)) {
        return 0.0;
    }
    const double radius = std::sqrt(x);
    if (df == 1.0) {
        return withOneDegree(radius, x - noncentrality, noncentrality);
    }
    const double power = df - 2.0;
    const double mode = std::sqrt(power);
    const double nearest = std::max(mode - reachBelow, 0.0);
    if (nearest >= radius) {
        return 0.0;
    }
    const double logScale = 0.5 * (power - 1.0) * std::numbers::ln2 + logGamma(0.5 * (df - 1.0));
    const double start = radius * std::asin(nearest / radius);
    const double end = radius * std::asin(std::min((mode + reachAbove) / radius, 1.0));
    const double panels = std::ceil(end - start);
    double sum = 0.0;
    const auto add = [&](double arc, double weight) {
        const double others = radius * std::sin(arc / radius);
        const double share = std::cos(arc / radius);
        const double density =
            std::exp(power * std::log(others) - 0.5 * others * others - logScale);
        sum += weight * share * density *
               withOneDegree(radius * share, x - noncentrality - others * others, noncentrality);
    };
    GaussLegendre::forEachNode(start, (end - start) / panels, static_cast<int>(panels), add);
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
