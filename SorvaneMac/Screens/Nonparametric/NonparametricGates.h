#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What a Friedman test asks for.
inline constexpr std::size_t fewestFriedmanItems = 3;

/// "Could not compute Friedman for the current selection." with the reason.
Gate notComputable(std::string_view test, std::string reason);

/// The categories of the grouping variable.
std::vector<std::string> npCategories(const ImportedDataset& dataset,
                                      const NonparametricFields& fields);

}  // namespace sorvane
