#pragma once

#include <optional>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/StudioState.h"

/// What a person must see after an import: what was left in doubt, what the reader noted, and what
/// the file itself says of its variables.
namespace sorvane::ImportCards {

/// The cautions of the import with the ways out of them; absent without any.
std::optional<Card> cautions(const StudioState& state);
/// What the reader of the file noted; absent without notes.
std::optional<Card> notes(const StudioState& state);
/// The labels that came with the variables, and what is remarked on each; absent without labels.
std::optional<Card> variables(const StudioState& state);

}  // namespace sorvane::ImportCards
