#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Prepare/VariableOperations.h"

/// A score over chosen variables.
namespace sorvane::ComputedVariableBuilder {

/// The score of each row.
///
/// Input      the variables as columns of one length; `minimumCompletion`, held to 0 to 1, the
///            share of them that a row must have, rounded up to whole variables
/// Method     over the numbers present: their sum, their mean, or how many there are
/// Failure    nothing present, or too little -> absent; a count never fails
/// Cost       O(rows * columns)
std::vector<std::optional<double>> numericValues(std::span<const NumericColumn> matrix,
                                                 ComputedVariableMethod method,
                                                 double minimumCompletion);

/// The same as cells, the empty text for what is absent.
std::vector<std::string> textValues(std::span<const NumericColumn> matrix,
                                    ComputedVariableMethod method,
                                    double minimumCompletion);

}  // namespace sorvane::ComputedVariableBuilder
