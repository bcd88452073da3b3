#include "SorvaneMac/Report/RTFWriter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/TableGrid.h"

namespace sorvane::RTFWriter {
namespace {

constexpr std::string_view opening =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n"
    "{\\fonttbl{\\f0\\fswiss\\fcharset0 Helvetica;}{\\f1\\fmodern\\fcharset0 Courier New;}}\n"
    "\\paperw12240\\paperh15840\\margl1440\\margr1440\\margt1440\\margb1440\n";

constexpr double twipsPerPoint = 20;
constexpr int textWidthInTwips = 9360;

std::int64_t twips(double points) {
    return std::llround(points * twipsPerPoint);
}

class Writer {
public:
    explicit Writer(std::string& rtf) : rtf_(rtf) {}

    void append(std::span<const Paragraph> paragraphs) {
        bool afterTable = false;
        while (!paragraphs.empty()) {
            const std::size_t tableLength = leadingTableLength(paragraphs);
            if (tableLength == 0) {
                appendParagraph(paragraphs.front());
            } else {
                if (afterTable) {
                    appendParagraph({});
                }
                appendTable(TableGrid::leading(paragraphs));
            }
            afterTable = tableLength > 0;
            paragraphs = paragraphs.subspan(std::max<std::size_t>(tableLength, 1));
        }
    }

private:
    void word(std::string_view name, std::int64_t value) {
        rtf_ += name;
        rtf_ += NumberText::integer(value);
    }

    void appendParagraph(const Paragraph& paragraph) {
        rtf_ += "\\pard\\plain";
        appendFormat(paragraph);
        appendContent(paragraph);
        rtf_ += "\\par\n";
    }

    void appendFormat(const Paragraph& paragraph) {
        switch (paragraph.alignment) {
            case TextAlignment::left:
                rtf_ += "\\ql";
                break;
            case TextAlignment::center:
                rtf_ += "\\qc";
                break;
            case TextAlignment::right:
                rtf_ += "\\qr";
                break;
            case TextAlignment::justified:
                rtf_ += "\\qj";
                break;
        }
        if (paragraph.spaceBefore > 0) {
            word("\\sb", twips(paragraph.spaceBefore));
        }
        if (paragraph.spaceAfter > 0) {
            word("\\sa", twips(paragraph.spaceAfter));
        }
        rtf_ += paragraph.keepWithNext ? "\\keepn" : "";
    }

    void appendContent(const Paragraph& paragraph) {
        if (paragraph.figure) {
            appendFigure(*paragraph.figure);
        }
        for (const TextRun& run : paragraph.runs) {
            appendRun(run);
        }
    }

    void appendRun(const TextRun& run) {
        const TextStyle& style = run.style;
        rtf_ += style.font == FontRole::monospaced ? "{\\f1" : "{\\f0";
        if (style.points) {
            word("\\fs", std::llround(*style.points * 2));
        }
        rtf_ += style.bold ? "\\b" : "";
        rtf_ += style.italic ? "\\i" : "";
        rtf_ += style.underline ? "\\ul" : "";
        rtf_ += ' ';
        appendText(run.text);
        rtf_ += '}';
    }

    void appendText(std::string_view text) {
        const auto length = static_cast<std::int32_t>(text.size());
        for (std::int32_t at = 0; at < length;) {
            UChar32 codePoint = 0;
            U8_NEXT_OR_FFFD(text.data(), at, length, codePoint);
            if (codePoint > 0x7F) {
                appendUnicode(codePoint);
            } else {
                appendAscii(static_cast<char>(codePoint));
            }
        }
    }

    void appendAscii(char c) {
        if (c == '\\' || c == '{' || c == '}') {
            rtf_ += '\\';
            rtf_ += c;
        } else if (c == '\t') {
            rtf_ += "\\tab ";
        } else if (c == '\n') {
            rtf_ += "\\line ";
        } else if (c >= ' ') {
            rtf_ += c;
        }
    }

    void appendUnicode(UChar32 codePoint) {
        if (U_IS_SUPPLEMENTARY(codePoint)) {
            appendUnit(U16_LEAD(codePoint));
            appendUnit(U16_TRAIL(codePoint));
        } else {
            appendUnit(codePoint);
        }
    }

    /// The unit is a signed 16-bit number in RTF; "?" is for readers without Unicode.
    void appendUnit(std::int32_t unit) {
        word("\\u", unit > 0x7FFF ? unit - 0x10000 : unit);
        rtf_ += '?';
    }

    void appendTable(const TableGrid& grid) {
        const int headerRows = grid.headerRowCount();
        for (std::size_t row = 0; row < grid.rows.size(); ++row) {
            rtf_ += "\\trowd\\trgaph108\\trleft0\\trftsWidth2\\trwWidth5000\\trkeep";
            rtf_ += static_cast<int>(row) < headerRows ? "\\trhdr" : "";
            for (const TableGridCell& cell : grid.rows[row]) {
                appendCellDefinition(cell.block, grid.columnCount);
            }
            rtf_ += '\n';
            for (const TableGridCell& cell : grid.rows[row]) {
                appendCell(cell);
            }
            rtf_ += "\\row\n";
        }
    }

    void appendCellDefinition(const TextTableBlock& block, int columnCount) {
        if (block.topBorder > 0) {
            word("\\clbrdrt\\brdrs\\brdrw", twips(block.topBorder));
        }
        if (block.bottomBorder > 0) {
            word("\\clbrdrb\\brdrs\\brdrw", twips(block.bottomBorder));
        }
        const int end = block.startingColumn + block.columnSpan;
        word("\\cellx", std::int64_t{textWidthInTwips} * end / columnCount);
    }

    void appendCell(const TableGridCell& cell) {
        for (std::size_t index = 0; index < cell.paragraphs.size(); ++index) {
            rtf_ += index > 0 ? "\\par\n" : "";
            rtf_ += "\\pard\\plain\\intbl";
            appendFormat(cell.paragraphs[index]);
            appendContent(cell.paragraphs[index]);
        }
        rtf_ += "\\cell\n";
    }

    void appendFigure(const InlineFigure& figure) {
        constexpr std::string_view digits = "0123456789abcdef";
        rtf_ += "{\\pict\\pngblip";
        word("\\picwgoal", twips(figure.width));
        word("\\pichgoal", twips(figure.height));
        rtf_ += '\n';
        rtf_.reserve(rtf_.size() + figure.png.size() * 2);
        for (const std::uint8_t byte : figure.png) {
            rtf_ += digits[byte >> 4U];
            rtf_ += digits[byte & 0xFU];
        }
        rtf_ += '}';
    }

    std::string& rtf_;
};

}  // namespace

std::string rtf(const RichDocument& document) {
    std::string text(opening);
    text.reserve(text.size() + document.paragraphs.size() * 96);
    Writer(text).append(document.paragraphs);
    text += "}\n";
    return text;
}

}  // namespace sorvane::RTFWriter
