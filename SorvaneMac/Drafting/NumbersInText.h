#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The numbers that running text holds, so that a draft can be held against what it was made of.
namespace sorvane::NumbersInText {

/// The numbers that stand in the draft and nowhere in the source, as the draft writes them, each
/// once.
///
/// Method     digits with sign and decimal point, whatever their leading and trailing zeros: "0.50"
///            and ".5" are one number, "-0.5" is another, and every minus of print is one. A hyphen
///            behind a letter or a number is none. "1,200" is found where the source has 1200 or
///            1,200 or both of its parts. Decimal digits of every script count; numbers and signs
///            in words do not: "lower by 0.5" is not what the source says with "-0.5"
std::vector<std::string> foreign(std::string_view draft, std::string_view source);

}  // namespace sorvane::NumbersInText
