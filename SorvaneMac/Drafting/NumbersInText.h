#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The numbers that running text holds, so that a draft can be held against what it was made of.
namespace sorvane::NumbersInText {

/// The numbers that stand in the draft and nowhere in the source, as the draft writes them, each
/// once.
///
/// Method     digits with their decimal point, whatever their sign, leading and trailing zeros:
///            "0.50" and ".5" are one number. "1,200" is found where the source has 1200 or 1,200
///            or both of its parts. Decimal digits of every script count; numbers in words do not
std::vector<std::string> foreign(std::string_view draft, std::string_view source);

}  // namespace sorvane::NumbersInText
