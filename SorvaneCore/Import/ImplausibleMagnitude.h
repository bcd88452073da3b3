#pragma once

#include <cmath>

namespace sorvane {

/// Whether a number is larger than data can be: what statistics programs write for a missing value
/// lies there, such as the most negative double.
inline bool isImplausibleMagnitude(double value) {
    constexpr double largestPlausible = 1e300;
    return std::fabs(value) > largestPlausible;
}

}  // namespace sorvane
