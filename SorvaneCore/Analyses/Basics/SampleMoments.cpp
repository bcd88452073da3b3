#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace sorvane::SampleMoments {

namespace {

constexpr std::size_t laneCount = 8;

/// How far rounding moves a number that was got from values of the given magnitude.
double roundingOf(double largest) {
    constexpr double units = 8.0;
    return units * std::numeric_limits<double>::epsilon() * largest;
}

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

double squaresOfRounding(std::size_t count, double largest) {
    const double error = roundingOf(largest);
    return static_cast<double>(count) * error * error;
}

double beyondRounding(double squares, std::size_t count, double largest) {
    return std::isfinite(squares) && squares <= squaresOfRounding(count, largest) ? 0.0 : squares;
}

void clearRounding(std::span<double> deviations, double largest) {
    const double* x = deviations.data();
    const double squares = laneSum(deviations.size(), [x](std::size_t i) { return x[i] * x[i]; });
    if (beyondRounding(squares, deviations.size(), largest) == 0.0) {
        std::ranges::fill(deviations, 0.0);
    }
}

double largestMagnitude(std::span<const double> values) {
    double largest = 0.0;
    for (const double value : values) {
        largest = std::max(largest, std::abs(value));
    }
    return largest;
}

bool areEqual(std::span<const double> values) {
    if (values.empty()) {
        return true;
    }
    const auto [lowest, highest] = std::ranges::minmax(values);
    const double range = highest - lowest;
    // Each may be off, in opposite directions.
    return std::isfinite(range) &&
           range <= 2.0 * roundingOf(std::max(std::abs(lowest), std::abs(highest)));
}

double sumOfSquares(std::span<const double> values, double mean) {
    return beyondRounding(sumOfProducts(values, mean, values, mean), values.size(), std::abs(mean));
}

double sumOfProducts(std::span<const double> x,
                     double meanX,
                     std::span<const double> y,
                     double meanY) {
    // Blocks that stay in the cache while three sums read them.
    constexpr std::size_t blockSize = 1024;
    double products = 0.0;
    double leftOfX = 0.0;
    double leftOfY = 0.0;
    for (std::size_t first = 0; first < x.size(); first += blockSize) {
        const std::size_t count = std::min(blockSize, x.size() - first);
        const double* a = &x[first];
        const double* b = &y[first];
        products += laneSum(
            count, [a, meanX, b, meanY](std::size_t i) { return (a[i] - meanX) * (b[i] - meanY); });
        leftOfX += laneSum(count, [a, meanX](std::size_t i) { return a[i] - meanX; });
        leftOfY += laneSum(count, [b, meanY](std::size_t i) { return b[i] - meanY; });
    }
    // What overflowed stays infinite: a correction of its size would leave no number.
    return std::isfinite(products) && !x.empty()
               ? products - leftOfX * leftOfY / static_cast<double>(x.size())
               : products;
}

}  // namespace sorvane::SampleMoments
