#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <vector>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

BOOST_DESCRIBE_ENUM(Appearance, system, light, dark)

/// What a window is like, kept from one session to the next.
struct WindowMemory {
    /// Place, size and screen, as the toolkit writes them.
    std::vector<std::uint8_t> geometry;
    /// The widths of navigation, screen and inspector.
    std::vector<int> panes;
    bool inspectorBeside = true;
    bool inspectorOverWidePage = false;
    Appearance appearance = Appearance::system;
    double scale = 1.0;

    bool operator==(const WindowMemory&) const = default;
};
BOOST_DESCRIBE_STRUCT(WindowMemory,
                      (),
                      (geometry, panes, inspectorBeside, inspectorOverWidePage, appearance, scale))

}  // namespace sorvane
