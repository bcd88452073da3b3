#include "SorvaneMac/Report/DocxReportExporter.h"

#include <cstddef>
#include <expat.h>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/CRC32.h"
#include "SorvaneMac/Report/ReportExporter.h"
#include "SorvaneMac/Report/ZipWriter.h"
#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

std::string body(const RichDocument& document) {
    const std::string xml = DocxReportExporter::buildDocumentXML(document);
    const std::size_t start = xml.find("<w:body>\n") + 9;
    return xml.substr(start, xml.find("\n<w:sectPr>") - start);
}

testing::AssertionResult isWellFormed(const std::string& xml) {
    XML_Parser parser = XML_ParserCreateNS("UTF-8", '|');
    const bool ok =
        XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE) == XML_STATUS_OK;
    const XML_Error error = XML_GetErrorCode(parser);
    XML_ParserFree(parser);
    return ok ? testing::AssertionSuccess() : testing::AssertionFailure() << XML_ErrorString(error);
}

/// Names and contents, found as any ZIP reader does: end record, directory, local headers.
std::vector<std::pair<std::string, std::string>> unzip(const std::vector<std::uint8_t>& zip) {
    const auto number = [&zip](std::size_t at, std::size_t bytes) {
        std::size_t value = 0;
        for (std::size_t index = bytes; index-- > 0;) {
            value = value * 256 + zip.at(at + index);
        }
        return value;
    };
    const auto text = [&zip](std::size_t at, std::size_t length) {
        return std::string(zip.begin() + static_cast<std::ptrdiff_t>(at),
                           zip.begin() + static_cast<std::ptrdiff_t>(at + length));
    };
    const std::size_t end = zip.size() - 22;
    EXPECT_EQ(number(end, 4), 0x06054B50U);
    std::vector<std::pair<std::string, std::string>> entries;
    std::size_t at = number(end + 16, 4);
    EXPECT_EQ(at + number(end + 12, 4), end);
    for (std::size_t count = number(end + 10, 2); count > 0; --count) {
        EXPECT_EQ(number(at, 4), 0x02014B50U);
        const std::size_t nameLength = number(at + 28, 2);
        const std::size_t local = number(at + 42, 4);
        EXPECT_EQ(number(local, 4), 0x04034B50U);
        EXPECT_EQ(text(local + 30, nameLength), text(at + 46, nameLength));
        EXPECT_EQ(text(local + 4, 22), text(at + 6, 22));
        const std::string data = text(local + 30 + nameLength, number(at + 24, 4));
        EXPECT_EQ(CRC32::checksum(data), number(at + 16, 4));
        entries.emplace_back(text(at + 46, nameLength), data);
        at += 46 + nameLength;
    }
    return entries;
}

TEST(CRC32, AgreesWithTheCheckValueAtEveryAlignment) {
    EXPECT_EQ(CRC32::checksum(""), 0U);
    EXPECT_EQ(CRC32::checksum("123456789"), 0xCBF43926U);
    EXPECT_EQ(CRC32::checksum("The quick brown fox jumps over the lazy dog"), 0x414FA339U);
}

TEST(ZipWriter, WritesTheFieldsOfTheFormat) {
    ZipWriter zip;
    zip.addFile("a", "xyz");
    const std::vector<std::uint8_t> bytes = zip.finish();
    EXPECT_EQ(bytes.size(), 30U + 1 + 3 + 46 + 1 + 22);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 14),
              std::string("PK\3\4\x14\0\0\0\0\0\0\0\x21\0", 14));
    EXPECT_EQ(unzip(bytes).at(0).second, "xyz");
}

TEST(DocxReportExporter, WritesRunsWithSizeAndStyle) {
    const RichDocument document{
        {{.runs = {{"a\r", {.points = 12}},
                   {"", {.points = 12}},
                   {"<b> & \"c'\x01\t\n", {.bold = true, .italic = true, .underline = true}}}},
         {}}};
    EXPECT_EQ(body(document),
              "<w:p><w:r><w:rPr><w:sz w:val=\"24\"/><w:szCs w:val=\"24\"/></w:rPr>"
              "<w:t xml:space=\"preserve\">a</w:t></w:r>"
              "<w:r><w:rPr><w:sz w:val=\"26\"/><w:szCs w:val=\"26\"/><w:b/><w:i/>"
              "<w:u w:val=\"single\"/></w:rPr><w:t xml:space=\"preserve\">"
              "&lt;b&gt; &amp; &quot;c&apos;\t\n</w:t></w:r></w:p><w:p/>");
}

