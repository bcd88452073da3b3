#pragma once

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The selections of Correlation.
struct CorrelationFields {
    explicit CorrelationFields(FieldRegistry& fields);

    Field<VariableName> corrX;
    Field<VariableName> corrY;
    Field<VariableName> corrControl;
    Field<NameSet> corrMatrixVars;
};

}  // namespace sorvane
