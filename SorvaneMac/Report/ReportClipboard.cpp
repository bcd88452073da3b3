#include "SorvaneMac/Report/ReportClipboard.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Report/StatisticalSymbols.h"

namespace sorvane::ReportClipboard {
namespace {

constexpr std::string_view tableOpening =
    "<table style=\"border-collapse:collapse;border-top:1px solid #000;border-bottom:1px solid "
    "#000\" cellspacing=\"0\" cellpadding=\"5\">";

constexpr std::string_view headStyle =
    "style=\"border-bottom:1px solid #000;text-align:center;font-weight:normal\">";

/// A cell on one line: tabs and line ends would break it apart where it is pasted.
std::string oneLine(std::string_view cell) {
    std::string text(cell);
    std::ranges::replace_if(
        text, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    return text;
}

void appendHeads(const ReportTable& table, std::string& html) {
    if (table.groupHeaders && !table.groupHeaders->empty()) {
        html += "<tr>";
        for (const ReportGroupHeader& group : *table.groupHeaders) {
            html += "<th colspan=\"" + NumberText::integer(std::max(group.span, 1)) + "\" ";
            html += headStyle;
            html += StatisticalSymbols::escapedHTML(oneLine(group.label));
            html += "</th>";
        }
        html += "</tr>";
    }
    html += "<tr>";
    for (const std::string& header : table.headers) {
        html += "<th ";
        html += headStyle;
        html += StatisticalSymbols::headerHTML(oneLine(header));
        html += "</th>";
    }
    html += "</tr>";
}

void appendRows(const ReportTable& table, std::string& html) {
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        html += "<tr>";
        for (std::size_t column = 0; column < table.rows[row].size(); ++column) {
            const bool bold = isBold(table, row, column);
            html +=
                column == 0 ? "<td style=\"text-align:left\">" : "<td style=\"text-align:center\">";
            html += bold ? "<b>" : "";
            html += StatisticalSymbols::escapedHTML(oneLine(table.rows[row][column]));
            html += bold ? "</b></td>" : "</td>";
        }
        html += "</tr>";
    }
}

void appendLine(const std::vector<std::string>& cells, std::string& text) {
    for (std::size_t index = 0; index < cells.size(); ++index) {
        text += index > 0 ? "\t" : "";
        text += oneLine(cells[index]);
    }
    text += '\n';
}

/// Each spanning head in the first of its columns, the others empty.
std::vector<std::string> groupCells(const std::vector<ReportGroupHeader>& groups) {
    std::vector<std::string> cells;
    for (const ReportGroupHeader& group : groups) {
        cells.push_back(group.label);
        cells.resize(cells.size() + static_cast<std::size_t>(std::max(group.span, 1) - 1));
    }
    return cells;
}

}  // namespace

std::string html(std::string_view title, const ReportTable& table) {
    const ReportTable shown = APAFormat::normalize(table);
    std::string html;
    if (!title.empty()) {
        html += "<p style=\"font-style:italic\">" + StatisticalSymbols::escapedHTML(title) + "</p>";
    }
    html += tableOpening;
    appendHeads(shown, html);
    appendRows(shown, html);
    html += "</table>";
    if (shown.note && !shown.note->empty()) {
        html += "<p><i>Note.</i> " + StatisticalSymbols::escapedHTML(*shown.note) + "</p>";
    }
    return html;
}

std::string plainText(const ReportTable& table) {
    const ReportTable shown = APAFormat::normalize(table);
    std::string text;
    if (shown.groupHeaders && !shown.groupHeaders->empty()) {
        appendLine(groupCells(*shown.groupHeaders), text);
    }
    appendLine(shown.headers, text);
    for (const auto& row : shown.rows) {
        appendLine(row, text);
    }
    if (shown.note && !shown.note->empty()) {
        text += "Note. " + *shown.note + "\n";
    }
    return text;
}

}  // namespace sorvane::ReportClipboard
