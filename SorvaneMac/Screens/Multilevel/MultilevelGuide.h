#pragma once

#include <string_view>

#include "SorvaneMac/Screens/Screen.h"

/// What all families of multilevel models are called and told of.
namespace sorvane::MultilevelGuide {

inline constexpr std::string_view heading = "Multilevel models";
inline constexpr std::string_view runLabel = "Run multilevel model";

Guide guide();

}  // namespace sorvane::MultilevelGuide
