#include "SorvaneMac/Report/PrintedReport.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>

#include "SorvaneMac/Report/PageBreaks.h"
#include "SorvaneMac/Report/RichTextConversion.h"
#include "SorvaneMac/Report/TableFitting.h"
#include "SorvaneMac/Report/UnbrokenText.h"

namespace sorvane {

struct PrintedLine {
    QTextLine line;
    /// Of the paragraph, which its lines are measured from.
    QPointF origin;

    double top() const { return origin.y() + line.y(); }
    Extent extent() const { return {top(), top() + line.height()}; }
};

struct PrintedRule {
    QRectF area;
    /// Inside the row to which the rule belongs.
    double anchor = 0;
};

namespace {

/// Gathers what an endless page prints and where it must not be cut.
class Gatherer {
public:
    Gatherer(const QTextDocument& text, double unitsPerPoint)
        : text_(text),
          unitsPerPoint_(unitsPerPoint),
          page_{.pageHeight = PrintedReport::textHeight * unitsPerPoint,
                .tolerance = unitsPerPoint / 2} {
        for (auto at = text.rootFrame()->begin(); !at.atEnd(); ++at) {
            if (auto* table = qobject_cast<QTextTable*>(at.currentFrame())) {
                addTable(*table);
            } else if (at.currentBlock().isValid()) {
                addParagraph(at.currentBlock());
            }
        }
    }

    std::vector<PrintedLine> lines;
    std::vector<PrintedRule> rules;

    std::vector<PageSlice> slices() const { return pageSlices(page_); }

private:
    /// A table that may be followed by its note.
    struct TableAbove {
        Extent unit;
        Extent lastRow;
    };

    QRectF place(const QTextBlock& block) const {
        return text_.documentLayout()->blockBoundingRect(block);
    }

    /// Formats measure in pixels of 1/96 inch.
    double units(double pixels) const { return pixels * 72 / 96 * unitsPerPoint_; }

    /// The lines of a paragraph; none where it is blank.
    std::vector<Extent> addLines(const QTextBlock& block) {
        std::vector<Extent> extents;
        if (block.text().trimmed().isEmpty()) {
            return extents;
        }
        const QTextLayout& layout = *block.layout();
        for (int index = 0; index < layout.lineCount(); ++index) {
            lines.push_back({layout.lineAt(index), place(block).topLeft()});
            extents.push_back(lines.back().extent());
        }
        page_.content.insert(page_.content.end(), extents.begin(), extents.end());
        return extents;
    }

    void addParagraph(const QTextBlock& block) {
        const std::vector<Extent> extents = addLines(block);
        const std::optional<TableAbove> above = std::exchange(tableAbove_, std::nullopt);
        if (extents.empty()) {
            return;
        }
        const double top = leadTop_.value_or(extents.front().top);
        leadTop_.reset();
        if (RichTextConversion::keepsWithNext(block)) {
            leadTop_ = top;
            return;
        }
        const std::size_t second = std::min<std::size_t>(1, extents.size() - 1);
        const double begun = extents[second].bottom;
        page_.together.push_back({top, begun});
        page_.together.push_back({extents[extents.size() - 1 - second].top, extents.back().bottom});
        if (above) {
            // A paragraph right under a table is its note.
            page_.together.push_back({above->lastRow.top, begun});
            keepTogether({above->unit.top, extents.back().bottom});
        }
    }

    void keepTogether(const Extent& extent) {
        if (extent.height() <= page_.pageHeight) {
            page_.together.push_back(extent);
        }
    }

    void addTable(const QTextTable& table) {
        const std::vector<Extent> rows = rowExtents(table);
        const Extent all{rows.front().top, rows.back().bottom};
        const Extent unit{leadTop_.value_or(all.top), all.bottom};
        leadTop_.reset();
        // A table higher than a page begins where it stands, if a third of a page is left.
        const double wanted =
            unit.height() <= page_.pageHeight ? unit.height() : page_.pageHeight / 3;
        page_.together.push_back({unit.top, unit.top + wanted});
        const Extent heads = addHeads(table, rows);
        for (const Extent& row : rows) {
            // Of a row that fits no page only the beginning is held; its lines are parted.
            const bool fits = row.height() <= page_.pageHeight - heads.height();
            page_.content.push_back({row.top, fits ? row.bottom : row.top + unitsPerPoint_});
        }
        for (int row = 0; row < table.rows(); ++row) {
            addRow(table, row, rows[static_cast<std::size_t>(row)]);
        }
        tableAbove_ = TableAbove{.unit = unit, .lastRow = rows.back()};
    }

    /// The heads that repeat, and no height where none do: heads that would leave too little of a
    /// page to the rows are printed once.
    Extent addHeads(const QTextTable& table, const std::vector<Extent>& rows) {
        const auto count = static_cast<std::size_t>(table.format().headerRowCount());
        if (count == 0 || count >= rows.size()) {
            return {};
        }
        const Extent heads{rows.front().top, rows[count].top};
        keepTogether({heads.top, rows[count].bottom});
        if (heads.height() > page_.pageHeight / 3) {
            return {};
        }
        page_.tables.push_back({.heads = heads, .rows = {heads.bottom, rows.back().bottom}});
        return heads;
    }

