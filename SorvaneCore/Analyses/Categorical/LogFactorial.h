#pragma once

#include <cmath>
#include <cstdint>

namespace sorvane {

/// ln n!, for n of at least 0.
inline double logFactorial(std::int64_t n) {
    int sign = 0;
    // Unlike lgamma, this form writes no global.
    return ::lgamma_r(static_cast<double>(n) + 1.0, &sign);
}

}  // namespace sorvane
