#include "SorvaneMac/State/LogText.h"

#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::LogText {

namespace {

/// Fewer than a double has, so that 100 times 0.667 is 66.7.
constexpr int significantDigits = 10;

}  // namespace

std::string number(double value) {
    return value == std::trunc(value) && std::abs(value) < 1e15
               ? NumberText::integer(static_cast<std::int64_t>(value))
               : NumberText::shortest(value);
}

std::string percent(double share) {
    return NumberText::general(100.0 * share, significantDigits) + "%";
}

}  // namespace sorvane::LogText
