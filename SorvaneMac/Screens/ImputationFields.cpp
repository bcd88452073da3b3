#include "SorvaneMac/Screens/ImputationFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

ImputationFields::ImputationFields(FieldRegistry& fields)
    : impMethod(fields, "impMethod", "mice", ResetRule::kept),
      impM(fields, "impM", 5, ResetRule::kept),
      impTargets(fields, "impTargets"),
      impPredictors(fields, "impPredictors"),
      impAnalysis(fields, "impAnalysis", "regression", ResetRule::kept),
      impTarget(fields, "impTarget"),
      impRegOutcome(fields, "impRegOutcome"),
      impRegPredictors(fields, "impRegPredictors"),
      impCorrX(fields, "impCorrX"),
      impCorrY(fields, "impCorrY") {}

}  // namespace sorvane
