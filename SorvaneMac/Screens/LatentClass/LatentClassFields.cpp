#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(LatentScreenKind value) {
    switch (value) {
        case LatentScreenKind::profile:
            return "Latent profiles";
        case LatentScreenKind::classes:
            return "Latent classes";
        case LatentScreenKind::factorMixture:
            return "Factor mixture";
    }
    return "";
}

std::string_view analysisName(LatentScreenKind kind) {
    switch (kind) {
        case LatentScreenKind::profile:
            return "Latent profile analysis";
        case LatentScreenKind::classes:
            return "Latent class analysis";
        case LatentScreenKind::factorMixture:
            return "Factor mixture analysis";
    }
    return "";
}

LatentMixtureMode modeOf(LatentScreenKind kind) {
    return kind == LatentScreenKind::classes ? LatentMixtureMode::classAnalysis
                                             : LatentMixtureMode::profile;
}

LatentClassFields::LatentClassFields(FieldRegistry& fields)
    : lcMode(fields, "lcMode", LatentMixtureMode::profile),
      lcItems(fields, "lcItems"),
      lcClassCount(fields, "lcClassCount", 2),
      lcHasRun(fields, "lcHasRun"),
      lcKind(fields, "lcKind", LatentScreenKind::profile),
      lcSweepRows(fields, "lcSweepRows"),
      lcSweepBasis(fields, "lcSweepBasis"),
      lcResult(fields, "lcResult"),
      lcClassesResult(fields, "lcClassesResult"),
      fmResult(fields, "fmResult"),
      fmHasRun(fields, "fmHasRun"),
      fmDisplayNames(fields, "fmDisplayNames") {}

}  // namespace sorvane
