#pragma once

#include <string>

/// Numbers in the log of data changes, so exact that a reader can repeat the step.
namespace sorvane::LogText {

/// The shortest text that reads back as the number; a whole number without a point.
std::string number(double value);

/// "80%" for 0.8, "66.7%" for 0.667.
std::string percent(double share);

}  // namespace sorvane::LogText
