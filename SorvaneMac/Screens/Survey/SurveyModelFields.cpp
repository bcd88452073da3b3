#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(SurveyAnalysis analysis) {
    switch (analysis) {
        case SurveyAnalysis::estimates:
            return "Estimates";
        case SurveyAnalysis::linear:
            return "Linear regression";
        case SurveyAnalysis::logistic:
            return "Logistic regression";
        case SurveyAnalysis::poisson:
            return "Poisson regression";
        case SurveyAnalysis::ordinal:
            return "Ordinal regression";
        case SurveyAnalysis::correlation:
            return "Correlation";
        case SurveyAnalysis::crosstab:
            return "Crosstab";
    }
    return {};
}

SurveyModelFields::SurveyModelFields(FieldRegistry& fields)
    : svAnalysis(fields, "svAnalysis", SurveyAnalysis::estimates, ResetRule::kept),
      svOutcome(fields, "svOutcome"),
      svPredictors(fields, "svPredictors"),
      svCorrVars(fields, "svCorrVars"),
      svRowCat(fields, "svRowCat"),
      svColCat(fields, "svColCat"),
      svLinearResult(fields, "svLinearResult"),
      svLogisticResult(fields, "svLogisticResult"),
      svPoissonResult(fields, "svPoissonResult"),
      svOrdinalResult(fields, "svOrdinalResult"),
      svCorrelationResult(fields, "svCorrelationResult"),
      svCrosstabResult(fields, "svCrosstabResult") {}

}  // namespace sorvane
