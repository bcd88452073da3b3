#pragma once

#include <boost/describe/enum.hpp>
#include <string_view>

#include "SorvaneCore/Dataset/DataVariable.h"

namespace sorvane {

/// The user's simpler vocabulary of roles; each sets one kind.
enum class UserVariableRole { outcome, independent, scaleItem, openEnded, doNotAnalyze };
BOOST_DESCRIBE_ENUM(UserVariableRole, outcome, independent, scaleItem, openEnded, doNotAnalyze)

std::string_view displayName(UserVariableRole role);
VariableKind variableKind(UserVariableRole role);

}  // namespace sorvane
