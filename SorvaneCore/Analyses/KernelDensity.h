#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace sorvane {

/// A density at points of equal distance.
struct DensityCurve {
    std::vector<double> x{};
    std::vector<double> y{};

    bool operator==(const DensityCurve&) const = default;
};

namespace KernelDensity {

/// The width of the kernel by Silverman's rule: 0.9 times the smaller of the deviation and the
/// quartile range over 1.34, times n to the power of -1/5.
///
/// Returns    above 0, whatever the values
/// Reference  Silverman (1986), Density Estimation for Statistics and Data Analysis, 3.31
double bandwidth(std::span<const double> values);

/// A sum of normal curves, one a value.
///
/// Input      finite values; at least two points from `lower` to `upper`; a bandwidth above 0
/// Returns    no points where there are no values
/// Cost       O(values * points)
struct Grid {
    double lower = 0.0;
    double upper = 1.0;
    std::size_t points = 128;
};
DensityCurve estimate(std::span<const double> values, double bandwidth, const Grid& grid);

}  // namespace KernelDensity

}  // namespace sorvane
