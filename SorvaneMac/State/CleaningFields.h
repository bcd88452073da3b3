#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Prepare/OutlierMethod.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The rule as the user reads it.
std::string_view displayName(OutlierMethod value);

/// The checks of Data Quality.
struct CleaningFields {
    explicit CleaningFields(FieldRegistry& fields);

    Field<VariableName> clVar;
    /// Bounds as the user typed them.
    Field<std::string> clLower;
    Field<std::string> clUpper;
    Field<OutlierMethod> clOutlierMethod;
    Field<std::optional<std::string>> clMessage;
    /// The columns by which rows count as the same; none means all of them.
    Field<NameSet> clKeyColumns;
    /// The groups whose missing values are compared.
    Field<VariableName> clGroup;
    /// The variable whose categories are compared with the population.
    Field<VariableName> clCompositionVar;
    /// The shares of the population by category, as the user typed them.
    Field<std::map<std::string, std::string>> clBenchmarks;
};

}  // namespace sorvane
