#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(NPTest test) {
    switch (test) {
        case NPTest::mannWhitney:
            return "Mann-Whitney U";
        case NPTest::wilcoxon:
            return "Wilcoxon signed-rank";
        case NPTest::kruskalWallis:
            return "Kruskal-Wallis";
        case NPTest::friedman:
            return "Friedman";
        case NPTest::chiSquare:
            return "Chi-square test of independence";
        case NPTest::goodnessOfFit:
            return "Chi-square goodness-of-fit";
        case NPTest::fisher:
            return "Fisher exact";
        case NPTest::mcnemar:
            return "McNemar";
    }
    return {};
}

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
      npResultTab(fields, "npResultTab", "result", ResetRule::kept),
      npMannWhitneyRun(fields, "npMannWhitneyRun"),
      npWilcoxonRun(fields, "npWilcoxonRun"),
      npKruskalWallisRun(fields, "npKruskalWallisRun"),
      npFriedmanRun(fields, "npFriedmanRun"),
      npChiSquareRun(fields, "npChiSquareRun"),
      npGoodnessOfFitRun(fields, "npGoodnessOfFitRun"),
      npFisherRun(fields, "npFisherRun"),
      npMcNemarRun(fields, "npMcNemarRun") {}

}  // namespace sorvane
