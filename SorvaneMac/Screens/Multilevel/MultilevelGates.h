#pragma once

#include <optional>

#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/StudioState.h"

/// What keeps a multilevel model from running.
namespace sorvane::MultilevelGates {

/// Selections that are blank, that have gone, or that do not go together.
std::optional<Gate> gate(const ImportedDataset& dataset, const MultilevelFields& fields);

}  // namespace sorvane::MultilevelGates
