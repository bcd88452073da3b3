#pragma once

#include <cmath>
#include <numbers>

namespace sorvane {

/// An estimate against 0, by the normal distribution.
struct WaldTest {
    double z = 0.0;
    /// Two-sided; accurate in relative terms however small.
    double pValue = 1.0;

    static WaldTest of(double estimate, double standardError) {
        const double z = estimate / standardError;
        return {.z = z, .pValue = std::erfc(std::abs(z) / std::numbers::sqrt2)};
    }
};

}  // namespace sorvane
