#pragma once

#include <string>
#include <utility>
#include <vector>

#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// One chart of each kind of plot, as an analysis would give it.
std::vector<std::pair<std::string, Chart>> chartGallery();

/// The factor model with so many factors and so many items for each.
PathDiagram factorModel(int factors, int itemsEach);

}  // namespace sorvane
