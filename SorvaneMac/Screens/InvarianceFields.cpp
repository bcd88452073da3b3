#include "SorvaneMac/Screens/InvarianceFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

InvarianceFields::InvarianceFields(FieldRegistry& fields)
    : invItems(fields, "invItems"), invGroup(fields, "invGroup"), invHasRun(fields, "invHasRun") {}

}  // namespace sorvane
