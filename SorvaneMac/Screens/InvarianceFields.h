#pragma once

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The selections of Invariance.
struct InvarianceFields {
    explicit InvarianceFields(FieldRegistry& fields);

    Field<NameSet> invItems;
    Field<VariableName> invGroup;
    Field<bool> invHasRun;
};

}  // namespace sorvane
