#include "SorvaneCore/Import/Stata/StataReader.h"

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/StatPackageImportError.h"
#include "SorvaneCore/Import/StatPackageImporter.h"
#include "SorvaneCore/Import/Stata/StataCells.h"
#include "Tests/Import/BytesOf.h"
#include "Tests/Import/RowsOf.h"

namespace sorvane {
namespace {

using test::Rows;
using test::rowsOf;

constexpr std::uint16_t byteCode = 65530;
constexpr std::uint16_t intCode = 65529;
constexpr std::uint16_t longCode = 65528;
constexpr std::uint16_t floatCode = 65527;
constexpr std::uint16_t doubleCode = 65526;
constexpr std::uint16_t strLCode = 32768;

/// A data file in the making.
struct DataFile {
    int release = 118;
    ByteOrder order = ByteOrder::little;
    struct Variable {
        std::string name;
        std::uint16_t type = byteCode;
        std::string label;
        std::string labelTable;
    };
    std::vector<Variable> variables;
    std::uint64_t observations = 0;
    /// The rows; numbers by `number`.
    std::string data;
    std::string strls;
    std::string valueLabels;

    template <typename Number>
    std::string number(Number value) const {
        return order == ByteOrder::big ? bigEndianBytesOf(value) : bytesOf(value);
    }

    static std::string field(std::string text, std::size_t size) {
        text.resize(size, '\0');
        return text;
    }

    /// A table of labels that lie one after the other.
    std::string labelTable(const std::string& name,
                           const std::vector<std::pair<std::int32_t, std::string>>& labels) const {
        std::string offsets;
        std::string values;
        std::string texts;
        for (const auto& [value, text] : labels) {
            offsets += number(static_cast<std::int32_t>(texts.size()));
            values += number(value);
            texts += text + '\0';
        }
        return "<lbl>" + number(std::int32_t{0}) + field(name, nameSize()) + std::string(3, '\0') +
               number(static_cast<std::int32_t>(labels.size())) +
               number(static_cast<std::int32_t>(texts.size())) + offsets + values + texts +
               "</lbl>";
    }

    std::size_t nameSize() const { return release == 117 ? 33 : 129; }

