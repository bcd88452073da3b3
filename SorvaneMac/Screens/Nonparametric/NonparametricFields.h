#pragma once

#include <boost/describe/enum.hpp>
#include <string>
#include <string_view>

#include "SorvaneMac/Screens/Nonparametric/NonparametricRuns.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class NPTest {
    mannWhitney,
    wilcoxon,
    kruskalWallis,
    friedman,
    chiSquare,
    goodnessOfFit,
    fisher,
    mcnemar
};
BOOST_DESCRIBE_ENUM(NPTest,
                    mannWhitney,
                    wilcoxon,
                    kruskalWallis,
                    friedman,
                    chiSquare,
                    goodnessOfFit,
                    fisher,
                    mcnemar)

/// The test's name as the user reads it.
std::string_view displayName(NPTest test);

/// The selections of Nonparametric & Categorical, and its last runs.
struct NonparametricFields {
    explicit NonparametricFields(FieldRegistry& fields);

    Field<NPTest> npTest;
    Field<VariableName> npOutcome;
    Field<VariableName> npGroup;
    /// Categories of `npGroup`.
    Field<std::string> npG1;
    Field<std::string> npG2;
    Field<VariableName> npBefore;
    Field<VariableName> npAfter;
    Field<VariableName> npRowCat;
    Field<VariableName> npColCat;
    Field<VariableName> npGoFVar;
    Field<NameSet> npFriedmanItems;
    Field<bool> npHasRun;
    Field<std::string> npResultTab;
    /// The last run of each test, as it was.
    Field<std::optional<MannWhitneyRun>> npMannWhitneyRun;
    Field<std::optional<WilcoxonRun>> npWilcoxonRun;
    Field<std::optional<KruskalWallisRun>> npKruskalWallisRun;
    Field<std::optional<FriedmanRun>> npFriedmanRun;
    Field<std::optional<IndependenceRun>> npChiSquareRun;
    Field<std::optional<GoodnessOfFitRun>> npGoodnessOfFitRun;
    Field<std::optional<FisherRun>> npFisherRun;
    Field<std::optional<McNemarRun>> npMcNemarRun;
};

}  // namespace sorvane
