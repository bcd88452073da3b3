#include "SorvaneMac/Screens/NonparametricFields.h"

namespace sorvane {

NonparametricFields::NonparametricFields(FieldRegistry& fields)
    : npTest(fields, "npTest", NPTest::mannWhitney, ResetRule::kept),
      npOutcome(fields, "npOutcome"),
      npGroup(fields, "npGroup"),
      npG1(fields, "npG1"),
      npG2(fields, "npG2"),
      npBefore(fields, "npBefore"),
      npAfter(fields, "npAfter"),
      npRowCat(fields, "npRowCat"),
      npColCat(fields, "npColCat"),
      npGoFVar(fields, "npGoFVar"),
      npFriedmanItems(fields, "npFriedmanItems"),
      npHasRun(fields, "npHasRun"),
      npResultTab(fields, "npResultTab", "result", ResetRule::kept) {}

}  // namespace sorvane
