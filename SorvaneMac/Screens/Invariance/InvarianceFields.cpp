#include "SorvaneMac/Screens/Invariance/InvarianceFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

InvarianceFields::InvarianceFields(FieldRegistry& fields)
    : invItems(fields, "invItems"),
      invGroup(fields, "invGroup"),
      invHasRun(fields, "invHasRun"),
      invResult(fields, "invResult") {}

}  // namespace sorvane
