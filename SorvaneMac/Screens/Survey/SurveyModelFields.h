#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyCorrelation.h"
#include "SorvaneCore/Survey/SurveyModel.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignUsed.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// What is asked of the population under a sampling design.
enum class SurveyAnalysis { estimates, linear, logistic, poisson, ordinal, correlation, crosstab };
BOOST_DESCRIBE_ENUM(
    SurveyAnalysis, estimates, linear, logistic, poisson, ordinal, correlation, crosstab)

/// The analysis's name as the user reads it.
std::string_view displayName(SurveyAnalysis analysis);

/// A regression under the design as it was run.
struct SurveyModelRun {
    SurveyModelKind model = SurveyModelKind::linear;
    std::string outcome;
    /// Of logistic models: the label that counts as 1.
    std::string event;
    std::vector<std::string> predictors;
    SurveyDesignUsed design;
    /// Absent where the outcome could not be read.
    std::optional<SurveyModelResult> result;
    /// With the weights alone; absent where the design is no more than that.
    std::optional<SurveyModelResult> weightsOnly;
    std::optional<SurveyModelResult> unweighted;
    /// What the reader must know of the design's columns.
    std::vector<std::string> cautions;

    bool operator==(const SurveyModelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    SurveyModelRun,
    (),
    (model, outcome, event, predictors, design, result, weightsOnly, unweighted, cautions))

/// A variable of a matrix of correlations, in the population.
struct SurveyVariable {
    std::string name;
    double mean = std::numeric_limits<double>::quiet_NaN();
    double standardDeviation = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const SurveyVariable&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyVariable, (), (name, mean, standardDeviation))

/// Correlations under the design as they were run.
struct SurveyCorrelationRun {
    std::vector<SurveyVariable> variables;
    SurveyDesignUsed design;
    /// Of the first variable with each later one, then of the second, and so on.
    std::vector<SurveyCorrelationResult> pairs;
    /// The correlation of each pair without weights.
    std::vector<double> unweighted;
    std::vector<std::string> cautions;

    bool operator==(const SurveyCorrelationRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyCorrelationRun, (), (variables, design, pairs, unweighted, cautions))

/// A table of two variables under the design as it was run.
struct SurveyCrosstabRun {
    SurveyDesignUsed design;
    SurveyCategoricalResult result;
    std::vector<std::string> cautions;

    bool operator==(const SurveyCrosstabRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyCrosstabRun, (), (design, result, cautions))

/// The choice of analysis under a sampling design, the variables of its models and tables, and each
/// as it was last run.
struct SurveyModelFields {
    explicit SurveyModelFields(FieldRegistry& fields);

    Field<SurveyAnalysis> svAnalysis;
    Field<VariableName> svOutcome;
    Field<NameSet> svPredictors;
    Field<NameSet> svCorrVars;
    Field<VariableName> svRowCat;
    Field<VariableName> svColCat;
    Field<std::optional<SurveyModelRun>> svLinearResult;
    Field<std::optional<SurveyModelRun>> svLogisticResult;
    Field<std::optional<SurveyModelRun>> svPoissonResult;
    Field<std::optional<SurveyModelRun>> svOrdinalResult;
    Field<std::optional<SurveyCorrelationRun>> svCorrelationResult;
    Field<std::optional<SurveyCrosstabRun>> svCrosstabResult;
};

}  // namespace sorvane
