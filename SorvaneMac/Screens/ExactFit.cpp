#include "SorvaneMac/Screens/ExactFit.h"

#include <algorithm>
#include <cmath>

namespace sorvane::ExactFit {

std::optional<std::string> caution(const std::vector<double>& t) {
    constexpr double farthest = 1e10;
    if (std::ranges::none_of(t, [](double each) { return std::abs(each) > farthest; })) {
        return std::nullopt;
    }
    return "The predictors give the outcome exactly, so that standard errors, tests and intervals "
           "rest on rounding alone and mean nothing. Check whether the outcome was computed from "
           "the predictors.";
}

}  // namespace sorvane::ExactFit
