#include "SorvaneMac/Screens/Mediation/MediationFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(MediationScreenMode value) {
    switch (value) {
        case MediationScreenMode::mediation:
            return "Mediation";
        case MediationScreenMode::moderation:
            return "Moderation";
    }
    return "";
}

MediationFields::MediationFields(FieldRegistry& fields)
    : medMode(fields, "medMode", MediationScreenMode::mediation),
      medX(fields, "medX"),
      medM(fields, "medM"),
      medW(fields, "medW"),
      medY(fields, "medY"),
      medCovariates(fields, "medCovariates"),
      medHasRun(fields, "medHasRun"),
      medResult(fields, "medResult"),
      modResult(fields, "modResult") {}

}  // namespace sorvane
