#pragma once

#include <boost/describe/enum.hpp>
#include <optional>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class RegressionModel { linear, logistic, poisson, ordinal };
BOOST_DESCRIBE_ENUM(RegressionModel, linear, logistic, poisson, ordinal)

/// The model's name as the user reads it.
std::string_view displayName(RegressionModel model);

/// The selections of Regression.
struct RegressionFields {
    explicit RegressionFields(FieldRegistry& fields);

    Field<RegressionModel> regModel;
    Field<VariableName> regOutcome;
    Field<NameSet> regPredictors;
    Field<bool> regHasRun;
    Field<std::optional<std::vector<AssumptionFinding>>> regAssumptionFindings;
    Field<bool> regAssumptionsExpanded;
};

}  // namespace sorvane
