#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

#include <array>
#include <cmath>

namespace sorvane::SampleMoments {

namespace {

constexpr std::size_t laneCount = 8;

/// The sum of `term(i)`, in lanes.
template <typename Term>
double laneSum(std::size_t count, Term term) {
    std::array<double, laneCount> lanes{};
    const std::size_t whole = count - count % laneCount;
    for (std::size_t i = 0; i < whole; i += laneCount) {
        for (std::size_t lane = 0; lane < laneCount; ++lane) {
            lanes[lane] += term(i + lane);
        }
    }
    for (std::size_t i = whole; i < count; ++i) {
        lanes[i - whole] += term(i);
    }
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

}  // namespace

double sum(std::span<const double> values) {
    const double* x = values.data();
    return laneSum(values.size(), [x](std::size_t i) { return x[i]; });
}

double mean(std::span<const double> values) {
    const double* x = values.data();
    const auto count = static_cast<double>(values.size());
    const double rough = sum(values) / count;
    if (!std::isfinite(rough)) {
        return rough;
    }
    return rough +
           laneSum(values.size(), [x, rough](std::size_t i) { return x[i] - rough; }) / count;
}

double sumOfSquares(std::span<const double> values, double mean) {
    const double* x = values.data();
    return laneSum(values.size(), [x, mean](std::size_t i) {
        const double deviation = x[i] - mean;
        return deviation * deviation;
    });
}

double sumOfProducts(std::span<const double> x,
                     double meanX,
                     std::span<const double> y,
                     double meanY) {
    const double* left = x.data();
    const double* right = y.data();
    return laneSum(x.size(), [left, meanX, right, meanY](std::size_t i) {
        return (left[i] - meanX) * (right[i] - meanY);
    });
}

}  // namespace sorvane::SampleMoments
