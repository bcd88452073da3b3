#pragma once

#include <cstdint>
#include <string>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The selections of multiple imputation and of the analysis pooled over its copies.
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
};

}  // namespace sorvane
