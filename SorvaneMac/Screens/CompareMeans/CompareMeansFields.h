#pragma once

#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansRuns.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class InferentialTest { tTest, pairedTTest, anova, factorial, repeatedMeasures, ancova };
BOOST_DESCRIBE_ENUM(InferentialTest, tTest, pairedTTest, anova, factorial, repeatedMeasures, ancova)

/// The test's name as the user reads it.
std::string_view displayName(InferentialTest test);

/// How two independent means are compared; automatic means Welch's test.
enum class TTestType { auto_, welch, student };
BOOST_DESCRIBE_ENUM(TTestType, auto_, welch, student)
std::string_view rawValue(TTestType type);
std::string_view displayName(TTestType type);

/// The selections of Compare Means, and its last runs.
struct CompareMeansFields {
    explicit CompareMeansFields(FieldRegistry& fields);

    Field<InferentialTest> cmTest;
    Field<NameSet> rmColumns;
    Field<VariableName> cmOutcome;
    Field<VariableName> cmGrouping;
    /// Categories of `cmGrouping`.
    Field<std::string> cmGroup1;
    Field<std::string> cmGroup2;
    Field<TTestType> cmTestType;
    /// In percent.
    Field<std::int64_t> cmConfidence;
    Field<bool> cmHasRun;
    Field<std::string> cmResultTab;
    Field<std::optional<std::vector<AssumptionFinding>>> cmAssumptionFindings;
    Field<bool> cmAssumptionsExpanded;
    Field<VariableName> cmPairBefore;
    Field<VariableName> cmPairAfter;
    Field<VariableName> cmAncovaOutcome;
    Field<VariableName> cmAncovaGroup;
    Field<NameSet> cmAncovaCovariates;
    Field<NameSet> cmFactors;
    /// The last run of each test, as it was.
    Field<std::optional<TTestRun>> cmTTestRun;
    Field<std::optional<PairedTTestRun>> cmPairedTTestRun;
    Field<std::optional<OneWayRun>> cmOneWayRun;
    Field<std::optional<FactorialRun>> cmFactorialRun;
    Field<std::optional<RepeatedMeasuresRun>> cmRepeatedMeasuresRun;
    Field<std::optional<AncovaRun>> cmAncovaRun;
};

}  // namespace sorvane
