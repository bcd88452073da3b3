#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Invariance/InvarianceFields.h"

namespace sorvane {

/// Configural, metric and scalar models of one factor, compared step by step between groups.
std::unique_ptr<Analysis> invarianceAnalysis(StudioState& state, InvarianceFields& fields);

}  // namespace sorvane
