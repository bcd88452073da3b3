#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"
#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// The comparison of 2 to 6 classes, which runs beside the fit of the count chosen.
namespace sorvane::ClassSweep {

/// The heading, the advice and the button. It can be pressed where the indicators have no gate.
void addControls(SetupForm& form,
                 StudioState& state,
                 LatentClassFields& fields,
                 LatentScreenKind kind);

/// Fits each count in turn in the background and keeps a row for each that is usable.
void run(StudioState& state, LatentClassFields& fields, LatentScreenKind kind);

/// Adds the comparison as a card and a finding, where the last one was of this kind.
void show(const LatentClassFields& fields, LatentScreenKind kind, ScreenContent& content);

}  // namespace sorvane::ClassSweep
