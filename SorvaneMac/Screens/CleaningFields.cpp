#include "SorvaneMac/Screens/CleaningFields.h"

namespace sorvane {

CleaningFields::CleaningFields(FieldRegistry& fields)
    : clVar(fields, "clVar"),
      clLower(fields, "clLower"),
      clUpper(fields, "clUpper"),
      clOutlierMethod(fields, "clOutlierMethod", OutlierMethod::iqr, ResetRule::kept),
      clMessage(fields, "clMessage") {}

}  // namespace sorvane
