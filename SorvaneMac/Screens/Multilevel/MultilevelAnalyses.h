#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"

/// The analyses of Multilevel, each in the source file of its name.
namespace sorvane::MultilevelAnalyses {

/// Numbers, shares or counts with random effects.
///
/// Input      `family`: not `ordinal`
std::unique_ptr<Analysis> mixedModel(StudioState& state,
                                     MultilevelFields& fields,
                                     MultilevelFamily family);

/// Ordered categories with a random intercept.
std::unique_ptr<Analysis> ordinalModel(StudioState& state, MultilevelFields& fields);

}  // namespace sorvane::MultilevelAnalyses
