#include "SorvaneMac/State/DerivedVariableFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(ComputedVariableMethod value) {
    switch (value) {
        case ComputedVariableMethod::sum:
            return "Sum score";
        case ComputedVariableMethod::mean:
            return "Mean score";
        case ComputedVariableMethod::validCount:
            return "Valid-response count";
    }
    return "";
}

std::string_view displayName(BinningMethod value) {
    switch (value) {
        case BinningMethod::equalWidth:
            return "Equal-width groups";
        case BinningMethod::quantile:
            return "Quantile groups";
    }
    return "";
}

DerivedVariableFields::DerivedVariableFields(FieldRegistry& fields)
    : computedVariableName(fields, "computedVariableName", "Total Test Score", ResetRule::kept),
      computedVariableMethod(
          fields, "computedVariableMethod", ComputedVariableMethod::sum, ResetRule::kept),
      computedVariableMinimumCompletion(
          fields, "computedVariableMinimumCompletion", 0.8, ResetRule::kept),
      selectedComputedVariableIDs(fields, "selectedComputedVariableIDs", {}, ResetRule::kept),
      computedVariableMessage(fields, "computedVariableMessage", std::nullopt, ResetRule::kept),
      selectedBinningVariableName(fields, "selectedBinningVariableName", {}, ResetRule::kept),
      binnedVariableName(fields, "binnedVariableName", "Age Group", ResetRule::kept),
      binningMethod(fields, "binningMethod", BinningMethod::quantile, ResetRule::kept),
      binningBinCount(fields, "binningBinCount", 4, ResetRule::kept),
      binningMessage(fields, "binningMessage", std::nullopt, ResetRule::kept) {}

}  // namespace sorvane
