#include "SorvaneMac/Screens/ScreenFields.h"

namespace sorvane {

ScreenFields::ScreenFields(FieldRegistry& fields) : registry(fields) {}

ScreenFields::~ScreenFields() = default;

}  // namespace sorvane
