#pragma once

#include <set>
#include <string>
#include <string_view>

namespace sorvane {

using NameTokens = std::set<std::string, std::less<>>;

/// The words of a column name, lower-cased: "SatisfactionScore_2" gives satisfaction, score, 2.
///
/// Method     a word ends before a capital that follows a small letter or a digit (ASCII), and at
///            every character that is not alphanumeric; "Q1a" is one word
NameTokens tokenize(std::string_view name);

}  // namespace sorvane
