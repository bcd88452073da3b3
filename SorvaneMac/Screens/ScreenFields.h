#pragma once

#include "SorvaneMac/Screens/CleaningFields.h"
#include "SorvaneMac/Screens/CompareMeansFields.h"
#include "SorvaneMac/Screens/CorrelationFields.h"
#include "SorvaneMac/Screens/DataReductionFields.h"
#include "SorvaneMac/Screens/DescriptivesFields.h"
#include "SorvaneMac/Screens/ImputationFields.h"
#include "SorvaneMac/Screens/InvarianceFields.h"
#include "SorvaneMac/Screens/LatentClassFields.h"
#include "SorvaneMac/Screens/MediationFields.h"
#include "SorvaneMac/Screens/MultilevelFields.h"
#include "SorvaneMac/Screens/MultivariateFields.h"
#include "SorvaneMac/Screens/NonparametricFields.h"
#include "SorvaneMac/Screens/PrepareDataFields.h"
#include "SorvaneMac/Screens/RegressionFields.h"
#include "SorvaneMac/Screens/StructuralFields.h"
#include "SorvaneMac/Screens/SurveyFields.h"
#include "SorvaneMac/Screens/SurvivalFields.h"
#include "SorvaneMac/Screens/VariableEditorFields.h"

namespace sorvane {

/// The selections and run marks of the analysis screens, beside those that the state itself holds.
struct ScreenFields {
    explicit ScreenFields(FieldRegistry& fields);

    CompareMeansFields compareMeans;
    DescriptivesFields descriptives;
    CorrelationFields correlation;
    RegressionFields regression;
    DataReductionFields dataReduction;
    MultivariateFields multivariate;
    SurveyFields survey;
    PrepareDataFields prepareData;
    VariableEditorFields variableEditor;
    CleaningFields cleaning;
    ImputationFields imputation;
    StructuralFields structural;
    MultilevelFields multilevel;
    LatentClassFields latentClass;
    MediationFields mediation;
    InvarianceFields invariance;
    SurvivalFields survival;
    NonparametricFields nonparametric;
};

}  // namespace sorvane
