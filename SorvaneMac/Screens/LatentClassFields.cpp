#include "SorvaneMac/Screens/LatentClassFields.h"

namespace sorvane {

LatentClassFields::LatentClassFields(FieldRegistry& fields)
    : lcMode(fields, "lcMode", LatentMixtureMode::profile),
      lcItems(fields, "lcItems"),
      lcClassCount(fields, "lcClassCount", 2),
      lcHasRun(fields, "lcHasRun"),
      lcKind(fields, "lcKind", LatentScreenKind::profile),
      lcSweepRows(fields, "lcSweepRows"),
      fmHasRun(fields, "fmHasRun"),
      fmDisplayNames(fields, "fmDisplayNames") {}

}  // namespace sorvane
