#pragma once

#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"

/// What the chosen structure and family ask for.
namespace sorvane::MultilevelStructure {

bool hasSecondGrouping(const MultilevelFields& fields);
bool isGrowth(const MultilevelFields& fields);
bool hasTime(const MultilevelFields& fields);
bool isOrdinal(const MultilevelFields& fields);
/// Whether the user chooses the random slope; growth takes the time for it.
bool allowsRandomSlope(const MultilevelFields& fields);
/// The columns that the structure uses beside the predictors. The time of a lag may be a predictor
/// too.
NameSet placed(const MultilevelFields& fields);

}  // namespace sorvane::MultilevelStructure
