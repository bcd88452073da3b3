#include "SorvaneMac/Report/APAFormat.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/LeadingZero.h"

namespace sorvane::APAFormat {
namespace {

constexpr std::array<std::string_view, 27> boundedHeaders{"p",
                                                          "r",
                                                          "R²",
                                                          "β",
                                                          "Std.",
                                                          "W",
                                                          "h2",
                                                          "Cramer V",
                                                          "Canonical r",
                                                          "Wilks",
                                                          "Wilks' lambda",
                                                          "Pillai",
                                                          "Pillai's trace",
                                                          "η²",
                                                          "η²p",
                                                          "CFI",
                                                          "TLI",
                                                          "RMSEA",
                                                          "SRMR",
                                                          "GFI",
                                                          "AGFI",
                                                          "NFI",
                                                          "Proportion",
                                                          "Estimated proportion",
                                                          "Probability",
                                                          "Entropy",
                                                          "ICC"};

constexpr std::array<std::string_view, 7> fitIndices{"cfi", "tli",  "rmsea", "srmr",
                                                     "gfi", "agfi", "nfi"};

constexpr std::array<std::string_view, 4> boundedParts{"eta", "loading", "wilks", "pillai"};

template <std::size_t size>
bool contains(const std::array<std::string_view, size>& names, std::string_view text) {
    return std::ranges::find(names, text) != names.end();
}

bool isAllDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// "F1", "F12" head the columns of factors; "1", "2" the columns of a numbered matrix.
bool isNumberedColumn(std::string_view header) {
    return isAllDigits(header) || (header.starts_with('F') && isAllDigits(header.substr(1)));
}

bool isBoundedInLowerCase(std::string_view header) {
    if (header == "p" || header.starts_with("p ") || header.starts_with("p-") ||
        header == "canonical r" || contains(fitIndices, header)) {
        return true;
    }
    return std::ranges::any_of(boundedParts, [header](std::string_view part) {
        return header.find(part) != std::string_view::npos;
    });
}

}  // namespace

bool dropsLeadingZero(std::string_view header) {
    const std::string_view name = UnicodeText::trimmed(header);
    return isNumberedColumn(name) || contains(boundedHeaders, name) || name.starts_with("α") ||
           name.starts_with("ω") || isBoundedInLowerCase(UnicodeText::lowerCased(name));
}

ReportTable normalize(const ReportTable& table) {
    std::vector<std::size_t> bounded;
    for (std::size_t column = 0; column < table.headers.size(); ++column) {
        if (dropsLeadingZero(table.headers[column])) {
            bounded.push_back(column);
        }
    }
    ReportTable result = table;
    for (auto& row : result.rows) {
        for (const std::size_t column : bounded) {
            if (column < row.size()) {
                row[column] = NumberText::withoutLeadingZero(std::move(row[column]));
            }
        }
    }
    return result;
}

}  // namespace sorvane::APAFormat
