#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(InferentialTest test) {
    switch (test) {
        case InferentialTest::tTest:
            return "Independent-samples t-test";
        case InferentialTest::pairedTTest:
            return "Paired-samples t-test";
        case InferentialTest::anova:
            return "One-way ANOVA";
        case InferentialTest::factorial:
            return "Factorial ANOVA";
        case InferentialTest::repeatedMeasures:
            return "Repeated-measures ANOVA";
        case InferentialTest::ancova:
            return "ANCOVA";
    }
    return {};
}

std::string_view rawValue(TTestType type) {
    switch (type) {
        case TTestType::auto_:
            return "auto";
        case TTestType::welch:
            return "welch";
        case TTestType::student:
            return "student";
    }
    return {};
}

std::string_view displayName(TTestType type) {
    switch (type) {
        case TTestType::auto_:
            return "Auto";
        case TTestType::welch:
            return "Welch's";
        case TTestType::student:
            return "Student's";
    }
    return {};
}

CompareMeansFields::CompareMeansFields(FieldRegistry& fields)
    : cmTest(fields, "cmTest", InferentialTest::tTest, ResetRule::kept),
      rmColumns(fields, "rmColumns"),
      cmOutcome(fields, "cmOutcome"),
      cmGrouping(fields, "cmGrouping"),
      cmGroup1(fields, "cmGroup1"),
      cmGroup2(fields, "cmGroup2"),
      cmTestType(fields, "cmTestType", TTestType::auto_, ResetRule::kept),
      cmConfidence(fields, "cmConfidence", 95, ResetRule::kept),
      cmHasRun(fields, "cmHasRun"),
      cmResultTab(fields, "cmResultTab", "result", ResetRule::kept),
      cmAssumptionFindings(fields, "cmAssumptionFindings"),
      cmAssumptionsExpanded(fields, "cmAssumptionsExpanded", true, ResetRule::kept),
      cmPairBefore(fields, "cmPairBefore"),
      cmPairAfter(fields, "cmPairAfter"),
      cmAncovaOutcome(fields, "cmAncovaOutcome"),
      cmAncovaGroup(fields, "cmAncovaGroup"),
      cmAncovaCovariates(fields, "cmAncovaCovariates"),
      cmFactors(fields, "cmFactors"),
      cmTTestRun(fields, "cmTTestRun"),
      cmPairedTTestRun(fields, "cmPairedTTestRun"),
      cmOneWayRun(fields, "cmOneWayRun"),
      cmFactorialRun(fields, "cmFactorialRun"),
      cmRepeatedMeasuresRun(fields, "cmRepeatedMeasuresRun"),
      cmAncovaRun(fields, "cmAncovaRun") {}

}  // namespace sorvane
