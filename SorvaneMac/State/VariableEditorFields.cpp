#include "SorvaneMac/State/VariableEditorFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(AggregateOp value) {
    switch (value) {
        case AggregateOp::sum:
            return "Sum";
        case AggregateOp::mean:
            return "Mean";
        case AggregateOp::count:
            return "Count (non-missing)";
        case AggregateOp::minimum:
            return "Minimum";
        case AggregateOp::maximum:
            return "Maximum";
    }
    return "";
}

std::string_view displayName(PairOp value) {
    switch (value) {
        case PairOp::difference:
            return "Difference (A - B)";
        case PairOp::ratio:
            return "Ratio (A / B)";
    }
    return "";
}

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
      rcDraft(fields, "rcDraft", {}, ResetRule::kept),
      rcCopyUnmatched(fields, "rcCopyUnmatched", true, ResetRule::kept),
      rcReverseMin(fields, "rcReverseMin", 1.0, ResetRule::kept),
      rcReverseMax(fields, "rcReverseMax", 5.0, ResetRule::kept),
      rcMessage(fields, "rcMessage") {}

}  // namespace sorvane
