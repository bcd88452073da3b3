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
    return sumOfProducts(values, mean, values, mean);
}

double sumOfProducts(std::span<const double> x,
                     double meanX,
                     std::span<const double> y,
                     double meanY) {
    constexpr std::size_t lanes = 4;
    std::array<double, lanes> products{};
    std::array<double, lanes> leftOfX{};
    std::array<double, lanes> leftOfY{};
    const auto add = [&](std::size_t lane, std::size_t i) {
        const double dx = x[i] - meanX;
        const double dy = y[i] - meanY;
        products[lane] += dx * dy;
        leftOfX[lane] += dx;
        leftOfY[lane] += dy;
    };
    const std::size_t whole = x.size() - x.size() % lanes;
    for (std::size_t i = 0; i < whole; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            add(lane, i + lane);
        }
    }
    for (std::size_t i = whole; i < x.size(); ++i) {
        add(i - whole, i);
    }
    const auto total = [](const std::array<double, lanes>& sums) {
        return (sums[0] + sums[1]) + (sums[2] + sums[3]);
    };
    const auto n = static_cast<double>(x.size());
    return x.empty() ? 0.0 : total(products) - total(leftOfX) * total(leftOfY) / n;
}

}  // namespace sorvane::SampleMoments
