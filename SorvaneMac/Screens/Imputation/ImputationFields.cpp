#include "SorvaneMac/Screens/Imputation/ImputationFields.h"

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
      impCorrY(fields, "impCorrY"),
      impChart(fields, "impChart"),
      impResult(fields, "impResult"),
      impPooledBasis(fields, "impPooledBasis"),
      impPooled(fields, "impPooled"),
      impPooledCoefs(fields, "impPooledCoefs"),
      impPooledCorr(fields, "impPooledCorr") {}

void ImputationFields::forgetPooled() {
    impPooledBasis.reset();
    impPooled.reset();
    impPooledCoefs.reset();
    impPooledCorr.reset();
}

}  // namespace sorvane
