#pragma once

#include "SorvaneCore/Models/Multilevel/MultilevelSettings.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The selections of Multilevel.
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
    Field<bool> mlHasRun;
};

}  // namespace sorvane
