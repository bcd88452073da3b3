#pragma once

#include <string>

namespace sorvane::NumberText {

/// ".45" for "0.45", "-.20" for "-0.20", as figures that cannot exceed 1 are written; any other
/// text as it stands.
std::string withoutLeadingZero(std::string text);

}  // namespace sorvane::NumberText
