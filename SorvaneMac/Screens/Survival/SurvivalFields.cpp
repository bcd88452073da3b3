#include "SorvaneMac/Screens/Survival/SurvivalFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(SurvivalAnalysisMode value) {
    switch (value) {
        case SurvivalAnalysisMode::kaplanMeier:
            return "Kaplan–Meier curves";
        case SurvivalAnalysisMode::cox:
            return "Cox proportional hazards";
    }
    return "";
}

SurvivalFields::SurvivalFields(FieldRegistry& fields)
    : survMode(fields, "survMode", SurvivalAnalysisMode::kaplanMeier),
      survTime(fields, "survTime"),
      survEvent(fields, "survEvent"),
      survGroup(fields, "survGroup"),
      survPredictors(fields, "survPredictors"),
      survHasRun(fields, "survHasRun"),
      survKMResult(fields, "survKMResult"),
      survCoxResult(fields, "survCoxResult") {}

}  // namespace sorvane