    /// From the texts of the cells, since a table does not tell where its rows stand.
    std::vector<Extent> rowExtents(const QTextTable& table) const {
        std::vector<Extent> rows;
        for (int row = 0; row < table.rows(); ++row) {
            Extent extent = cellArea(table, table.cellAt(row, 0));
            for (int column = 1; column < table.columns(); ++column) {
                const Extent cell = cellArea(table, table.cellAt(row, column));
                extent.top = std::min(extent.top, cell.top);
                extent.bottom = std::max(extent.bottom, cell.bottom);
            }
            if (!rows.empty()) {
                rows.back().bottom = extent.top;
            }
            rows.push_back(extent);
        }
        return rows;
    }

    Extent cellArea(const QTextTable& table, const QTextTableCell& cell) const {
        const QTextBlock first = cell.firstCursorPosition().block();
        const QTextBlock last = cell.lastCursorPosition().block();
        const double padding = table.format().cellPadding();
        return {place(first).top() - units(padding + first.blockFormat().topMargin()),
                place(last).bottom() + units(padding + last.blockFormat().bottomMargin())};
    }

    void addRow(const QTextTable& table, int row, const Extent& extent) {
        for (int column = 0; column < table.columns(); ++column) {
            const QTextTableCell cell = table.cellAt(row, column);
            if (cell.column() != column) {
                continue;
            }
            for (auto at = cell.begin(); !at.atEnd(); ++at) {
                addLines(at.currentBlock());
            }
            addRules(table, cell, extent);
        }
    }

    void addRules(const QTextTable& table, const QTextTableCell& cell, const Extent& row) {
        const QTextTableCellFormat format = cell.format().toTableCellFormat();
        const QTextBlock block = cell.firstCursorPosition().block();
        const double padding = units(table.format().cellPadding());
        const double left = place(block).left() - padding;
        const double width = block.layout()->lineAt(0).width() + 2 * padding;
        const auto add = [&](double y, double pixels, double anchor) {
            const double height = units(pixels);
            if (height > 0) {
                rules.push_back({QRectF(left, y - height / 2, width, height), anchor});
            }
        };
        add(row.top, format.topBorder(), row.top + unitsPerPoint_);
        add(row.bottom, format.bottomBorder(), row.bottom - unitsPerPoint_);
    }

    const QTextDocument& text_;
    double unitsPerPoint_;
    EndlessPage page_;
    /// The top of the headings and captions right above.
    std::optional<double> leadTop_;
    std::optional<TableAbove> tableAbove_;
};

void prepare(QTextDocument& text, QPaintDevice& device) {
    QFont font;
    font.setFamilies({"Helvetica Neue", "Arial", "Liberation Sans", "DejaVu Sans"});
    font.setPointSizeF(12);
    text.setDefaultFont(font);
    text.setDocumentMargin(0);
    text.setUseDesignMetrics(true);
    text.documentLayout()->setPaintDevice(&device);
}

}  // namespace

struct PrintedReport::Layout {
    QTextDocument text;
    double tolerance = 0;
    std::vector<PrintedLine> lines;
    std::vector<PrintedRule> rules;
    std::vector<PageSlice> slices;

    void draw(const Extent& extent, QPainter& painter) const {
        const auto holds = [&](double y) {
            return y >= extent.top - tolerance && y < extent.bottom - tolerance;
        };
        for (const PrintedRule& rule : rules) {
            if (holds(rule.anchor)) {
                painter.fillRect(rule.area, Qt::black);
            }
        }
        for (const PrintedLine& line : lines) {
            if (holds(line.top())) {
                line.line.draw(&painter, line.origin);
            }
        }
    }
};

PrintedReport::PrintedReport(const RichDocument& document, QPaintDevice& device)
    : layout_(std::make_unique<Layout>()) {
    const double unitsPerPoint = device.logicalDpiY() / 72.0;
    prepare(layout_->text, device);
    RichTextConversion::write(UnbrokenText::numbersHeld(document), layout_->text);
    TableFitting::fit(layout_->text, textWidth * unitsPerPoint);
    layout_->text.setTextWidth(textWidth * unitsPerPoint);
    // The toolkit lays out as far as it is asked to; the size asks for everything.
    layout_->text.documentLayout()->documentSize();
    layout_->tolerance = unitsPerPoint / 2;
    Gatherer gatherer(layout_->text, unitsPerPoint);
    layout_->lines = std::move(gatherer.lines);
    layout_->rules = std::move(gatherer.rules);
    layout_->slices = gatherer.slices();
}

PrintedReport::~PrintedReport() = default;

int PrintedReport::pageCount() const {
    return std::max(static_cast<int>(layout_->slices.size()), 1);
}

void PrintedReport::drawPage(int page, QPainter& painter) const {
    if (layout_->slices.empty()) {
        return;
    }
    const PageSlice& slice = layout_->slices[static_cast<std::size_t>(page)];
    painter.save();
    if (slice.heads) {
        painter.translate(0, -slice.heads->top);
        layout_->draw(*slice.heads, painter);
        painter.translate(0, slice.heads->bottom);
    }
    painter.translate(0, -slice.body.top);
    layout_->draw(slice.body, painter);
    painter.restore();
}

}  // namespace sorvane
