#include "SorvaneMac/Report/RichTextConversion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

#include <QBuffer>
#include <QImage>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>

#include "SorvaneMac/Report/TableFitting.h"
#include "SorvaneMac/Report/TableGrid.h"

namespace sorvane::RichTextConversion {
namespace {

/// Formats measure in pixels of 1/96 inch; the layout scales them to the device.
constexpr double pixelsPerPoint = 96.0 / 72.0;
constexpr double cellPadding = 4;
constexpr int keepWithNextProperty = QTextFormat::UserProperty + 1;

/// The PNG bytes of a picture stand beside the decoded picture under the same name.
constexpr int pngResource = QTextDocument::UserResource + 1;

double points(double pixels) {
    return std::round(pixels / pixelsPerPoint * 20) / 20;
}

Qt::Alignment qtAlignment(TextAlignment alignment) {
    switch (alignment) {
        case TextAlignment::center:
            return Qt::AlignHCenter;
        case TextAlignment::right:
            return Qt::AlignRight;
        case TextAlignment::justified:
            return Qt::AlignJustify;
        case TextAlignment::left:
            break;
    }
    return Qt::AlignLeft;
}

TextAlignment alignmentOf(Qt::Alignment alignment) {
    if (alignment.testFlag(Qt::AlignHCenter)) {
        return TextAlignment::center;
    }
    if (alignment.testFlag(Qt::AlignRight)) {
        return TextAlignment::right;
    }
    return alignment.testFlag(Qt::AlignJustify) ? TextAlignment::justified : TextAlignment::left;
}

QTextCharFormat characterFormat(const TextStyle& style) {
    QTextCharFormat format;
    if (style.font == FontRole::monospaced) {
        format.setFontFamilies({"Menlo", "DejaVu Sans Mono", "Consolas", "Courier New"});
        format.setFontFixedPitch(true);
    }
    if (style.points) {
        format.setFontPointSize(*style.points);
    }
    if (style.bold) {
        format.setFontWeight(QFont::Bold);
    }
    format.setFontItalic(style.italic);
    format.setFontUnderline(style.underline);
    return format;
}

/// The format of a block itself, which text typed into it takes.
QTextCharFormat typingFormat(const Paragraph& paragraph) {
    return characterFormat(paragraph.runs.empty() ? TextStyle{.points = 12}
                                                  : paragraph.runs.front().style);
}

TextStyle styleOf(const QTextCharFormat& format) {
    TextStyle style;
    style.font = format.fontFixedPitch() ? FontRole::monospaced : FontRole::system;
    if (format.hasProperty(QTextFormat::FontPointSize)) {
        style.points = TableFitting::fullPoints(format);
    } else if (format.hasProperty(QTextFormat::FontPixelSize)) {
        style.points = points(format.intProperty(QTextFormat::FontPixelSize));
    }
    style.bold = format.fontWeight() >= QFont::DemiBold;
    style.italic = format.fontItalic();
    style.underline = format.fontUnderline();
    return style;
}

class Writer {
public:
    explicit Writer(QTextDocument& target) : target_(target), cursor_(&target) {}

    void append(std::span<const Paragraph> paragraphs) {
        while (!paragraphs.empty()) {
            const std::size_t tableLength = leadingTableLength(paragraphs);
            if (tableLength > 0) {
                appendTable(TableGrid::leading(paragraphs),
                            beginsWithEmptyLine(paragraphs.subspan(tableLength)));
            } else {
                appendParagraph(paragraphs.front());
            }
            paragraphs = paragraphs.subspan(std::max<std::size_t>(tableLength, 1));
        }
    }

private:
    void appendParagraph(const Paragraph& paragraph) {
        if (!onFreshBlock_) {
            cursor_.insertBlock();
        }
        fill(cursor_, paragraph);
        onFreshBlock_ = false;
    }

    /// Fills the empty block in which the cursor stands.
    void fill(QTextCursor& cursor, const Paragraph& paragraph) {
        cursor.setBlockCharFormat(typingFormat(paragraph));
        fillFormatted(cursor, paragraph);
    }

    void fillFormatted(QTextCursor& cursor, const Paragraph& paragraph) {
        QTextBlockFormat format;
        format.setAlignment(qtAlignment(paragraph.alignment));
        format.setTopMargin(paragraph.spaceBefore * pixelsPerPoint);
        format.setBottomMargin(paragraph.spaceAfter * pixelsPerPoint);
        if (paragraph.keepWithNext) {
            format.setProperty(keepWithNextProperty, true);
        }
        cursor.setBlockFormat(format);
        if (paragraph.figure) {
            insertFigure(cursor, *paragraph.figure);
        }
        for (const TextRun& run : paragraph.runs) {
            QString text = QString::fromStdString(run.text);
            text.replace(u'\n', QChar(QChar::LineSeparator));
            cursor.insertText(text, characterFormat(run.style));
        }
    }

