#pragma once

#include <boost/describe/enum.hpp>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class MediationScreenMode { mediation, moderation };
BOOST_DESCRIBE_ENUM(MediationScreenMode, mediation, moderation)

/// The selections of Mediation & Moderation.
struct MediationFields {
    explicit MediationFields(FieldRegistry& fields);

    Field<MediationScreenMode> medMode;
    Field<VariableName> medX;
    /// The mediator.
    Field<VariableName> medM;
    /// The moderator.
    Field<VariableName> medW;
    Field<VariableName> medY;
    Field<NameSet> medCovariates;
    Field<bool> medHasRun;
};

}  // namespace sorvane
