#include "SorvaneCore/Import/Excel/XLSXImporter.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Import/Excel/WorkbookParts.h"
#include "SorvaneCore/Import/Excel/WorksheetParser.h"
#include "SorvaneCore/Import/Excel/XLSXImportError.h"
#include "Tests/Import/RowsOf.h"
#include "Tests/Import/ZipBuilder.h"

namespace sorvane {
namespace {

using test::Rows;
using test::rowsOf;

struct SheetSource {
    std::string name;
    std::string rows;
};

/// A workbook of these sheets, r1, r2 and so on their relationships.
std::string workbook(const std::vector<SheetSource>& sheets, const std::string& strings = {}) {
    std::string list;
    std::string relationships;
    std::vector<ZipEntry> entries;
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        list += "<sheet name=\"" + sheets[i].name + "\" r:id=\"r" + number + "\"/>";
        relationships += "<Relationship Id=\"r" + number + "\" Target=\"s" + number + ".xml\"/>";
        entries.push_back(
            {.name = "xl/s" + number + ".xml",
             .bytes = "<worksheet><sheetData>" + sheets[i].rows + "</sheetData></worksheet>"});
    }
    entries.push_back({.name = "xl/workbook.xml", .bytes = "<workbook>" + list + "</workbook>"});
    entries.push_back({.name = "xl/_rels/workbook.xml.rels",
                       .bytes = "<Relationships>" + relationships + "</Relationships>"});
    if (!strings.empty()) {
        entries.push_back({.name = "xl/sharedStrings.xml", .bytes = "<sst>" + strings + "</sst>"});
    }
    return zipArchive(entries);
}

ImportedDataset imported(const std::string& bytes) {
    return XLSXImporter().importXLSX("book.xlsx", bytes);
}

std::string workbookSentence(const std::string& bytes) {
    try {
        imported(bytes);
    } catch (const XLSXImportError& error) {
        return error.what();
    }
    return "imported";
}

const std::string header = "<row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"B1\"><v>2</v></c></row>";
const std::string data = "<row r=\"2\"><c r=\"A2\"><v>3</v></c></row>";

/// A row of cells with the first shared string.
std::string sharedRow(int cells) {
    std::string row;
    for (int i = 0; i < cells; ++i) {
        row += "<c r=\"" + std::string(1, static_cast<char>('A' + i / 26)) +
               static_cast<char>('A' + i % 26) + "1\" t=\"s\"><v>0</v></c>";
    }
    return "<row>" + (cells == 1 ? "<c r=\"A1\" t=\"s\"><v>0</v></c>" : row) + "</row>";
}

std::string numberedRow(int cells) {
    std::string row = sharedRow(cells);
    for (std::size_t at = row.find(" t=\"s\""); at != row.npos; at = row.find(" t=\"s\"")) {
        row.erase(at, 6);
    }
    return row;
}

const std::string noTable =
    "The Excel workbook does not contain a worksheet with a header row and data rows.";
const std::string notParsed = "The Excel workbook could not be parsed. ";

TEST(XLSXImporter, PrefersDataToACodebook) {
    const ImportedDataset dataset = imported(
        workbook({{"My CodeBook", header + data}, {"Empty", header}, {"Data", header + data}}));
    EXPECT_EQ(dataset.name, "book.xlsx — Data");
    EXPECT_EQ(dataset.importMetadata.worksheetName, "Data");
    EXPECT_EQ(dataset.importMetadata.sourceKind, ImportSourceKind::xlsx);
    EXPECT_EQ(imported(workbook({{"codebook", header + data}})).name, "book.xlsx — codebook");
}

TEST(XLSXImporter, ReadsEveryTypeOfCell) {
    const std::string rows =
        "<row r=\"1\"><c r=\"A1\" t=\"inlineStr\"><is><t>A title</t></is></c></row>"
        "<row r=\"3\"><c r=\"A3\" t=\"s\"><v>0</v></c><c r=\"C3\" t=\"str\"><f>x</f><v> c </v></c>"
        "<c><v>lost</v></c><c r=\"B3\"><v>b</v></c></row>"
        "<row r=\"4\"><c r=\"A4\" t=\"b\"><v>1</v></c><c r=\"B4\" t=\"b\"><v>0</v></c>"
        "<c r=\"C4\" s=\"7\"><v>45000</v></c></row>"
        "<row><c r=\"c\" t=\"s\"><v>9</v></c><c r=\"B\" t=\"s\"><v>1</v></c></row>"
        "<row r=\"x\"><c r=\"A1\"><v>NA</v></c></row>"
        "<row r=\"9\"><c r=\"AAA9\"><v><![CDATA[ & ]]></v></c><c r=\"B9\" "
        "t=\"inlineStr\"><is><r><t>x"
        "</t></r><r><t> y</t></r></is></c><c r=\"A9\"><v>1</v></c><c r=\"A9\"><v>2</v></c></row>";
    const ImportedDataset dataset = imported(workbook(
        {{"S", rows}}, "<si><r><t>one </t></r><r><t>text</t></r></si><si><t> as is </t></si>"));
    EXPECT_EQ(dataset.headers, (std::vector<std::string>{"one text", "b", "c"}));
    EXPECT_EQ(rowsOf(dataset.rows),
              (Rows{{"TRUE", "FALSE", "45000"}, {"", " as is ", ""}, {"2", "x y", ""}}));
    const ImportReadinessMetadata& metadata = dataset.importMetadata;
    EXPECT_EQ(metadata.rowSummaries[0].sourceRowNumber, 4);
    EXPECT_EQ(metadata.rowSummaries[1].sourceRowNumber, 4) << "the fourth row that is stored";
    EXPECT_EQ(metadata.rowSummaries[2].originalColumnCount, 703);
    EXPECT_EQ(metadata.issues.size(), 1U);
}

TEST(WorksheetParser, TakesColumnReferencesApart) {
    using Index = std::optional<std::size_t>;
    const std::vector<std::pair<std::string, Index>> cases = {{"A1", 0},    {"z", 25},
                                                              {"AB12", 27}, {"$C$4", 2},
                                                              {"1B2C3", 1}, {"XFD1048576", 16383},
                                                              {"XFE1", {}}, {"ZZZZZZZ1", {}},
                                                              {"12", {}},   {"", {}}};
    for (const auto& [reference, expected] : cases) {
        EXPECT_EQ(WorksheetParser::columnIndex(reference), expected) << reference;
    }
}

TEST(XLSXImporter, TellsWhatIsMissing) {
    EXPECT_EQ(workbookSentence("no archive"),
              "The Excel workbook could not be opened as an .xlsx file. The file is not a ZIP "
              "archive.");
    EXPECT_EQ(workbookSentence(zipArchive({{.name = "xl/x.xml"}})),
              "The Excel workbook is missing its workbook definition.");
    EXPECT_EQ(workbookSentence(workbook({})), noTable);
    EXPECT_EQ(workbookSentence(workbook({{"S", header}})), noTable);
    EXPECT_EQ(
        workbookSentence(workbook({{"S", "<row r=\"1\"><c r=\"A1\"><v>1</v></c></row>" + data}})),
        noTable);
    EXPECT_EQ(workbookSentence(workbook({{"Bad", "<row>"}, {"Good", header + data}})),
              notParsed + "A part of it is not well-formed: mismatched tag in line 1.");
}

TEST(XLSXImporter, TakesPartsOfCodePages) {
    const std::string declaration = "<?xml version=\"1.0\" encoding=\"windows-1252\"?>";
    const std::string strings = declaration + "<sst><si><t>\x80 \xE9</t></si></sst>";
    const std::string sheet = header + sharedRow(1);
    std::string bytes = workbook({{"S", sheet}}, std::string(strings.size() - 11, ' '));
    bytes.replace(bytes.find("<sst>"), strings.size(), strings);
    EXPECT_EQ(rowsOf(imported(bytes).rows)[0][0], "€ é");
    bytes.replace(bytes.find("windows-1252"), 15, "shift_jis\"   ?>");
    EXPECT_TRUE(workbookSentence(bytes).starts_with(notParsed));
}

TEST(SharedStringsParser, EndsALineOfEmptyStrings) {
    SharedStringsParser parser;
    const char* none = nullptr;
    std::size_t read = 0;
    for (; read < (std::size_t{1} << 25) && parser.refusal().empty(); ++read) {
        parser.startElement(XmlName("si"), XmlAttributes(&none));
        parser.endElement(XmlName("si"));
    }
    EXPECT_EQ(parser.refusal(), "It has far more shared strings than worksheets can show.");
    EXPECT_GT(read, std::size_t{1} << 20) << "as many as there are rows must pass";
}

TEST(XLSXImporter, StaysQuickOnHostileWorkbooks) {
    const std::string bomb =
        "<!DOCTYPE w [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]><w>&b;</w>";
    EXPECT_EQ(
        workbookSentence(zipArchive({{.name = "xl/workbook.xml", .bytes = bomb}})),
        notParsed + "A part of it has a document type declaration, which workbooks do not have.");

    std::string deep;
    for (int level = 0; level < 10'000; ++level) {
        deep += "<a>";
    }
    EXPECT_EQ(workbookSentence(workbook({{"S", deep}})),
              notParsed + "A part of it has elements nested far too deeply.");

    std::string crowded;
    for (int cell = 0; cell < 40'000; ++cell) {
        crowded += "<c r=\"A1\"/>";
    }
    EXPECT_EQ(workbookSentence(workbook({{"S", header + "<row>" + crowded + "</row>"}})),
              notParsed + "A row of a worksheet has far more cells than there are columns.");

    // Few cells, spread over a whole worksheet.
    std::string sparse = "<row r=\"1\"><c r=\"A1\"><v>a</v></c><c r=\"XFD1\"><v>b</v></c></row>";
    for (int row = 2; row < 30'000; ++row) {
        sparse += "<row><c r=\"XFD1\"><v>1</v></c></row>";
    }
    EXPECT_EQ(workbookSentence(workbook({{"S", sparse}})),
              notParsed + "A worksheet spreads what it holds over far too many cells.");

    const std::string tooLarge =
        notParsed + "A worksheet spreads what it holds over far too many cells.";
    const std::string long16K = "<si><t>" + std::string(1 << 14, 'x') + "</t></si>";
    const std::string long1M = "<si><t>" + std::string(1 << 20, 'x') + "</t></si>";
    EXPECT_EQ(workbookSentence(workbook({{"S", sharedRow(20) + data}}, long1M)), tooLarge)
        << "a long header many times over";
    EXPECT_EQ(workbookSentence(workbook({{"S", header + sharedRow(1)}}, long1M)), "imported");
    EXPECT_EQ(workbookSentence(workbook({{"S", numberedRow(80) + sharedRow(80)}}, long1M)),
              tooLarge)
        << "a long text in many columns";
    std::string mixed = header;
    for (int row = 0; row < 17'000; ++row) {
        mixed += row % 2 == 0 ? sharedRow(1)
                              : "<row><c r=\"A1\"><v>" + std::to_string(row) + "</v></c></row>";
    }
    EXPECT_EQ(workbookSentence(workbook({{"S", mixed}}, long16K)), "imported")
        << "a long text among numbers that mostly differ";

    const std::string whole = workbook({{"S", header + data}}, "<si><t>x</t></si>");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_NE(workbookSentence(whole.substr(0, size)), "imported");
    }
    for (std::size_t position = 0; position < whole.size(); ++position) {
        std::string changed = whole;
        changed[position] ^= '\x15';
        workbookSentence(changed);
    }
}

}  // namespace
}  // namespace sorvane
