#pragma once

#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/VariableLists.h"

/// The shape of a seed: it fills a blank selection and leaves one that the user made, even where
/// its variable has gone.
namespace sorvane::Seeding {

/// Gives a blank field the first candidate; without one it stays blank.
void fillFirst(Field<VariableName>& field, const VariableLists::List& candidates);
/// Gives an empty set the first `count` candidates, or as many as there are.
void fillFirst(Field<NameSet>& field, const VariableLists::List& candidates, std::size_t count);

}  // namespace sorvane::Seeding
