#include "SorvaneMac/Screens/DescriptivesFields.h"

namespace sorvane {

DescriptivesFields::DescriptivesFields(FieldRegistry& fields)
    : demoVars(fields, "demoVars"), demoGroup(fields, "demoGroup") {}

}  // namespace sorvane
