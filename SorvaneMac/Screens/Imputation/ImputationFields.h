#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Prepare/Imputation/MICEAnalysis.h"
#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// A variable whose missing numbers were filled in.
struct ImputedVariable {
    std::string name;
    std::int64_t observed = 0;
    std::int64_t missing = 0;
    ImputedMoments observedMoments;
    /// Of the cells filled in, over all copies.
    ImputedMoments imputedMoments;
    /// In how many steps nothing could be predicted, so that the cells kept what they held.
    std::int64_t stepsWithoutFit = 0;
    /// Observed against imputed values, and the course of the chains.
    std::vector<Chart> charts;

    bool operator==(const ImputedVariable&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImputedVariable,
                      (),
                      (name, observed, missing, observedMoments, imputedMoments, stepsWithoutFit))

/// A multiple imputation as it was run.
struct ImputationRun {
    std::vector<std::string> targets;
    /// Chosen, but left out for lacking more than half of their values.
    std::vector<std::string> excluded;
    /// Of the targets and predictors, those that could not be predicted in some step.
    std::vector<std::string> unpredicted;
    std::int64_t rows = 0;
    /// The cells of the targets as they were read.
    std::vector<TextTable::Column> cells;
    /// The targets.
    std::vector<ImputedVariable> variables;
    MultipleImputationResult result;

    bool operator==(const ImputationRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(ImputationRun, (), (targets, excluded, unpredicted, rows, variables, result))

/// What the last pooled analysis was of.
struct PooledBasis {
    /// "regression", "correlation" or "mean".
    std::string analysis;
    /// The outcome, the first variable, or the one of the mean.
    std::string variable;
    /// The predictors, or the second variable.
    std::vector<std::string> others;
    std::int64_t m = 0;
    std::int64_t rows = 0;

    bool operator==(const PooledBasis&) const = default;
};
BOOST_DESCRIBE_STRUCT(PooledBasis, (), (analysis, variable, others, m, rows))

/// The selections of imputation and of the analysis pooled over its copies, and what they gave.
struct ImputationFields {
    explicit ImputationFields(FieldRegistry& fields);

    Field<std::string> impMethod;
    /// Copies.
    Field<std::int64_t> impM;
    Field<NameSet> impTargets;
    Field<NameSet> impPredictors;
    Field<std::string> impAnalysis;
    Field<VariableName> impTarget;
    Field<VariableName> impRegOutcome;
    Field<NameSet> impRegPredictors;
    Field<VariableName> impCorrX;
    Field<VariableName> impCorrY;
    /// The imputed variable whose charts are shown; blank for the first.
    Field<VariableName> impChart;
    Field<std::optional<ImputationRun>> impResult;
    Field<std::optional<PooledBasis>> impPooledBasis;
    Field<std::optional<PooledEstimate>> impPooled;
    Field<std::vector<PooledCoefficient>> impPooledCoefs;
    Field<std::optional<PooledCorrelation>> impPooledCorr;

    /// Forgets the pooled results, which belong to other copies.
    void forgetPooled();
};

}  // namespace sorvane
