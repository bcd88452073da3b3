#include "SorvaneMac/Report/DocxReportExporter.h"

#include <cstddef>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/WordprocessingML.h"
#include "SorvaneMac/Report/ZipWriter.h"

namespace sorvane::DocxReportExporter {
namespace {

constexpr std::string_view declaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

constexpr std::string_view documentOpening =
    "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">\n"
    "<w:body>\n";

constexpr std::string_view documentClosing =
    "\n<w:sectPr><w:pgSz w:w=\"12240\" w:h=\"15840\"/><w:pgMar w:top=\"1440\" w:right=\"1440\" "
    "w:bottom=\"1440\" w:left=\"1440\" w:header=\"720\" w:footer=\"720\" w:gutter=\"0\"/>"
    "</w:sectPr>\n</w:body>\n</w:document>";

std::string contentTypes(bool withFigures) {
    std::string xml(declaration);
    xml +=
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">\n"
        "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package."
        "relationships+xml\"/>\n"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>\n";
    xml += withFigures ? "<Default Extension=\"png\" ContentType=\"image/png\"/>\n" : "";
    xml +=
        "<Override PartName=\"/word/document.xml\" ContentType=\"application/vnd.openxmlformats-"
        "officedocument.wordprocessingml.document.main+xml\"/>\n"
        "</Types>";
    return xml;
}

std::string relationships(std::string_view inner) {
    std::string xml(declaration);
    xml +=
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">\n";
    xml += inner;
    xml += "</Relationships>";
    return xml;
}

std::string relationship(const std::string& number,
                         std::string_view type,
                         std::string_view target) {
    std::string xml =
        "<Relationship Id=\"rId" + number +
        "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    xml += type;
    xml += "\" Target=\"";
    xml += target;
    xml += "\"/>\n";
    return xml;
}

/// A text report stays at the three parts that Word needs. A picture can only be shown from a part
/// of its own, to which the document is related by a fourth part, so these follow when there are
/// any.
void addFigures(const std::vector<const InlineFigure*>& figures, ZipWriter& zip) {
    if (figures.empty()) {
        return;
    }
    std::string inner;
    for (std::size_t index = 1; index <= figures.size(); ++index) {
        const std::string number = NumberText::integer(static_cast<std::int64_t>(index));
        inner += relationship(number, "image", "media/figure" + number + ".png");
    }
    zip.addFile("word/_rels/document.xml.rels", relationships(inner));
    for (std::size_t index = 1; index <= figures.size(); ++index) {
        const std::string number = NumberText::integer(static_cast<std::int64_t>(index));
        const std::vector<std::uint8_t>& png = figures[index - 1]->png;
        zip.addFile("word/media/figure" + number + ".png", std::string(png.begin(), png.end()));
    }
}

std::string documentXML(const WordBody& body) {
    std::string xml;
    xml.reserve(body.xml.size() + 1024);
    xml += declaration;
    xml += documentOpening;
    xml += body.xml;
    xml += documentClosing;
    return xml;
}

}  // namespace

std::string buildDocumentXML(const RichDocument& document) {
    return documentXML(wordBody(document.paragraphs));
}

std::vector<std::uint8_t> package(const RichDocument& document) {
    const WordBody body = wordBody(document.paragraphs);
    ZipWriter zip;
    zip.addFile("[Content_Types].xml", contentTypes(!body.figures.empty()));
    zip.addFile("_rels/.rels",
                relationships(relationship("1", "officeDocument", "word/document.xml")));
    zip.addFile("word/document.xml", documentXML(body));
    addFigures(body.figures, zip);
    return zip.finish();
}

}  // namespace sorvane::DocxReportExporter
