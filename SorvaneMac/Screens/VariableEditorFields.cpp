#include "SorvaneMac/Screens/VariableEditorFields.h"

namespace sorvane {

VariableEditorFields::VariableEditorFields(FieldRegistry& fields)
    : cvName(fields, "cvName", "Computed", ResetRule::kept),
      cvKind(fields, "cvKind", "aggregate", ResetRule::kept),
      cvAggOp(fields, "cvAggOp", AggregateOp::mean, ResetRule::kept),
      cvSources(fields, "cvSources"),
      cvMinCompletion(fields, "cvMinCompletion", 0.0, ResetRule::kept),
      cvVarA(fields, "cvVarA"),
      cvVarB(fields, "cvVarB"),
      cvPairOp(fields, "cvPairOp", PairOp::difference, ResetRule::kept),
      cvMessage(fields, "cvMessage"),
      dvName(fields, "dvName", {}, ResetRule::kept),
      dvNewName(fields, "dvNewName", {}, ResetRule::kept),
      dvMessage(fields, "dvMessage", std::nullopt, ResetRule::kept),
      rcSource(fields, "rcSource"),
      rcName(fields, "rcName", "Recoded", ResetRule::kept),
      rcReplace(fields, "rcReplace", false, ResetRule::kept),
      rcMode(fields, "rcMode", "value", ResetRule::kept),
      rcValueRules(fields, "rcValueRules", {}, ResetRule::kept),
      rcRangeRules(fields, "rcRangeRules", {}, ResetRule::kept),
      rcCopyUnmatched(fields, "rcCopyUnmatched", true, ResetRule::kept),
      rcReverseMin(fields, "rcReverseMin", 1.0, ResetRule::kept),
      rcReverseMax(fields, "rcReverseMax", 5.0, ResetRule::kept),
      rcMessage(fields, "rcMessage") {}

}  // namespace sorvane
