#include "SorvaneMac/Screens/RegressionFields.h"

namespace sorvane {

RegressionFields::RegressionFields(FieldRegistry& fields)
    : regModel(fields, "regModel", RegressionModel::linear, ResetRule::kept),
      regOutcome(fields, "regOutcome"),
      regPredictors(fields, "regPredictors"),
      regHasRun(fields, "regHasRun"),
      regAssumptionFindings(fields, "regAssumptionFindings"),
      regAssumptionsExpanded(fields, "regAssumptionsExpanded", true, ResetRule::kept) {}

}  // namespace sorvane
