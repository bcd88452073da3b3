#include "SorvaneMac/Screens/StructuralFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

StructuralFields::StructuralFields(FieldRegistry& fields)
    : semModel(fields, "semModel"), semHasRun(fields, "semHasRun") {}

}  // namespace sorvane
