#include "SorvaneMac/Screens/SurveyFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

SurveyFields::SurveyFields(FieldRegistry& fields)
    : svWeight(fields, "svWeight"),
      svStrata(fields, "svStrata"),
      svCluster(fields, "svCluster"),
      svVar(fields, "svVar"),
      svEstimand(fields, "svEstimand", "mean", ResetRule::kept),
      svHasRun(fields, "svHasRun"),
      surveyWeightsActive(fields, "surveyWeightsActive") {}

}  // namespace sorvane
