#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Headless/Arguments.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// An operation of the workspace that a script can call by name.
struct Operation {
    std::string name;
    std::vector<ListedArgument> arguments;
    std::function<void(StudioState&, const CallArguments&)> run;
};

/// The operations of `StudioState` under their own names. Where an operation takes a variable's
/// identifier, a script gives its name as "variable".
namespace OperationTable {

const std::vector<Operation>& all();
/// Null for a name that is not there.
const Operation* find(std::string_view name);

}  // namespace OperationTable

}  // namespace sorvane
