#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// The chart as a picture for paper: 6.5 inches wide at 300 dots an inch, dark on white.
///
/// Input      a QApplication must stand; the offscreen platform will do
std::vector<std::uint8_t> chartPng(const Chart& chart);

/// The same picture as SVG.
std::vector<std::uint8_t> chartSvg(const Chart& chart);

}  // namespace sorvane