TEST(DocxReportExporter, GathersCellsIntoTables) {
    const auto cell = [](int table, int row, int column, int span) {
        return Paragraph{
            .block = TextTableBlock{
                .table = table, .startingRow = row, .startingColumn = column, .columnSpan = span}};
    };
    RichDocument document{{cell(1, 1, 1, 1),
                           cell(1, 0, 0, 2),
                           cell(1, 1, 0, 1),
                           {},
                           cell(2, 0, 0, 1),
                           cell(3, 0, 0, 1)}};
    document.paragraphs[1].block->topBorder = 0.5;
    document.paragraphs[1].block->bottomBorder = 0.1;
    document.paragraphs[2].alignment = TextAlignment::center;
    const std::string open =
        "<w:tbl><w:tblPr><w:tblW w:w=\"5000\" w:type=\"pct\"/></w:tblPr><w:tblGrid><w:gridCol/>";
    const std::string width = "<w:tc><w:tcPr><w:tcW w:w=\"0\" w:type=\"auto\"/>";
    const std::string empty = "<w:r><w:t xml:space=\"preserve\"></w:t></w:r></w:p></w:tc>";
    const std::string single =
        open + "</w:tblGrid><w:tr>" + width + "</w:tcPr><w:p>" + empty + "</w:tr></w:tbl>";
    EXPECT_EQ(body(document),
              open + "<w:gridCol/></w:tblGrid><w:tr>" + width +
                  "<w:gridSpan w:val=\"2\"/><w:tcBorders><w:top w:val=\"single\" w:sz=\"4\" "
                  "w:space=\"0\" w:color=\"000000\"/><w:bottom w:val=\"single\" w:sz=\"2\" "
                  "w:space=\"0\" w:color=\"000000\"/></w:tcBorders></w:tcPr><w:p>" +
                  empty + "</w:tr><w:tr>" + width +
                  "</w:tcPr><w:p><w:pPr><w:jc w:val=\"center\"/></w:pPr>" + empty + width +
                  "</w:tcPr><w:p>" + empty + "</w:tr></w:tbl><w:p/>" + single + single);
}

TEST(DocxReportExporter, StaysWellFormedWhateverTheTextHolds) {
    std::string hostile = "]]>&<\xEF\xBF\xBE\xEF\xBF\xBF\xC3(\xED\xA0\x80\xF5\x80\xFF ok é";
    for (char c = 0; c < 32; ++c) {
        hostile += c;
    }
    const std::string xml = DocxReportExporter::buildDocumentXML(
        {{{.runs = {{hostile, {}}}}, {.runs = {{hostile, {}}}, .block = TextTableBlock{}}}});
    EXPECT_TRUE(isWellFormed(xml));
    EXPECT_NE(xml.find(" ok é\t\n</w:t>"), std::string::npos);
}

TEST(DocxReportExporter, PackagesThreePartsAndMoreOnlyForFigures) {
    std::vector<ReportItem> items = test::sampleReport();
    const auto names = [&items] {
        std::string text;
        for (const auto& [name, data] :
             unzip(DocxReportExporter::package(ReportExporter::attributed(items, "d", 3)))) {
            text += name + '\n';
            EXPECT_TRUE(name.ends_with(".png") || isWellFormed(data)) << name;
        }
        return text;
    };
    const std::string three = "[Content_Types].xml\n_rels/.rels\nword/document.xml\n";
    EXPECT_EQ(names(), three + "word/_rels/document.xml.rels\nword/media/figure1.png\n");
    items.front().figure.reset();
    EXPECT_EQ(names(), three);
}

}  // namespace
}  // namespace sorvane
