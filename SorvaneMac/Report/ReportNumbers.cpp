#include "SorvaneMac/Report/ReportNumbers.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/LeadingZero.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

std::string svFmt(std::optional<double> value, int decimals) {
    if (!value || !std::isfinite(*value)) {
        return "--";
    }
    return NumberText::fixed(*value, decimals);
}

std::string svFigure(std::optional<double> value, int decimals) {
    constexpr int smallestPlain = -4;
    constexpr int largestPlain = 14;
    constexpr int mostDigits = 15;
    if (!value || !std::isfinite(*value)) {
        return svFmt(value, decimals);
    }
    if (*value == 0.0 && decimals > mostDecimals) {
        return "0";
    }
    // The power of ten of the first digit.
    const int leading =
        *value == 0.0 ? 0 : static_cast<int>(std::floor(std::log10(std::abs(*value))));
    const bool isTiny = leading < smallestPlain && decimals > mostDecimals;
    const bool isHuge = leading > largestPlain || (leading >= mostDecimals && decimals < 0);
    const int mostPrecise = mostDigits - 1 - leading;
    if (isTiny || isHuge) {
        return NumberText::powerOfTen(*value,
                                      std::max(std::min(decimals, mostPrecise) + leading, 0));
    }
    return svFmt(value, std::clamp(std::min(decimals, mostPrecise), 0, mostDecimals));
}

std::string svFmtBounded(std::optional<double> value, int decimals) {
    return NumberText::withoutLeadingZero(svFmt(value, decimals));
}

std::string statText(std::optional<double> value, int decimals) {
    return svFmt(value, decimals);
}

}  // namespace sorvane
