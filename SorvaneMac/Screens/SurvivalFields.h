#pragma once

#include <boost/describe/enum.hpp>
#include <string_view>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class SurvivalAnalysisMode { kaplanMeier, cox };
BOOST_DESCRIBE_ENUM(SurvivalAnalysisMode, kaplanMeier, cox)
/// As the user reads it.
std::string_view displayName(SurvivalAnalysisMode value);

/// The selections of Survival.
struct SurvivalFields {
    explicit SurvivalFields(FieldRegistry& fields);

    Field<SurvivalAnalysisMode> survMode;
    Field<VariableName> survTime;
    Field<VariableName> survEvent;
    Field<VariableName> survGroup;
    Field<NameSet> survPredictors;
    Field<bool> survHasRun;
};

}  // namespace sorvane
