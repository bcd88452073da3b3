#pragma once

#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// The selections that multilevel models of all families share.
namespace sorvane::MultilevelSelection {

/// Blanks a random slope that the structure or the family forbids or that has another place in the
/// model, and says so in the message. A column that is not there is left to the gate.
void dropForbiddenSlope(MultilevelFields& fields);
/// Blanks the message with each change of what it may rest on.
[[nodiscard]] Subscription clearMessageOnChange(FieldRegistry& registry, MultilevelFields& fields);
/// Makes a random slope that was chosen a predictor too, where it is a numeric column and nothing
/// else forbids it.
void selectSlope(const ImportedDataset& dataset, MultilevelFields& fields);

/// The outcome, the groupings, the time, the predictors and the random slope.
void addVariables(SetupForm& form, const ImportedDataset& dataset, MultilevelFields& fields);

/// The model as it is chosen.
MultilevelChoice choice(const ImportedDataset& dataset, const MultilevelFields& fields);

/// The columns of the model; the lagged outcome among them.
MultilevelColumns columns(const ImportedDataset& dataset, const MultilevelFields& fields);

}  // namespace sorvane::MultilevelSelection
