#pragma once

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The profile of the respondents on Descriptives & Explore.
struct DescriptivesFields {
    explicit DescriptivesFields(FieldRegistry& fields);

    Field<NameSet> demoVars;
    Field<VariableName> demoGroup;
};

}  // namespace sorvane
