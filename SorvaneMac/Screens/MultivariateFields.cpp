#include "SorvaneMac/Screens/MultivariateFields.h"

namespace sorvane {

MultivariateFields::MultivariateFields(FieldRegistry& fields)
    : mvTest(fields, "mvTest", MVTest::manova, ResetRule::kept),
      mvVars(fields, "mvVars"),
      mvGroup(fields, "mvGroup"),
      mvSetX(fields, "mvSetX"),
      mvSetY(fields, "mvSetY"),
      mvHasRun(fields, "mvHasRun") {}

}  // namespace sorvane
