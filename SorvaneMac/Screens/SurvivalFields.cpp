#include "SorvaneMac/Screens/SurvivalFields.h"

namespace sorvane {

SurvivalFields::SurvivalFields(FieldRegistry& fields)
    : survMode(fields, "survMode", SurvivalAnalysisMode::kaplanMeier),
      survTime(fields, "survTime"),
      survEvent(fields, "survEvent"),
      survGroup(fields, "survGroup"),
      survPredictors(fields, "survPredictors"),
      survHasRun(fields, "survHasRun") {}

}  // namespace sorvane
