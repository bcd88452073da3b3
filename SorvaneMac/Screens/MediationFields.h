#pragma once

#include <boost/describe/enum.hpp>
#include <string_view>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class MediationScreenMode { mediation, moderation };
BOOST_DESCRIBE_ENUM(MediationScreenMode, mediation, moderation)
/// As the user reads it.
std::string_view displayName(MediationScreenMode value);

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
