#pragma once

#include <string>

#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"

/// The notes under the tables of a multilevel model that was fitted.
namespace sorvane::MultilevelNotes {

std::string fixed(const MultilevelRun& run);
std::string random(const MultilevelRun& run);

}  // namespace sorvane::MultilevelNotes
