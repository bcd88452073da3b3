#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/Uuid.h"
#include "SorvaneCore/Prepare/VariableOperations.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// As the user reads it.
std::string_view displayName(ComputedVariableMethod value);

/// As the user reads it.
std::string_view displayName(BinningMethod value);

/// The forms for computed and binned variables.
struct DerivedVariableFields {
    explicit DerivedVariableFields(FieldRegistry& fields);

    Field<std::string> computedVariableName;
    Field<ComputedVariableMethod> computedVariableMethod;
    Field<double> computedVariableMinimumCompletion;
    Field<std::set<Uuid>> selectedComputedVariableIDs;
    Field<std::optional<std::string>> computedVariableMessage;
    Field<VariableName> selectedBinningVariableName;
    Field<std::string> binnedVariableName;
    Field<BinningMethod> binningMethod;
    Field<std::int64_t> binningBinCount;
    Field<std::optional<std::string>> binningMessage;
};

}  // namespace sorvane
