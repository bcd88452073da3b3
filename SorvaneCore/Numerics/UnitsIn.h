#pragma once

#include <cmath>

namespace sorvane {

/// How many units a value holds: a whole number where rounding alone keeps the quotient from it.
/// 2.3 holds 23 tenths, although 2.3 / 0.1 is a little less in doubles.
///
/// Returns    the quotient, or the whole number within 1e-9 of it; what the quotient is where that is
///            no number or infinite
inline double unitsIn(double value, double unit) {
    constexpr double rounding = 1e-9;
    const double quotient = value / unit;
    const double nearest = std::round(quotient);
    return std::abs(quotient - nearest) <= rounding ? nearest : quotient;
}

}  // namespace sorvane
