#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <optional>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneCore/Analyses/Basics/RegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/LogisticRegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/OrdinalRegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/PoissonRegressionTests.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class RegressionModel { linear, logistic, poisson, ordinal };
BOOST_DESCRIBE_ENUM(RegressionModel, linear, logistic, poisson, ordinal)

/// The model's name as the user reads it.
std::string_view displayName(RegressionModel model);

/// A linear model as it was run.
struct LinearModelRun {
    std::string outcome;
    std::vector<std::string> predictors;
    /// Absent where the model could not be estimated.
    std::optional<MultipleRegressionResult> result;
    std::vector<AssumptionFinding> assumptions;
    /// Drawn from the cases of the run.
    Chart figure;

    bool operator==(const LinearModelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(LinearModelRun, (), (outcome, predictors, result, assumptions))

/// A logistic model as it was run.
struct LogisticModelRun {
    std::string outcome;
    /// The label that counts as 1.
    std::string event;
    std::vector<std::string> predictors;
    std::optional<LogisticRegressionResult> result;

    bool operator==(const LogisticModelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(LogisticModelRun, (), (outcome, event, predictors, result))

/// A Poisson model as it was run.
struct PoissonModelRun {
    std::string outcome;
    std::vector<std::string> predictors;
    std::optional<PoissonRegressionResult> result;

    bool operator==(const PoissonModelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(PoissonModelRun, (), (outcome, predictors, result))

/// A proportional-odds model as it was run.
struct OrdinalModelRun {
    std::string outcome;
    std::vector<std::string> predictors;
    std::optional<OrdinalRegressionResult> result;

    bool operator==(const OrdinalModelRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(OrdinalModelRun, (), (outcome, predictors, result))

/// The selections of Regression, and each model as it was last run.
struct RegressionFields {
    explicit RegressionFields(FieldRegistry& fields);

    Field<RegressionModel> regModel;
    Field<VariableName> regOutcome;
    Field<NameSet> regPredictors;
    Field<bool> regHasRun;
    /// Each stands until the next run, whatever is chosen meanwhile.
    Field<std::optional<LinearModelRun>> regLinearRun;
    Field<std::optional<LogisticModelRun>> regLogisticRun;
    Field<std::optional<PoissonModelRun>> regPoissonRun;
    Field<std::optional<OrdinalModelRun>> regOrdinalRun;
    Field<std::optional<std::vector<AssumptionFinding>>> regAssumptionFindings;
    Field<bool> regAssumptionsExpanded;
};

}  // namespace sorvane
