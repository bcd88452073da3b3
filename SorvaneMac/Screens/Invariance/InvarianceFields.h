#pragma once

#include <optional>

#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The selections of Invariance.
struct InvarianceFields {
    explicit InvarianceFields(FieldRegistry& fields);

    Field<NameSet> invItems;
    Field<VariableName> invGroup;
    Field<bool> invHasRun;
    /// As it was last run.
    Field<std::optional<InvarianceResult>> invResult;
};

}  // namespace sorvane
