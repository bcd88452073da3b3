#include "SorvaneMac/Report/StatisticalSymbols.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace sorvane::StatisticalSymbols {
namespace {

constexpr std::array<std::string_view, 20> symbols{"M",  "SD", "t",  "df", "p", "F", "SS",
                                                   "MS", "B",  "SE", "r",  "n", "U", "z",
                                                   "W",  "b",  "β",  "R²", "d", "H"};

constexpr std::string_view separators = " \t\n(),;/=";

}  // namespace

bool isSymbol(std::string_view text) {
    return std::ranges::find(symbols, text) != symbols.end();
}

std::string escapedHTML(std::string_view text) {
    std::string html;
    html.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            default:
                html += c;
        }
    }
    return html;
}

std::string headerHTML(std::string_view header) {
    std::string html;
    bool first = true;
    int parentheses = 0;
    while (!header.empty()) {
        const std::size_t length = std::min(header.find_first_of(separators), header.size());
        if (length == 0) {
            parentheses += header.front() == '(' ? 1 : header.front() == ')' ? -1 : 0;
            html += escapedHTML(header.substr(0, 1));
            header.remove_prefix(1);
            continue;
        }
        const std::string_view word = header.substr(0, length);
        const bool italic = (first || parentheses > 0) && isSymbol(word);
        html += italic ? "<i>" : "";
        html += escapedHTML(word);
        html += italic ? "</i>" : "";
        first = false;
        header.remove_prefix(length);
    }
    return html;
}

}  // namespace sorvane::StatisticalSymbols
