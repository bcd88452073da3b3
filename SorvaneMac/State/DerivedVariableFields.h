#pragma once

#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/Uuid.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class ComputedVariableMethod { sum, mean, validCount };
BOOST_DESCRIBE_ENUM(ComputedVariableMethod, sum, mean, validCount)
/// As the user reads it.
std::string_view displayName(ComputedVariableMethod value);

enum class BinningMethod { equalWidth, quantile };
BOOST_DESCRIBE_ENUM(BinningMethod, equalWidth, quantile)
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
