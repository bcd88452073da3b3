#include "SorvaneMac/Screens/Survey/SurveyFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

SurveyFields::SurveyFields(FieldRegistry& fields)
    : svWeight(fields, "svWeight"),
      svStrata(fields, "svStrata"),
      svCluster(fields, "svCluster"),
      svFpc(fields, "svFpc"),
      svReplicates(fields, "svReplicates"),
      svReplicateType(fields, "svReplicateType", ReplicateType::jackknife),
      svFayRho(fields, "svFayRho", 0.5),
      svReplicateScale(fields, "svReplicateScale"),
      svVar(fields, "svVar"),
      svDenominator(fields, "svDenominator"),
      svGroup(fields, "svGroup"),
      svEstimand(fields, "svEstimand", "mean", ResetRule::kept),
      svConfidence(fields, "svConfidence", 95, ResetRule::kept),
      svHasRun(fields, "svHasRun"),
      svResult(fields, "svResult"),
      surveyWeightsActive(fields, "surveyWeightsActive"),
      models(fields) {}

}  // namespace sorvane
