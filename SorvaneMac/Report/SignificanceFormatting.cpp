#include "SorvaneMac/Report/SignificanceFormatting.h"

#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::SignificanceFormatting {

std::string pValueText(double p, bool includeStars) {
    std::string text = p < 0.001 ? "< .001" : NumberText::fixed(p, 3);
    if (includeStars) {
        text += stars(p);
    }
    return text;
}

std::string_view stars(double p) {
    if (!std::isfinite(p)) {
        return "";
    }
    if (p <= 0.001) {
        return "***";
    }
    if (p <= 0.01) {
        return "**";
    }
    return p <= 0.05 ? "*" : "";
}

}  // namespace sorvane::SignificanceFormatting
