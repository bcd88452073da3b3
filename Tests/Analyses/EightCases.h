#pragma once

#include <string>
#include <vector>

#include "Tests/Analyses/CodedColumns.h"

/// Two variables of eight cases in two groups, of which the second is higher on the first variable.
namespace sorvane::test {

inline const OptionalValues firstOutcome = {3, 4, 5, 4, 7, 9, 8, 8};
inline const OptionalValues secondOutcome = {1, 5, 2, 3, 4, 2, 6, 5};
inline const std::vector<std::string> twoGroups = {"b", "b", "b", "b", "a", "a", "a", "a"};

}  // namespace sorvane::test
