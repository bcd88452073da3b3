#include "SorvaneMac/Report/ReportTableMaker.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Report/StatisticalSymbols.h"

namespace sorvane::ReportTableMaker {
namespace {

constexpr double captionPoints = 12;
constexpr double cellPoints = 11;
constexpr double outerRule = 1.5;
constexpr double headerRule = 0.75;

TextRun captionRun(std::string_view text, bool bold, bool italic) {
    return {.text = std::string(text),
            .style = {.points = captionPoints, .bold = bold, .italic = italic}};
}

Paragraph numberLine(int number) {
    return {.runs = {captionRun("Table " + NumberText::integer(number), true, false)},
            .spaceAfter = 2,
            .keepWithNext = true};
}

Paragraph captionLine(std::string_view caption) {
    return {.runs = {captionRun(caption, false, true)}, .spaceAfter = 4, .keepWithNext = true};
}

Paragraph noteLine(std::string_view note) {
    return {.runs = {captionRun("Note. ", false, true), captionRun(note, false, false)},
            .spaceBefore = 4,
            .spaceAfter = 6};
}

/// Appends the cells of one table, row by row.
class CellWriter {
public:
    CellWriter(std::vector<Paragraph>& paragraphs, int table)
        : paragraphs_(paragraphs), first_(paragraphs.size()), table_(table) {}

    void add(std::string text, const TextStyle& style, TextAlignment alignment, int span = 1) {
        Paragraph& cell = paragraphs_.emplace_back();
        if (!text.empty()) {
            cell.runs.push_back({.text = std::move(text), .style = style});
        }
        cell.alignment = alignment;
        cell.block = TextTableBlock{
            .table = table_, .startingRow = row_, .startingColumn = column_, .columnSpan = span};
        column_ += span;
    }

    /// Ends the row, after filling it with empty cells up to the width of the table.
    void endRow(int columnCount) {
        while (column_ < columnCount) {
            add("", {}, TextAlignment::center);
        }
        ++row_;
        column_ = 0;
    }

    /// Draws a rule below the row that was ended last.
    void ruleBelow(double width) {
        for (std::size_t at = paragraphs_.size(); at > first_; --at) {
            TextTableBlock& block = *paragraphs_[at - 1].block;
            if (block.startingRow != row_ - 1) {
                break;
            }
            block.bottomBorder = width;
        }
    }

    /// Keeps every row so far on the page of the one after it.
    void keepRowsWithNext() {
        for (std::size_t at = first_; at < paragraphs_.size(); ++at) {
            paragraphs_[at].keepWithNext = true;
        }
    }

    void ruleAboveFirstRow(double width) {
        for (std::size_t at = first_; at < paragraphs_.size(); ++at) {
            TextTableBlock& block = *paragraphs_[at].block;
            if (block.startingRow > 0) {
                break;
            }
            block.topBorder = width;
        }
    }

private:
    std::vector<Paragraph>& paragraphs_;
    std::size_t first_;
    int table_;
    int row_ = 0;
    int column_ = 0;
};

int columnCount(const ReportTable& table) {
    std::size_t columns = table.headers.size();
    for (const auto& row : table.rows) {
        columns = std::max(columns, row.size());
    }
    return static_cast<int>(columns);
}

void addHeads(ReportTable& table, int columns, CellWriter& cells) {
    const TextStyle head{.points = cellPoints, .bold = true};
    if (table.groupHeaders && !table.groupHeaders->empty()) {
        for (ReportGroupHeader& group : *table.groupHeaders) {
            cells.add(std::move(group.label), head, TextAlignment::center, std::max(group.span, 1));
        }
        cells.endRow(columns);
    }
    if (table.headers.empty()) {
        return;
    }
    for (std::string& header : table.headers) {
        TextStyle style = head;
        style.italic = StatisticalSymbols::isSymbol(header);
        cells.add(std::move(header), style, TextAlignment::center);
    }
    cells.endRow(columns);
    cells.ruleBelow(headerRule);
}

void addBody(ReportTable& table, int columns, CellWriter& cells) {
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        for (std::size_t column = 0; column < table.rows[row].size(); ++column) {
            cells.add(std::move(table.rows[row][column]),
                      {.points = cellPoints, .bold = isBold(table, row, column)},
                      column == 0 ? TextAlignment::left : TextAlignment::center);
        }
        cells.endRow(columns);
    }
}

}  // namespace

std::vector<Paragraph> apaTable(const ReportTable& table, int number, std::string_view caption) {
    ReportTable shown = APAFormat::normalize(table);
    const int columns = columnCount(shown);
    std::vector<Paragraph> paragraphs;
    paragraphs.reserve(3 + (shown.rows.size() + 2) * static_cast<std::size_t>(columns));
    paragraphs.push_back(numberLine(number));
    paragraphs.push_back(captionLine(caption));

    CellWriter cells(paragraphs, number);
    addHeads(shown, columns, cells);
    // Heads must not stand alone at the foot of a page.
    cells.keepRowsWithNext();
    addBody(shown, columns, cells);
    cells.ruleBelow(outerRule);
    cells.ruleAboveFirstRow(outerRule);

    if (shown.note && !shown.note->empty()) {
        paragraphs.push_back(noteLine(*shown.note));
    }
    return paragraphs;
}

}  // namespace sorvane::ReportTableMaker
