#include "SorvaneMac/Report/ReportNumbers.h"

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

std::string svFmtBounded(std::optional<double> value, int decimals) {
    return NumberText::withoutLeadingZero(svFmt(value, decimals));
}

std::string statText(std::optional<double> value, int decimals) {
    return svFmt(value, decimals);
}

}  // namespace sorvane
