#pragma once

#include <string>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The sampling design and what is estimated under it.
struct SurveyFields {
    explicit SurveyFields(FieldRegistry& fields);

    Field<VariableName> svWeight;
    Field<VariableName> svStrata;
    Field<VariableName> svCluster;
    Field<VariableName> svVar;
    Field<std::string> svEstimand;
    Field<bool> svHasRun;
    /// Whether the other screens take the weights into account.
    Field<bool> surveyWeightsActive;
};

}  // namespace sorvane
