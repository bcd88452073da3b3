#include "SorvaneMac/Screens/Regression/RegressionFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(RegressionModel model) {
    switch (model) {
        case RegressionModel::linear:
            return "Linear Regression (OLS)";
        case RegressionModel::logistic:
            return "Binary Logistic Regression";
        case RegressionModel::poisson:
            return "Poisson Regression";
        case RegressionModel::ordinal:
            return "Ordinal Regression (Proportional Odds)";
    }
    return "";
}

RegressionFields::RegressionFields(FieldRegistry& fields)
    : regModel(fields, "regModel", RegressionModel::linear, ResetRule::kept),
      regOutcome(fields, "regOutcome"),
      regPredictors(fields, "regPredictors"),
      regHasRun(fields, "regHasRun"),
      regLinearRun(fields, "regLinearRun"),
      regLogisticRun(fields, "regLogisticRun"),
      regPoissonRun(fields, "regPoissonRun"),
      regOrdinalRun(fields, "regOrdinalRun"),
      regAssumptionFindings(fields, "regAssumptionFindings"),
      regAssumptionsExpanded(fields, "regAssumptionsExpanded", true, ResetRule::kept) {}

}  // namespace sorvane
