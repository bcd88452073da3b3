#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Models/Multilevel/MultilevelSettings.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The settings as the user reads them.
std::string_view displayName(MultilevelStructureKind value);
std::string_view displayName(MultilevelFamily value);
std::string_view displayName(MultilevelEstimator value);
std::string_view displayName(MultilevelDFMethod value);

/// The selections of Multilevel, and the model as it was last run.
struct MultilevelFields {
    explicit MultilevelFields(FieldRegistry& fields);

    Field<MultilevelStructureKind> mlStructure;
    Field<MultilevelFamily> mlFamily;
    Field<MultilevelDFMethod> mlDFMethod;
    Field<VariableName> mlOutcome;
    Field<VariableName> mlCluster;
    Field<VariableName> mlCluster2;
    Field<VariableName> mlTime;
    Field<NameSet> mlPredictors;
    Field<MultilevelEstimator> mlEstimator;
    Field<VariableName> mlRandomSlope;
    Field<bool> mlCorrelateRandom;
    /// What became of a random slope that the model cannot have, until the next change.
    Field<std::optional<std::string>> mlMessage;
    Field<bool> mlHasRun;
    Field<std::optional<MultilevelRun>> mlResult;
    Field<std::optional<MultilevelOrdinalRun>> mlOrdinalResult;
};

}  // namespace sorvane
