#include "SorvaneCore/Numerics/NormalCritical.h"

#include <limits>

#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane {

double normalCritical(double twoTailedAlpha, NormalCriticalSetting setting) {
    const bool isWide = setting == NormalCriticalSetting::wide;
    if (isWide && !(twoTailedAlpha > 0.0 && twoTailedAlpha < 1.0)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const int halvings = isWide ? 200 : 80;
    double low = 0.0;
    double high = isWide ? 40.0 : 8.0;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (low + high) / 2.0;
        const bool isBelow =
            MathDistributions::standardNormalCDF(middle) < 1.0 - twoTailedAlpha / 2.0;
        (isBelow ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

}  // namespace sorvane