    void insertFigure(QTextCursor& cursor, const InlineFigure& figure) {
        const QString name = QStringLiteral("figure-%1").arg(++figures_);
        const QByteArray png(reinterpret_cast<const char*>(figure.png.data()),
                             static_cast<qsizetype>(figure.png.size()));
        target_.addResource(QTextDocument::ImageResource, QUrl(name), QImage::fromData(png));
        target_.addResource(pngResource, QUrl(name), png);
        QTextImageFormat format;
        format.setName(name);
        format.setWidth(figure.width * pixelsPerPoint);
        format.setHeight(figure.height * pixelsPerPoint);
        cursor.insertImage(format);
    }

    static bool beginsWithEmptyLine(std::span<const Paragraph> paragraphs) {
        return !paragraphs.empty() && paragraphs.front() == Paragraph{};
    }

    /// The layout gives an empty line after a table no height, so the table's margin stands for it.
    void appendTable(const TableGrid& grid, bool emptyLineFollows) {
        QTextTableFormat format;
        format.setBottomMargin(emptyLineFollows ? 12 * pixelsPerPoint : 0);
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        format.setColumnWidthConstraints(QList<QTextLength>(
            grid.columnCount,
            QTextLength(QTextLength::PercentageLength, 100.0 / grid.columnCount)));
        format.setBorder(0);
        format.setBorderCollapse(true);
        format.setCellSpacing(0);
        format.setCellPadding(cellPadding);
        format.setHeaderRowCount(grid.headerRowCount());
        QTextTable* table =
            cursor_.insertTable(static_cast<int>(grid.rows.size()), grid.columnCount, format);
        for (std::size_t row = 0; row < grid.rows.size(); ++row) {
            for (const TableGridCell& cell : grid.rows[row]) {
                fillCell(*table, static_cast<int>(row), cell);
            }
        }
        cursor_ = table->lastCursorPosition();
        cursor_.movePosition(QTextCursor::NextBlock);
        onFreshBlock_ = true;
    }

    void fillCell(QTextTable& table, int row, const TableGridCell& gridCell) {
        const TextTableBlock& block = gridCell.block;
        if (block.columnSpan > 1) {
            table.mergeCells(row, block.startingColumn, 1, block.columnSpan);
        }
        QTextTableCell cell = table.cellAt(row, block.startingColumn);
        QTextTableCellFormat format;
        if (block.topBorder > 0) {
            format.setTopBorder(block.topBorder * pixelsPerPoint);
            format.setTopBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setTopBorderBrush(Qt::black);
        }
        if (block.bottomBorder > 0) {
            format.setBottomBorder(block.bottomBorder * pixelsPerPoint);
            format.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setBottomBorderBrush(Qt::black);
        }
        // The format of a cell is also that of its first block; text typed there takes it.
        format.merge(typingFormat(gridCell.paragraphs.front()));
        cell.setFormat(format);
        QTextCursor cursor = cell.firstCursorPosition();
        fillFormatted(cursor, gridCell.paragraphs.front());
        for (const Paragraph& paragraph : gridCell.paragraphs.subspan(1)) {
            cursor.insertBlock();
            fill(cursor, paragraph);
        }
    }

    QTextDocument& target_;
    QTextCursor cursor_;
    /// The block at the cursor was made by the document itself and waits to be filled.
    bool onFreshBlock_ = true;
    int figures_ = 0;
};

class Reader {
public:
    explicit Reader(const QTextDocument& source) : source_(source) {}

    RichDocument read() {
        if (!source_.isEmpty()) {
            readFrame(*source_.rootFrame());
        }
        return std::move(document_);
    }

private:
    void readFrame(const QTextFrame& frame) {
        for (auto at = frame.begin(); !at.atEnd(); ++at) {
            if (const auto* table = qobject_cast<const QTextTable*>(at.currentFrame())) {
                dropLineAboveFirstTable();
                readTable(*table);
            } else if (at.currentFrame() != nullptr) {
                readFrame(*at.currentFrame());
            } else {
                readBlock(at.currentBlock(), std::nullopt);
            }
        }
    }

