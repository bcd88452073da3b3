#include "SorvaneCore/Analyses/Basics/BayesFactors.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace sorvane::BayesFactors {

namespace {

constexpr double logRootPi = 0.5723649429247001;

/// The logarithm of the inverse-gamma density of g = e^u with scale s, and of dg/du.
double logPrior(double u, double s) {
    return 0.5 * std::log(s) - logRootPi - 1.5 * u - s / std::exp(u) + u;
}

struct Interval {
    double from = 0.0;
    double to = 0.0;
};

/// Where the integrand matters; absent without a finite peak.
template <typename Log>
std::optional<Interval> interval(const Log& log) {
    constexpr int scanSteps = 240;
    constexpr double scanWidth = 0.25;
    constexpr double scanStart = -30.0;
    constexpr double walkWidth = 0.5;
    constexpr double walkLimit = 60.0;
    constexpr double negligible = 45.0;
    double peak = -std::numeric_limits<double>::infinity();
    double peakAt = scanStart;
    for (int i = 0; i <= scanSteps; ++i) {
        const double u = scanStart + scanWidth * i;
        if (const double value = log(u); value > peak) {
            peak = value;
            peakAt = u;
        }
    }
    if (!std::isfinite(peak)) {
        return std::nullopt;
    }
    Interval range{.from = peakAt, .to = peakAt};
    while (range.from > -walkLimit && log(range.from) > peak - negligible) {
        range.from -= walkWidth;
    }
    while (range.to < walkLimit && log(range.to) > peak - negligible) {
        range.to += walkWidth;
    }
    return range;
}

/// The logarithm of the integral over u of e^log(u), by Simpson's rule.
template <typename Log>
std::optional<double> logIntegral(const Log& log) {
    constexpr int intervals = 4000;
    const std::optional<Interval> range = interval(log);
    if (!range) {
        return std::nullopt;
    }
    const double h = (range->to - range->from) / intervals;
    const double logFour = std::log(4.0);
    const double logTwo = std::log(2.0);
    std::vector<double> terms(intervals + 1);
    for (int i = 0; i <= intervals; ++i) {
        const bool isEnd = i == 0 || i == intervals;
        const double logWeight = isEnd ? 0.0 : (i % 2 == 1 ? logFour : logTwo);
        terms[static_cast<std::size_t>(i)] = logWeight + log(range->from + i * h);
    }
    const double largest = *std::ranges::max_element(terms);
    double sum = 0.0;
    for (const double term : terms) {
        sum += std::exp(term - largest);
    }
    return largest + std::log(sum) + std::log(h / 3.0);
}

Result resultOf(double logBF10, double rscale) {
    return {.bf10 = std::exp(logBF10), .logBF10 = logBF10, .rscale = rscale};
}

std::optional<Result> resultOf(std::optional<double> logBF10, double rscale) {
    return logBF10 ? std::optional(resultOf(*logBF10, rscale)) : std::nullopt;
}

std::string_view band(double strength) {
    if (strength < 3.0) {
        return "anecdotal";
    }
    if (strength < 10.0) {
        return "moderate";
    }
    if (strength < 30.0) {
        return "strong";
    }
    return strength < 100.0 ? "very strong" : "extreme";
}

}  // namespace

std::optional<Result> jzsTTest(double t,
                               std::int64_t n1,
                               std::optional<std::int64_t> n2,
                               double rscale) {
    if (!std::isfinite(t) || n1 < 2 || (n2 && *n2 < 2)) {
        return std::nullopt;
    }
    const auto a = static_cast<double>(n1);
    const auto b = static_cast<double>(n2.value_or(0));
    const double df = n2 ? a + b - 2.0 : a - 1.0;
    const double n = n2 ? a * b / (a + b) : a;
    if (df < 1.0 || n < 1.0) {
        return std::nullopt;
    }
    const double s = rscale * rscale / 2.0;
    const double half = (df + 1.0) / 2.0;
    auto log = logIntegral([=](double u) {
        const double spread = 1.0 + n * std::exp(u);
        return -0.5 * std::log(spread) - half * std::log1p(t * t / (df * spread)) + logPrior(u, s);
    });
    if (log) {
        *log += half * std::log1p(t * t / df);
    }
    return resultOf(log, rscale);
}

std::optional<Result> correlationBF(double r, std::int64_t n) {
    if (!(std::abs(r) < 1.0)) {
        return std::nullopt;
    }
    return gPriorLinearModel(n, 1, r * r, correlationScale);
}

std::optional<Result> gPriorLinearModel(std::int64_t n, std::int64_t p, double r2, double rscale) {
    if (p < 1 || p >= n - 1 || !(r2 >= 0.0 && r2 < 1.0)) {
        return std::nullopt;
    }
    const auto df = static_cast<double>(n - 1);
    const double residualDf = df - static_cast<double>(p);
    const double s = rscale * rscale * static_cast<double>(n) / 2.0;
    return resultOf(logIntegral([=](double u) {
                        const double g = std::exp(u);
                        return 0.5 *
                                   (residualDf * std::log1p(g) - df * std::log1p(g * (1.0 - r2))) +
                               logPrior(u, s);
                    }),
                    rscale);
}

std::optional<Result> oneWayAnovaBF(double f,
                                    std::int64_t groups,
                                    std::int64_t perGroupN,
                                    double rscale) {
    if (!std::isfinite(f) || f < 0.0 || groups < 2 || perGroupN < 2) {
        return std::nullopt;
    }
    const auto k = static_cast<double>(groups);
    const auto n = static_cast<double>(perGroupN);
    const double unexplained = 1.0 + f * (k - 1.0) / (k * n - k);
    const double s = rscale * rscale / 2.0;
    return resultOf(logIntegral([=](double u) {
                        const double ng = n * std::exp(u);
                        return -(k - 1.0) / 2.0 * std::log1p(ng) -
                               (k * n - 1.0) / 2.0 *
                                   (std::log1p(ng / unexplained) - std::log1p(ng)) +
                               logPrior(u, s);
                    }),
                    rscale);
}

std::optional<Result> semApproximateBF(double chiSquare,
                                       std::int64_t degreesOfFreedom,
                                       std::int64_t n) {
    if (!std::isfinite(chiSquare) || chiSquare < 0.0 || degreesOfFreedom < 1 || n < 2) {
        return std::nullopt;
    }
    const double penalty = static_cast<double>(degreesOfFreedom) * std::log(static_cast<double>(n));
    return resultOf((penalty - chiSquare) / 2.0, std::numeric_limits<double>::quiet_NaN());
}

std::string evidenceLabel(double bf10, std::string_view alternative, std::string_view null) {
    const bool forAlternative = bf10 >= 1.0;
    const double strength = forAlternative ? bf10 : 1.0 / bf10;
    if (!(strength >= 1.0)) {
        return "no evidence either way";
    }
    return std::string(band(strength)) + " evidence for " +
           std::string(forAlternative ? alternative : null);
}

}  // namespace sorvane::BayesFactors
