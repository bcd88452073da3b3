#pragma once

#include <cstdint>

namespace sorvane {

/// A part of a whole in percent; 0 of nothing.
inline double percent(std::int64_t part, std::int64_t whole) {
    return whole == 0 ? 0.0 : static_cast<double>(part) / static_cast<double>(whole) * 100.0;
}

}  // namespace sorvane