    /// A text document cannot begin with a table; the empty line before it is not the user's.
    void dropLineAboveFirstTable() {
        if (document_.paragraphs.size() == 1 && document_.paragraphs.front() == Paragraph{}) {
            document_.paragraphs.clear();
        }
    }

    void readTable(const QTextTable& table) {
        ++tables_;
        for (int row = 0; row < table.rows(); ++row) {
            for (int column = 0; column < table.columns(); ++column) {
                const QTextTableCell cell = table.cellAt(row, column);
                if (cell.row() == row && cell.column() == column) {
                    readCell(cell);
                }
            }
        }
    }

    void readCell(const QTextTableCell& cell) {
        const QTextTableCellFormat format = cell.format().toTableCellFormat();
        const TextTableBlock block{.table = tables_,
                                   .startingRow = cell.row(),
                                   .startingColumn = cell.column(),
                                   .columnSpan = cell.columnSpan(),
                                   .topBorder = points(format.topBorder()),
                                   .bottomBorder = points(format.bottomBorder())};
        for (auto at = cell.begin(); !at.atEnd(); ++at) {
            if (at.currentBlock().isValid()) {
                readBlock(at.currentBlock(), block);
            }
        }
    }

    void readBlock(const QTextBlock& textBlock, const std::optional<TextTableBlock>& place) {
        const QTextBlockFormat format = textBlock.blockFormat();
        Paragraph paragraph{.alignment = alignmentOf(format.alignment()),
                            .spaceBefore = points(format.topMargin()),
                            .spaceAfter = points(format.bottomMargin()),
                            .keepWithNext = keepsWithNext(textBlock),
                            .block = place};
        for (auto at = textBlock.begin(); !at.atEnd(); ++at) {
            const QTextFragment fragment = at.fragment();
            if (fragment.charFormat().isImageFormat()) {
                readFigure(fragment.charFormat().toImageFormat(), paragraph);
            } else {
                addText(fragment, paragraph);
            }
        }
        document_.paragraphs.push_back(std::move(paragraph));
    }

    static void addText(const QTextFragment& fragment, Paragraph& paragraph) {
        QString text = fragment.text();
        text.replace(QChar::LineSeparator, u'\n').remove(QChar::ObjectReplacementCharacter);
        if (text.isEmpty()) {
            return;
        }
        const TextStyle style = styleOf(fragment.charFormat());
        if (paragraph.runs.empty() || !(paragraph.runs.back().style == style)) {
            paragraph.runs.push_back({.text = {}, .style = style});
        }
        paragraph.runs.back().text += text.toStdString();
    }

    /// A second figure in one line, or one after text, starts a paragraph of its own.
    void readFigure(const QTextImageFormat& format, Paragraph& paragraph) {
        std::optional<InlineFigure> figure = figureOf(format);
        if (!figure) {
            return;
        }
        if (paragraph.figure || !paragraph.runs.empty()) {
            Paragraph next = paragraph;
            next.runs.clear();
            document_.paragraphs.push_back(std::exchange(paragraph, std::move(next)));
        }
        paragraph.figure = std::move(figure);
    }

    std::optional<InlineFigure> figureOf(const QTextImageFormat& format) const {
        const QUrl name(format.name());
        QByteArray png = source_.resource(pngResource, name).toByteArray();
        if (png.isEmpty()) {
            png = encoded(source_.resource(QTextDocument::ImageResource, name));
        }
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(png.constData());
        std::optional<InlineFigure> figure =
            inlineFigure({bytes, static_cast<std::size_t>(png.size())});
        if (figure && format.width() > 0 && format.height() > 0) {
            figure->width = points(format.width());
            figure->height = points(format.height());
        }
        return figure;
    }

    static QByteArray encoded(const QVariant& picture) {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        picture.value<QImage>().save(&buffer, "PNG");
        return png;
    }

    const QTextDocument& source_;
    RichDocument document_;
    int tables_ = 0;
};

}  // namespace

void write(const RichDocument& document, QTextDocument& target) {
    target.setUndoRedoEnabled(false);
    target.clear();
    QTextCursor edit(&target);
    edit.beginEditBlock();
    Writer(target).append(document.paragraphs);
    edit.endEditBlock();
    target.setUndoRedoEnabled(true);
}

RichDocument read(const QTextDocument& source) {
    return Reader(source).read();
}

bool keepsWithNext(const QTextBlock& block) {
    return block.blockFormat().boolProperty(keepWithNextProperty);
}

}  // namespace sorvane::RichTextConversion
