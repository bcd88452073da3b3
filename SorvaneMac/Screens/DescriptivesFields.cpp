#include "SorvaneMac/Screens/DescriptivesFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

DescriptivesFields::DescriptivesFields(FieldRegistry& fields)
    : demoVars(fields, "demoVars"), demoGroup(fields, "demoGroup") {}

}  // namespace sorvane
