#include "SorvaneMac/Screens/CorrelationFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

CorrelationFields::CorrelationFields(FieldRegistry& fields)
    : corrX(fields, "corrX"),
      corrY(fields, "corrY"),
      corrControl(fields, "corrControl"),
      corrMatrixVars(fields, "corrMatrixVars") {}

}  // namespace sorvane
