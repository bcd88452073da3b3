#pragma once

#include <string>

#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// What a chart shows, in a sentence for those who hear the window: "Histogram of age with 12 bars,
/// highest between 20 and 25."
///
/// Returns    figures with four significant digits; of long lists the first six
std::string chartDescription(const Chart& chart);

}  // namespace sorvane
