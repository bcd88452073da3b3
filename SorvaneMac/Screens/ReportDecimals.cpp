#include "SorvaneMac/Screens/ReportDecimals.h"

#include <algorithm>
#include <cmath>

namespace sorvane::ReportDecimals {

int of(double spread, int fewest) {
    constexpr int most = 12;
    if (!std::isfinite(spread) || spread <= 0.0) {
        return fewest;
    }
    const double leading = std::clamp(std::floor(std::log10(spread)), -20.0, 20.0);
    return std::clamp(1 - static_cast<int>(leading), fewest, most);
}

int inSentence(double standardError) {
    return of(standardError) - 1;
}

int ofSample(std::optional<double> centre, std::optional<double> spread) {
    constexpr int fewest = 2;
    const double apart = spread.value_or(0.0);
    return of(apart > 0.0 ? apart : std::abs(centre.value_or(0.0)), fewest);
}

}  // namespace sorvane::ReportDecimals
