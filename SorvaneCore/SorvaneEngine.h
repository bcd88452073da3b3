#pragma once

#include <string_view>

/// What the engine says of itself in method records.
namespace sorvane::SorvaneEngine {

inline constexpr std::string_view version = "Sorvane native 0.1.0";

}  // namespace sorvane::SorvaneEngine
