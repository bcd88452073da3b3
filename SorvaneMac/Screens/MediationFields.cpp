#include "SorvaneMac/Screens/MediationFields.h"

namespace sorvane {

MediationFields::MediationFields(FieldRegistry& fields)
    : medMode(fields, "medMode", MediationScreenMode::mediation),
      medX(fields, "medX"),
      medM(fields, "medM"),
      medW(fields, "medW"),
      medY(fields, "medY"),
      medCovariates(fields, "medCovariates"),
      medHasRun(fields, "medHasRun") {}

}  // namespace sorvane
