#include "SorvaneMac/Screens/ReportDecimals.h"

#include <algorithm>
#include <cmath>

namespace sorvane::ReportDecimals {

int of(double spread, int fewest) {
    constexpr int most = 9;
    if (!std::isfinite(spread) || spread <= 0.0) {
        return fewest;
    }
    const double leading = std::clamp(std::floor(std::log10(spread)), -20.0, 20.0);
    return std::clamp(1 - static_cast<int>(leading), fewest, most);
}

int inSentence(double standardError) {
    return of(standardError) - 1;
}

}  // namespace sorvane::ReportDecimals
