#include "SorvaneCore/Models/Multilevel/SmallFactor.h"

#include <cmath>
#include <limits>

namespace sorvane {

SmallFactor SmallFactor::of(double first, double beside, double determinant) {
    const double l00 = std::sqrt(first);
    return {.l00 = l00,
            .l10 = beside / l00,
            .l11 = std::sqrt(determinant / first),
            .isValid = first > 0.0 && determinant > 0.0};
}

double SmallFactor::logDeterminant() const {
    return isValid ? 2.0 * (std::log(l00) + std::log(l11))
                   : std::numeric_limits<double>::quiet_NaN();
}

std::array<double, 2> SmallFactor::forward(const std::array<double, 2>& x) const {
    const double first = x[0] / l00;
    return {first, (x[1] - l10 * first) / l11};
}

std::array<double, 2> SmallFactor::backward(const std::array<double, 2>& x) const {
    const double second = x[1] / l11;
    return {(x[0] - l10 * second) / l00, second};
}

}  // namespace sorvane
