#pragma once

#include <string>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The model of SEM & CFA.
struct StructuralFields {
    explicit StructuralFields(FieldRegistry& fields);

    /// In lavaan's syntax.
    Field<std::string> semModel;
    Field<bool> semHasRun;
};

}  // namespace sorvane
