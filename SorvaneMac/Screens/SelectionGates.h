#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/VariableLists.h"

/// What stands between a selection and a run, for selections that many screens have.
namespace sorvane::SelectionGates {

/// Whether the field is not blank and yet names none of the candidates.
bool isGone(const Field<VariableName>& field, const VariableLists::List& candidates);

/// The gate of a chosen column that is not among the candidates any more.
///
/// Input      `kind`: what the candidates are, such as "numeric columns"
std::optional<Gate> goneColumn(const Field<VariableName>& field,
                               const VariableLists::List& candidates,
                               std::string_view kind);
/// As above for the first such name of a set.
std::optional<Gate> goneColumn(const Field<NameSet>& field,
                               const VariableLists::List& candidates,
                               std::string_view kind);

/// The gate of a model without predictors.
Gate noPredictors();

}  // namespace sorvane::SelectionGates
