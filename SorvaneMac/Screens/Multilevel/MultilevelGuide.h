#pragma once

#include <string_view>

#include "SorvaneMac/Screens/Screen.h"

/// What all families of multilevel models are called and told of.
namespace sorvane::MultilevelGuide {

inline constexpr std::string_view heading = "Multilevel models";
inline constexpr std::string_view runLabel = "Run multilevel model";

inline constexpr std::string_view hint =
    "Choose Nested, Crossed, Growth, or AR lag; set outcome and grouping; then Run.";

Guide guide();

}  // namespace sorvane::MultilevelGuide
