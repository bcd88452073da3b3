#include "SorvaneMac/Screens/ReportDecimals.h"

#include <algorithm>
#include <cmath>

#include "SorvaneMac/Report/ReportNumbers.h"

namespace sorvane::ReportDecimals {

int of(double spread, int fewest) {
    if (!std::isfinite(spread) || spread <= 0.0) {
        return fewest;
    }
    const int leading = static_cast<int>(std::floor(std::log10(spread)));
    return leading < mostDecimals ? std::max(1 - leading, fewest) : 2 - leading;
}

int inSentence(double standardError) {
    const int inTables = of(standardError);
    return inTables > mostDecimals || inTables < 0 ? inTables : inTables - 1;
}

int ofSample(std::optional<double> centre, std::optional<double> spread) {
    constexpr int fewest = 2;
    constexpr double roundingShare = 1e-15;
    const double size = std::abs(centre.value_or(0.0));
    const double apart = spread.value_or(0.0);
    return of(apart > roundingShare * size ? apart : size, fewest);
}

}  // namespace sorvane::ReportDecimals
