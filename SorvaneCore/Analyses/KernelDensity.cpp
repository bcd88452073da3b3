#include "SorvaneCore/Analyses/KernelDensity.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"

namespace sorvane::KernelDensity {

namespace {

/// Beyond so many bandwidths a normal curve adds nothing that could be seen.
constexpr double reach = 6.0;

}  // namespace

double bandwidth(std::span<const double> values) {
    constexpr double normalQuartileRange = 1.34;
    const double deviation =
        DescriptiveStatistics::standardDeviation(values, VarianceDenominator::sample).value_or(0.0);
    double spread = deviation;
    if (const auto quartiles = DescriptiveStatistics::quartiles(values)) {
        const double range = (quartiles->q3 - quartiles->q1) / normalQuartileRange;
        spread = range > 0.0 ? std::min(deviation, range) : deviation;
    }
    const double count = std::max(static_cast<double>(values.size()), 1.0);
    return 0.9 * (spread > 0.0 ? spread : 1.0) * std::pow(count, -0.2);
}

DensityCurve estimate(std::span<const double> values, double bandwidth, const Grid& grid) {
    DensityCurve curve;
    if (values.empty()) {
        return curve;
    }
    std::vector<double> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    const double step = (grid.upper - grid.lower) / static_cast<double>(grid.points - 1);
    const double scale =
        1.0 / (static_cast<double>(sorted.size()) * bandwidth * std::sqrt(2.0 * std::numbers::pi));
    for (std::size_t i = 0; i < grid.points; ++i) {
        const double x = grid.lower + static_cast<double>(i) * step;
        const auto last = std::upper_bound(sorted.begin(), sorted.end(), x + reach * bandwidth);
        auto near = std::lower_bound(sorted.begin(), sorted.end(), x - reach * bandwidth);
        double sum = 0.0;
        for (; near != last; ++near) {
            const double distance = (x - *near) / bandwidth;
            sum += std::exp(-0.5 * distance * distance);
        }
        curve.x.push_back(x);
        curve.y.push_back(scale * sum);
    }
    return curve;
}

}  // namespace sorvane::KernelDensity