    std::string bytes() const {
        const auto count = static_cast<std::uint32_t>(variables.size());
        std::string file = "<stata_dta><header><release>" + std::to_string(release) +
                           "</release><byteorder>" + (order == ByteOrder::big ? "MSF" : "LSF") +
                           "</byteorder><K>";
        file += release == 119 ? number(count) : number(static_cast<std::uint16_t>(count));
        file += "</K><N>";
        file += release == 117 ? number(static_cast<std::uint32_t>(observations))
                               : number(observations);
        file += "</N><label>";
        file += release == 117 ? number(std::uint8_t{4}) : number(std::uint16_t{4});
        file += "demo</label><timestamp>" + std::string(1, '\0') + "</timestamp></header>";

        std::string types;
        std::string names;
        std::string tables;
        std::string labels;
        for (const Variable& variable : variables) {
            types += number(variable.type);
            names += field(variable.name, nameSize());
            tables += field(variable.labelTable, nameSize());
            labels += field(variable.label, release == 117 ? 81 : 321);
        }
        const std::array<std::pair<std::string, std::string>, 11> sections = {
            {{"variable_types", types},
             {"varnames", names},
             {"sortlist", ""},
             {"formats", ""},
             {"value_label_names", tables},
             {"variable_labels", labels},
             {"characteristics", ""},
             {"data", data},
             {"strls", strls},
             {"value_labels", valueLabels},
             {"", ""}}};
        const std::size_t mapAt = file.size();
        std::uint64_t at = mapAt + 5 + 14 * 8 + 6;
        std::string map = number(std::uint64_t{0}) + number(std::uint64_t{mapAt});
        std::string body;
        for (const auto& [name, content] : sections) {
            map += number(at + body.size());
            if (!name.empty()) {
                body += "<" + name + ">" + content + "</" + name + ">";
            }
        }
        body += "</stata_dta>";
        map += number(at + body.size());
        return file + "<map>" + map + "</map>" + body;
    }
};

TabularImport readFile(const DataFile& file,
                       StataStringReferences references = StataStringReferences::stated) {
    std::optional<TabularImport> table = StataReader::read(file.bytes(), references);
    EXPECT_TRUE(table);
    return table.value_or(TabularImport());
}

/// Two rows of every type: the greatest numbers, then the first missing values.
DataFile fileOfAllTypes(int release, ByteOrder order) {
    DataFile file{.release = release, .order = order, .observations = 3};
    file.variables = {{"b", byteCode, "Label", "tab"},
                      {"i", intCode, "", "none"},
                      {"l", longCode},
                      {"f", floatCode},
                      {"d", doubleCode},
                      {"s", 5},
                      {"long text", 12}};
    const auto row = [&file](std::int8_t b, std::int16_t i, std::int32_t l, float f, double d,
                             const std::string& s) {
        return file.number(b) + file.number(i) + file.number(l) + file.number(f) + file.number(d) +
               DataFile::field(s, 5) + DataFile::field(" " + s + "-" + s, 12);
    };
    file.data = row(100, 32740, 2147483620, 0x1p127F, 0x1p1023, " ab\t") +
                row(101, 32741, 2147483621, 0x1.001p127F, 0x1.001p1023, "x\xFFy") +
                row(-127, -1, -2, 0.1F, std::numeric_limits<double>::infinity(), "");
    file.valueLabels = file.labelTable("other", {}) +
                       file.labelTable("tab", {{-1, " minus "}, {100, "hundred"}, {100, "again"}});
    return file;
}

TEST(StataReader, ReadsEveryTypeInEveryRelease) {
    for (const int release : {117, 118, 119}) {
        for (const ByteOrder order : {ByteOrder::little, ByteOrder::big}) {
            SCOPED_TRACE(release);
            const TabularImport table = readFile(fileOfAllTypes(release, order));
            EXPECT_EQ(rowsOf(table.rows),
                      (Rows{{"100", "32740", "2147483620", "1.701411835e+38", "8.988465674e+307",
                             "ab", "ab\t- ab"},
                            {"", "", "", "", "", "x\xEF\xBF\xBDy", "x\xEF\xBF\xBDy-x\xEF\xBF\xBDy"},
                            {"-127", "-1", "-2", "0.1000000015", "", "", "-"}}));
            EXPECT_EQ(table.variableLabels, (std::map<std::string, std::string>{{"b", "Label"}}));
            EXPECT_EQ(table.valueLabels.size(), 1U);
            EXPECT_EQ(table.valueLabels.at("b"),
                      (ValueLabels{{"-1", " minus "}, {"100", "again"}}));
            EXPECT_EQ(table.implausibleColumns, (std::vector<std::size_t>{3, 4}));
            EXPECT_EQ(table.notes.front(), "Dataset label: demo");
            EXPECT_EQ(table.notes.back(), "Stata release " + std::to_string(release) + ", " +
                                              (order == ByteOrder::big ? "MSF" : "LSF") +
                                              " byte order, 7 variables, 3 observations.");
        }
    }
}

/// Two rows that refer to a text with references of 8 bytes, as programs write them.
DataFile fileWithLongTexts(int release) {
    DataFile file{.release = release, .observations = 2};
    file.variables = {{"id", byteCode}, {"text", strLCode}, {"after", intCode}};
    const std::string observation =
        release == 117 ? file.number(std::uint32_t{7}) : file.number(std::uint64_t{7});
    file.strls = "GSO" + file.number(std::uint32_t{2}) + observation + "\x82" +
                 file.number(std::uint32_t{6}) + "texts" + std::string(1, '\0');
    const std::string reference =
        release == 117
            ? file.number(std::uint32_t{2}) + file.number(std::uint32_t{7})
            : DataFile::field("\x02", release - 116) + DataFile::field("\x07", 124 - release);
    file.data = "\1" + reference + file.number(std::int16_t{10}) + "\2" + std::string(8, '\0') +
                file.number(std::int16_t{20});
    return file;
}

TEST(StataReader, TellsReferencesOfAnotherWidth) {
    const Rows right = {{"1", "texts", "10"}, {"2", "", "20"}};
    for (const int release : {117, 118, 119}) {
        SCOPED_TRACE(release);
        const DataFile file = fileWithLongTexts(release);
        const TabularImport stated = readFile(file);
        EXPECT_NE(rowsOf(stated.rows), right);
        EXPECT_EQ(stated.shiftedColumns, release == 117 ? std::vector<std::size_t>{1}
                                                        : (std::vector<std::size_t>{0, 1, 2}));
        const TabularImport other = readFile(file, StataStringReferences::eightBytes);
        EXPECT_EQ(rowsOf(other.rows), right);
        EXPECT_TRUE(other.shiftedColumns.empty());
    }
}

TEST(StataReader, ReadsWhatItCanOfAFileThatIsTooShortForTheStatedWidths) {
    DataFile file = fileWithLongTexts(118);
    const std::string row = file.data.substr(0, 11);
    file.data.clear();
    file.observations = 200;
    for (std::uint64_t i = 0; i < file.observations; ++i) {
        file.data += row;
    }
    const TabularImport stated = readFile(file);
    EXPECT_EQ(stated.shiftedColumns, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(stated.rows.rowCount(), 200U);
    EXPECT_EQ(stated.rows.cell(145, 0).empty(), false) << "the last of 15 bytes in the section";
    EXPECT_EQ(stated.rows.row(146).texts(), (std::vector<std::string>{"", "", ""}));
    const TabularImport other = readFile(file, StataStringReferences::eightBytes);
    EXPECT_EQ(other.rows.row(199).texts(), (std::vector<std::string>{"1", "texts", "10"}));
    EXPECT_TRUE(other.shiftedColumns.empty());
    file.data.pop_back();
    EXPECT_FALSE(StataReader::read(file.bytes())) << "no layout fits";
}

TEST(StataReader, BoundsWhatASmallFileCanFill) {
    DataFile labels{.observations = 1};
    DataFile texts{.release = 117, .observations = 1};
    texts.strls = "GSO" + texts.number(std::uint32_t{2}) + texts.number(std::uint32_t{7}) + "\x82" +
                  texts.number(std::uint32_t{1 << 20}) + std::string(1 << 20, 'x');
    for (int i = 0; i < 200; ++i) {
        labels.variables.push_back({"v" + std::to_string(i), byteCode, "", "tab"});
        texts.variables.push_back({"v" + std::to_string(i), strLCode});
        labels.data += '\1';
        texts.data += DataFile::field("\x02", 2) + DataFile::field("\x07", 6);
    }
    // Each label runs to the end of the texts.
    const std::vector<std::pair<std::int32_t, std::string>> entries(20'000, {1, "x"});
    std::string nested = labels.labelTable("nested", entries);
    std::fill_n(nested.end() - 6 - 40'000, 40'000, 'x');
    labels.valueLabels = labels.labelTable("tab", {{1, std::string(1 << 20, 'l')}}) + nested +
                         labels.labelTable("small", {{1, "one"}});
    labels.variables[100].labelTable = "nested";
    labels.variables[198].labelTable = "small";
    const ImportedDataset dataset = StatPackageImporter().importStata("x.dta", labels.bytes());
    EXPECT_EQ(dataset.variables[0].valueLabels->at("1").size(), 1U << 20);
    EXPECT_EQ(dataset.variables[199].valueLabels, dataset.variables[0].valueLabels);
    EXPECT_EQ(dataset.variables[198].valueLabels, ValueLabels({{"1", "one"}}));
    EXPECT_FALSE(dataset.variables[100].valueLabels);
    EXPECT_EQ(dataset.importMetadata.notes->back(),
              "Value labels of some variables were left out, as there are too many.");
    EXPECT_FALSE(StataReader::read(texts.bytes()));
}

TEST(StataReader, ReadsReferencesOfTheStatedWidth) {
    DataFile file = fileWithLongTexts(118);
    file.data = "\1" + file.number(std::uint32_t{2}) + file.number(std::uint64_t{7}) +
                file.number(std::int16_t{10}) + "\2" + file.number(std::uint32_t{2}) +
                file.number(std::uint64_t{8}) + file.number(std::int16_t{20});
    const TabularImport table = readFile(file);
    EXPECT_EQ(rowsOf(table.rows), (Rows{{"1", "texts", "10"}, {"2", "", "20"}}));
    EXPECT_TRUE(table.shiftedColumns.empty());
}

TEST(StataReader, RefusesDamagedFilesQuickly) {
    DataFile huge = fileWithLongTexts(119);
    huge.observations = std::uint64_t{1} << 61;
    EXPECT_FALSE(StataReader::read(huge.bytes()));
    DataFile empty{.observations = std::uint64_t{1} << 50};
    EXPECT_FALSE(StataReader::read(empty.bytes())) << "rows of no columns";

    const TabularImport old = *StataReader::read("<stata_dta><header><release>+120</release>");
    EXPECT_EQ(old.notes.front(),
              "Stata release 120 is not supported. Sorvane reads .dta versions 117 (Stata 13), 118 "
              "(Stata 14-15), and 119 (Stata 15-18).");
    EXPECT_EQ(old.variableNames.size(), 0U);

    const std::string bytes = fileOfAllTypes(117, ByteOrder::little).bytes();
    const std::size_t dataEnd = bytes.find("</data>");
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_EQ(StataReader::read(bytes.substr(0, size)).has_value(), size >= dataEnd) << size;
    }
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
            std::string changed = bytes;
            changed[position] = value;
            StataReader::read(changed);
        }
    }
}

TEST(StatPackageImporter, WarnsWhereNumbersCannotBeTrusted) {
    const ImportedDataset dataset =
        StatPackageImporter().importStata("x.dta", fileOfAllTypes(118, ByteOrder::little).bytes());
    const auto& cautions = dataset.importMetadata.cautions;
    ASSERT_TRUE(cautions);
    ASSERT_EQ(cautions->size(), 1U);
    EXPECT_EQ(cautions->front().message,
              "Numbers far too large to be data were read in f, d. They most likely mark missing "
              "values; set them to missing before any analysis.");
    EXPECT_TRUE(dataset.variables[3].warnings.back().starts_with("Some cells hold a number"));
    EXPECT_EQ(dataset.importMetadata.issues.size(), 0U);
    EXPECT_EQ(dataset.variables[0].label, "Label");
    try {
        StatPackageImporter().importStata("x.dta", DataFile().bytes());
        FAIL();
    } catch (const StatPackageImportError& error) {
        EXPECT_STREQ(error.what(), "The file has 0 variables but no data rows.");
    }
}

TEST(StataReader, PrintsTenSignificantDigits) {
    EXPECT_EQ(stataNumberText(1e14), "100000000000000");
    EXPECT_EQ(stataNumberText(1e15), "1e+15");
    EXPECT_EQ(stataNumberText(-0.0), "0");
    EXPECT_EQ(stataNumberText(1.0 / 3.0), "0.3333333333");
    EXPECT_EQ(stataNumberText(1e-5), "1e-05");
}

}  // namespace
}  // namespace sorvane
