#pragma once

#include <string>
#include <string_view>

/// The letters that stand for statistics and are set in italics.
namespace sorvane::StatisticalSymbols {

/// Whether the text is one such symbol: "M", "SD", "df", "β", "R²" and the like.
bool isSymbol(std::string_view text);

/// The text with "&", "<" and ">" made safe for HTML.
std::string escapedHTML(std::string_view text);

/// A head as HTML, its symbols in italics.
///
/// Method     a symbol counts as the first word or inside parentheses ("p value", "M (SD)"), so
///            that the letter of "Group B" stays upright
std::string headerHTML(std::string_view header);

}  // namespace sorvane::StatisticalSymbols
