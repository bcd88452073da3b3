#include "SorvaneMac/Report/WordprocessingML.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/TableGrid.h"
#include "SorvaneMac/Report/XMLText.h"

namespace sorvane {
namespace {

constexpr std::string_view centered = "<w:pPr><w:jc w:val=\"center\"/></w:pPr>";

constexpr int halfPointsWithoutFont = 26;
constexpr double emuPerPoint = 12700;

void appendNumber(std::int64_t value, std::string& xml) {
    xml += NumberText::integer(value);
}

/// Writes one body; a paragraph or a run that turns out empty is taken back.
class BodyWriter {
public:
    explicit BodyWriter(WordBody& body) : xml_(body.xml), figures_(body.figures) {}

    void append(std::span<const Paragraph> paragraphs) {
        while (!paragraphs.empty()) {
            const std::size_t tableLength = leadingTableLength(paragraphs);
            if (tableLength > 0) {
                appendTable(TableGrid::leading(paragraphs));
            } else {
                appendParagraph(paragraphs.front());
            }
            paragraphs = paragraphs.subspan(std::max<std::size_t>(tableLength, 1));
        }
    }

private:
    void appendParagraph(const Paragraph& paragraph) {
        const std::size_t start = xml_.size();
        xml_ += "<w:p>";
        const std::size_t contentStart = xml_.size();
        appendContent(paragraph);
        if (xml_.size() == contentStart) {
            xml_.replace(start, std::string::npos, "<w:p/>");
        } else {
            xml_ += "</w:p>";
        }
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
        const std::size_t start = xml_.size();
        const TextStyle& style = run.style;
        const int size = style.points ? static_cast<int>(*style.points * 2) : halfPointsWithoutFont;
        xml_ += "<w:r><w:rPr><w:sz w:val=\"";
        appendNumber(size, xml_);
        xml_ += "\"/><w:szCs w:val=\"";
        appendNumber(size, xml_);
        xml_ += "\"/>";
        xml_ += style.bold ? "<w:b/>" : "";
        xml_ += style.italic ? "<w:i/>" : "";
        xml_ += style.underline ? "<w:u w:val=\"single\"/>" : "";
        xml_ += "</w:rPr><w:t xml:space=\"preserve\">";
        const std::size_t textStart = xml_.size();
        appendEscapedXML(run.text, xml_);
        if (xml_.size() == textStart) {
            xml_.resize(start);
        } else {
            xml_ += "</w:t></w:r>";
        }
    }

    void appendTable(const TableGrid& grid) {
        xml_ += "<w:tbl><w:tblPr><w:tblW w:w=\"5000\" w:type=\"pct\"/></w:tblPr><w:tblGrid>";
        for (int column = 0; column < grid.columnCount; ++column) {
            xml_ += "<w:gridCol/>";
        }
        xml_ += "</w:tblGrid>";
        for (const auto& row : grid.rows) {
            xml_ += "<w:tr>";
            for (const TableGridCell& cell : row) {
                appendCell(cell);
            }
            xml_ += "</w:tr>";
        }
        xml_ += "</w:tbl>";
    }

    void appendCell(const TableGridCell& cell) {
        xml_ += "<w:tc><w:tcPr><w:tcW w:w=\"0\" w:type=\"auto\"/>";
        if (cell.block.columnSpan >= 2) {
            xml_ += "<w:gridSpan w:val=\"";
            appendNumber(cell.block.columnSpan, xml_);
            xml_ += "\"/>";
        }
        appendBorders(cell.block);
        xml_ += "</w:tcPr>";
        for (const Paragraph& paragraph : cell.paragraphs) {
            xml_ += "<w:p>";
            xml_ += paragraph.alignment == TextAlignment::center ? centered : "";
            const std::size_t contentStart = xml_.size();
            appendContent(paragraph);
            if (xml_.size() == contentStart) {
                xml_ += "<w:r><w:t xml:space=\"preserve\"></w:t></w:r>";
            }
            xml_ += "</w:p>";
        }
        xml_ += "</w:tc>";
    }

    void appendBorders(const TextTableBlock& block) {
        if (block.topBorder <= 0 && block.bottomBorder <= 0) {
            return;
        }
        xml_ += "<w:tcBorders>";
        appendBorder("top", block.topBorder);
        appendBorder("bottom", block.bottomBorder);
        xml_ += "</w:tcBorders>";
    }

    /// Widths count in eighths of a point; below 2 Word shows nothing.
    void appendBorder(std::string_view side, double width) {
        if (width <= 0) {
            return;
        }
        xml_ += "<w:";
        xml_ += side;
        xml_ += " w:val=\"single\" w:sz=\"";
        appendNumber(std::max(std::llround(width * 8), 2LL), xml_);
        xml_ += "\" w:space=\"0\" w:color=\"000000\"/>";
    }

    void appendFigure(const InlineFigure& figure) {
        figures_.push_back(&figure);
        const std::string number = NumberText::integer(std::ssize(figures_));
        const std::string identity = "id=\"" + number + "\" name=\"Figure " + number + "\"/>";
        const std::string extent =
            "cx=\"" + NumberText::integer(std::llround(figure.width * emuPerPoint)) + "\" cy=\"" +
            NumberText::integer(std::llround(figure.height * emuPerPoint)) + "\"/>";
        xml_ +=
            "<w:r><w:drawing><wp:inline xmlns:wp=\"http://schemas.openxmlformats.org/drawingml/"
            "2006/wordprocessingDrawing\" distT=\"0\" distB=\"0\" distL=\"0\" distR=\"0\">"
            "<wp:extent ";
        xml_ += extent;
        xml_ += "<wp:docPr ";
        xml_ += identity;
        xml_ +=
            "<a:graphic xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\">"
            "<a:graphicData uri=\"http://schemas.openxmlformats.org/drawingml/2006/picture\">"
            "<pic:pic xmlns:pic=\"http://schemas.openxmlformats.org/drawingml/2006/picture\">"
            "<pic:nvPicPr><pic:cNvPr ";
        xml_ += identity;
        xml_ +=
            "<pic:cNvPicPr/></pic:nvPicPr><pic:blipFill><a:blip xmlns:r=\"http://schemas."
            "openxmlformats.org/officeDocument/2006/relationships\" r:embed=\"rId";
        xml_ += number;
        xml_ +=
            "\"/><a:stretch><a:fillRect/></a:stretch></pic:blipFill><pic:spPr><a:xfrm>"
            "<a:off x=\"0\" y=\"0\"/><a:ext ";
        xml_ += extent;
        xml_ +=
            "</a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom></pic:spPr></pic:pic>"
            "</a:graphicData></a:graphic></wp:inline></w:drawing></w:r>";
    }

    std::string& xml_;
    std::vector<const InlineFigure*>& figures_;
};

}  // namespace

WordBody wordBody(std::span<const Paragraph> paragraphs) {
    WordBody body;
    body.xml.reserve(paragraphs.size() * 256);
    BodyWriter(body).append(paragraphs);
    return body;
}

}  // namespace sorvane
