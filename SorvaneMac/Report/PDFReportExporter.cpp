#include "SorvaneMac/Report/PDFReportExporter.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>

#include "SorvaneMac/Report/RichTextConversion.h"

namespace sorvane::PDFReportExporter {
namespace {

/// Fine enough that rounding to device units cannot be seen.
constexpr int dotsPerInch = 1200;
constexpr double dotsPerPoint = dotsPerInch / 72.0;
constexpr double margin = 48 * dotsPerPoint;
constexpr double textWidth = 516 * dotsPerPoint;
constexpr double textHeight = 696 * dotsPerPoint;

/// What must not be parted by a page end: a paragraph or a table, led by its headings and captions
/// and followed by its note.
struct PageUnit {
    QTextBlock firstBlock;
    QTextTable* firstTable = nullptr;
    double top = 0;
};

void prepare(QTextDocument& text, QPdfWriter& writer) {
    QFont font;
    font.setFamilies({"Helvetica Neue", "Arial", "Liberation Sans", "DejaVu Sans"});
    font.setPointSizeF(12);
    text.setDefaultFont(font);
    text.setDocumentMargin(0);
    text.setUseDesignMetrics(true);
    text.documentLayout()->setPaintDevice(&writer);
}

std::vector<PageUnit> pageUnits(const QTextDocument& text) {
    const QAbstractTextDocumentLayout& layout = *text.documentLayout();
    std::vector<PageUnit> units;
    bool continues = false;
    bool afterTable = false;
    for (auto at = text.rootFrame()->begin(); !at.atEnd(); ++at) {
        auto* table = qobject_cast<QTextTable*>(at.currentFrame());
        if (table == nullptr && at.currentFrame() != nullptr) {
            continue;
        }
        // A paragraph right under a table is its note.
        const bool isNote = afterTable && table == nullptr && at.currentBlock().length() > 1;
        if (!continues && !isNote) {
            const double top = table != nullptr ? layout.frameBoundingRect(table).top()
                                                : layout.blockBoundingRect(at.currentBlock()).top();
            units.push_back({.firstBlock = at.currentBlock(), .firstTable = table, .top = top});
        }
        continues = table == nullptr && RichTextConversion::keepsWithNext(at.currentBlock());
        afterTable = table != nullptr;
    }
    return units;
}

void breakBefore(const PageUnit& unit) {
    if (unit.firstTable != nullptr) {
        QTextTableFormat format = unit.firstTable->format();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        unit.firstTable->setFormat(format);
    } else {
        QTextBlockFormat format = unit.firstBlock.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(unit.firstBlock).setBlockFormat(format);
    }
}

/// Page ends by first fit, from the heights on one endless page. A unit higher than a page begins
/// where it stands, if a third of a page is left.
void breakIntoPages(QTextDocument& text) {
    text.setTextWidth(textWidth);
    const std::vector<PageUnit> units = pageUnits(text);
    double used = 0;
    for (std::size_t index = 0; index < units.size(); ++index) {
        const bool isLast = index + 1 == units.size();
        const double end = isLast ? text.size().height() : units[index + 1].top;
        const double height = end - units[index].top;
        const double wanted = height > textHeight ? textHeight / 3 : height;
        if (used > 0 && used + wanted > textHeight) {
            breakBefore(units[index]);
            used = 0;
        }
        used = std::fmod(used + height, textHeight);
    }
    text.setPageSize({textWidth, textHeight});
}

/// The position of the first line of the block that stands on another page than its first; absent
/// where the block stands on one page.
std::optional<int> pageEndInside(const QTextBlock& block) {
    const QAbstractTextDocumentLayout& layout = *block.document()->documentLayout();
    const double top = layout.blockBoundingRect(block).top();
    const auto page = [&](int line) {
        const QTextLine at = block.layout()->lineAt(line);
        return std::floor((top + at.y() + at.height() / 2) / textHeight);
    };
    for (int line = 1; line < block.layout()->lineCount(); ++line) {
        if (page(line) > page(0)) {
            return block.position() + block.layout()->lineAt(line).textStart();
        }
    }
    return std::nullopt;
}

/// Parts paragraphs at page ends. The toolkit writes the line before a page's first into the page as
/// well, unseen but searchable, where both are of one paragraph.
void partParagraphsAtPageEnds(QTextDocument& text) {
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        const std::optional<int> end = pageEndInside(block);
        if (!end) {
            continue;
        }
        QTextBlockFormat upper = block.blockFormat();
        QTextBlockFormat lower = upper;
        upper.setBottomMargin(0);
        lower.setTopMargin(0);
        lower.setTextIndent(0);
        lower.setPageBreakPolicy(QTextFormat::PageBreak_Auto);
        QTextCursor cursor(&text);
        cursor.setPosition(*end);
        cursor.insertBlock(lower);
        QTextCursor(block).setBlockFormat(upper);
    }
}

void drawPages(QTextDocument& text, QPdfWriter& writer) {
    QPainter painter(&writer);
    const int pages = std::max(text.pageCount(), 1);
    for (int page = 0; page < pages; ++page) {
        if (page > 0) {
            writer.newPage();
        }
        const QRectF visible(0, page * textHeight, textWidth, textHeight);
        painter.save();
        painter.translate(margin, margin - visible.top());
        painter.setClipRect(visible);
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, Qt::black);
        // What only touches the page's edge is another page's.
        context.clip = visible.adjusted(0, dotsPerPoint, 0, -dotsPerPoint);
        text.documentLayout()->draw(&painter, context);
        painter.restore();
    }
}

}  // namespace

std::vector<std::uint8_t> pdf(const RichDocument& document) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(dotsPerInch);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setTitle("Results");
        QTextDocument text;
        prepare(text, writer);
        RichTextConversion::write(document, text);
        breakIntoPages(text);
        partParagraphsAtPageEnds(text);
        drawPages(text, writer);
    }
    return {bytes.begin(), bytes.end()};
}

}  // namespace sorvane::PDFReportExporter
