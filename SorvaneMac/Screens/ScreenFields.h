#pragma once

#include "SorvaneMac/Screens/CompareMeans/CompareMeansFields.h"
#include "SorvaneMac/Screens/CorrelationFields.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionFields.h"
#include "SorvaneMac/Screens/DescriptivesFields.h"
#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/Screens/Invariance/InvarianceFields.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"
#include "SorvaneMac/Screens/Mediation/MediationFields.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/Screens/PrepareDataFields.h"
#include "SorvaneMac/Screens/Regression/RegressionFields.h"
#include "SorvaneMac/Screens/Structural/StructuralFields.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/Screens/Survival/SurvivalFields.h"

namespace sorvane {

/// The selections and run marks of the analysis screens, beside those that the state itself holds.
struct ScreenFields {
    // Both apart, so that only they know how every field is made and goes.
    explicit ScreenFields(FieldRegistry& fields);
    ~ScreenFields();
    ScreenFields(const ScreenFields&) = delete;
    ScreenFields& operator=(const ScreenFields&) = delete;

    FieldRegistry& registry;
    CompareMeansFields compareMeans{registry};
    DescriptivesFields descriptives{registry};
    CorrelationFields correlation{registry};
    RegressionFields regression{registry};
    DataReductionFields dataReduction{registry};
    MultivariateFields multivariate{registry};
    SurveyFields survey{registry};
    PrepareDataFields prepareData{registry};
    ImputationFields imputation{registry};
    StructuralFields structural{registry};
    MultilevelFields multilevel{registry};
    LatentClassFields latentClass{registry};
    MediationFields mediation{registry};
    InvarianceFields invariance{registry};
    SurvivalFields survival{registry};
    NonparametricFields nonparametric{registry};
};

}  // namespace sorvane
