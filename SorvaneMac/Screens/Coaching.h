#pragma once

#include <vector>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/StudioScreen.h"

namespace sorvane {

/// How to read a screen: what to look at first, what then, and where care is needed.
std::vector<Passage> coaching(StudioScreen screen);

}  // namespace sorvane
