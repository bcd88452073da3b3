#include "SorvaneCore/Import/SPSS/SPSSReader.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/SPSS/SPSSNumbers.h"
#include "Tests/Import/RowsOf.h"
#include "Tests/Import/SystemFileBuilder.h"

namespace sorvane {
namespace {

using test::Rows;
using test::rowsOf;
using Texts = std::vector<std::string>;

TabularImport readFile(const std::string& bytes) {
    std::optional<TabularImport> table = SPSSReader::read(bytes);
    EXPECT_TRUE(table);
    return table.value_or(TabularImport());
}

std::string doubles(const std::vector<double>& values) {
    std::string bytes;
    for (const double value : values) {
        bytes += bytesOf(value);
    }
    return bytes;
}

constexpr double missing = std::numeric_limits<double>::quiet_NaN();
const double lowest = std::numeric_limits<double>::lowest();

TEST(SPSSReader, BlanksUserMissingValuesAndTellsThem) {
    const std::string bytes =
        SystemFileBuilder()
            .variable({.name = "A", .missingCount = 2, .missing = {8, 9}})
            .variable({.name = "B", .missingCount = -2, .missing = {-1, lowest}})
            .variable({.name = "C", .missingCount = -3, .missing = {10, -lowest, 5.25}})
            .variable({.name = "D", .missingCount = 1, .missing = {missing}})
            .variable({.name = "E", .missingCount = -2, .missing = {missing, 5}})
            .with(doubles({8, -1, 10, 1, 5, 9, 0, 9, missing, 5, 7, -5, 5.25, 2, 5}));
    const TabularImport table = readFile(bytes);
    EXPECT_EQ(rowsOf(table.rows),
              (Rows{{"", "", "", "1", "5"}, {"", "0", "9", "", "5"}, {"7", "", "", "2", "5"}}));
    const std::map<std::string, std::string> specs = {
        {"A", "8, 9"}, {"B", "LOWEST through -1"}, {"C", "10 through HIGHEST, 5.25"}};
    EXPECT_EQ(table.userMissingSpecs, specs);
    EXPECT_EQ(table.notes,
              (Texts{"Ignored ranges of user-missing values that lack one of their ends.",
                     "No encoding record; defaulted to windows-1252.", "Decoded uncompressed data.",
                     "Applied user-defined missing values to 3 variables (6 cells "
                     "imported as missing).",
                     "Parsed 5 variables, 3 cases."}));
    EXPECT_TRUE(table.implausibleColumns.empty());
}

TEST(SPSSReader, JoinsTheSlotsOfAString) {
    const std::string bytes =
        SystemFileBuilder()
            .continuation()
            .variable({.name = "text",
                       .width = 20,
                       .label = "Stra\xDF"
                                "e"})
            .continuation()
            .continuation()
            .variable({.name = "s", .width = 3})
            .labels({{.raw = " ab", .text = "AB"}}, {2, 3, 5, 99, -1})
            .with("--------  leading" + std::string("\0 ", 2) + std::string(13, ' ') + " ab     ");
    const TabularImport table = readFile(bytes);
    EXPECT_EQ(rowsOf(table.rows), (Rows{{"  leading", " ab"}}));
    EXPECT_EQ(table.variableLabels.at("text"), "Straße");
    const ValueLabels labels = {{"ab", "AB"}};
    EXPECT_EQ(table.valueLabels.at("text"), labels);
    EXPECT_EQ(table.valueLabels.at("s"), labels);
}

TEST(SPSSReader, GivesNamesThatDifferInMoreThanLetterCase) {
    SystemFileBuilder builder;
    for (const std::string name : {"q1", "Q1", "", "q1", "Q1_2", "v6"}) {
        builder.variable({.name = name});
    }
    builder.extension(13, "V6=gr\xC3\xB6sse\tnothing\t=x\tq7=").extension(20, " UTF-8\n");
    const TabularImport table = readFile(builder.with(doubles({1, 2, 3, 4, 5, 6})));
    EXPECT_EQ(table.variableNames, (Texts{"q1", "Q1_2", "VAR3", "q1_3", "Q1_2_2", "grÃ¶sse"}));
    EXPECT_EQ(table.notes[0], "Applied long variable names (subtype 13).");
    EXPECT_EQ(table.notes[1], "Encoding: UTF-8.");
}

TEST(SPSSReader, KeepsLongNamesBesideOneThatCodePage1252DoesNotHave) {
    const std::string bytes = SystemFileBuilder()
                                  .variable({.name = "V1"})
                                  .variable({.name = "V2"})
                                  .extension(13, "V1=\xC3\x81rbol\tV2=plain_but_long_name")
                                  .extension(20, "UTF-8")
                                  .with(doubles({1, 2}));
    const TabularImport table = readFile(bytes);
    EXPECT_EQ(table.variableNames, (Texts{"Árbol", "plain_but_long_name"}));
    EXPECT_EQ(table.notes[0], "Applied long variable names (subtype 13).");
}

TEST(SPSSReader, ObeysCompressedCommands) {
    const SystemFileBuilder builder =
        SystemFileBuilder(true).variable({.name = "A"}).variable({.name = "S", .width = 8});
    const std::string commands = std::string("\x01\xFE\x00\xFD\xFD\xFF\x05\xFB", 8) + bytesOf(2.5) +
                                 "literal " + std::string("\xFE\xFC", 2) + std::string(6, '\1');
    const Rows rows = {{"-99", ""}, {"2.50", "literal"}, {"", ""}, {"151", ""}};
    EXPECT_EQ(rowsOf(readFile(builder.with(commands)).rows), rows);
    EXPECT_EQ(
        readFile(builder.with(std::string("\x01\xFC", 2) + std::string(6, '\1'))).rows.rowCount(),
        0U);
    EXPECT_FALSE(SPSSReader::read(builder.with(std::string("\x01\x01\xFD\0\0\0\0\0abc", 11))));
    EXPECT_EQ(readFile(builder.with("\x65\x01"
                                    "\x66\x01\x67\x01\x68"))
                  .rows.rowCount(),
              0U)
        << "a block of commands is read whole";
}

TEST(SPSSReader, WarnsOfNumbersThatNoDataHold) {
    const std::string bytes = SystemFileBuilder()
                                  .variable({.name = "A", .decimals = 0})
                                  .variable({.name = "B"})
                                  .with(doubles({lowest, 1, missing, 1e300}));
    const TabularImport table = readFile(bytes);
    EXPECT_EQ(rowsOf(table.rows)[0][0], "-1.7976931348623157e+308");
    EXPECT_EQ(table.implausibleColumns, std::vector<std::size_t>{0});
}

TEST(SPSSReader, ReadsBigEndianNumbersWhereTheFileSaysSo) {
    std::string machine(32, '\0');
    machine[24] = '\1';
    const std::string bytes = SystemFileBuilder()
                                  .variable({.name = "A"})
                                  .extension(3, machine)
                                  .labels({{.raw = bigEndianBytesOf(2.0), .text = "two"}}, {1})
                                  .with(bigEndianBytesOf(2.0) + bigEndianBytesOf(0.25));
    const TabularImport table = readFile(bytes);
    EXPECT_EQ(rowsOf(table.rows), (Rows{{"2"}, {"0.25"}}));
    EXPECT_EQ(table.valueLabels.at("A").at("2"), "two");
    EXPECT_EQ(table.notes.front(), "Big-endian system file detected.");
}

TEST(SPSSReader, UndoesATranscodingToUtf8) {
    std::string bytes = SystemFileBuilder()
                            .variable({.name = "A"})
                            .extension(20, "windows-1252")
                            .with(doubles({1.5, -2.25}));
    std::string transcoded;
    std::size_t restored = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            transcoded += c;
        } else {
            transcoded += static_cast<char>(0xC0 | byte >> 6);
            transcoded += static_cast<char>(0x80 | (byte & 0x3F));
            ++restored;
        }
    }
    const TabularImport table = readFile(transcoded);
    EXPECT_EQ(rowsOf(table.rows), (Rows{{"1.50"}, {"-2.25"}}));
    EXPECT_EQ(table.notes.back(), "Repaired a UTF-8 transcoding of the binary file (restored " +
                                      std::to_string(restored) + " damaged bytes).");
    EXPECT_FALSE(SPSSReader::readRaw(transcoded));
}

TEST(SPSSNumbers, PrintsNumbersAndDates) {
    struct Case {
        int line;
        double value;
        SPSSNumbers::Format format;
        std::string text;
    };
    const std::vector<Case> cases = {{__LINE__, 13e9, {20, 2}, "1994-09-26"},
                                     {__LINE__, 13e9, {21, 2}, "13000000000"},
                                     {__LINE__, 13e9 + 3199.5, {39, 0}, "1994-09-26"},
                                     {__LINE__, 0, {20, 2}, "0"},
                                     {__LINE__, -5, {20, 2}, "-5"},
                                     {__LINE__, 6564000, {20, 0}, "6564000"},
                                     {__LINE__, 6825600, {20, 0}, "1583-01-01"},
                                     {__LINE__, 265590057600, {20, 0}, "9998-12-31"},
                                     {__LINE__, 265590144000, {20, 0}, "265590144000"},
                                     {__LINE__, 2.005, {5, 2}, "2.00"},
                                     {__LINE__, 0.1, {5, 0}, "0.1"},
                                     {__LINE__, 0.1, {5, 11}, "0.1"},
                                     {__LINE__, -0.0, {5, 2}, "0"},
                                     {__LINE__, 1e15, {5, 1}, "1000000000000000.0"}};
    for (const Case& each : cases) {
        EXPECT_EQ(SPSSNumbers::cellText(each.value, each.format), each.text) << each.line;
    }
}

TEST(SPSSReader, BoundsWhatASmallFileCanFill) {
    SystemFileBuilder names;
    SystemFileBuilder labels;
    std::vector<std::int32_t> variables;
    for (std::int32_t i = 1; i <= 400; ++i) {
        names.variable({.name = "V"});
        labels.variable({.name = "V" + std::to_string(i)});
        variables.push_back(i);
    }
    names.extension(13, "V=" + std::string(1 << 16, 'n'));
    EXPECT_FALSE(SPSSReader::read(names.with("")));

    std::vector<SystemFileBuilder::Label> set;
    for (int i = 0; i < 1000; ++i) {
        set.push_back({.raw = bytesOf(static_cast<double>(i)), .text = std::string(255, 'l')});
    }
    const TabularImport table = readFile(labels.labels(set, variables).with(""));
    EXPECT_EQ(table.valueLabels.at("V1").size(), 1000U);
    EXPECT_EQ(table.valueLabels.at("V400").size(), 1000U);
    EXPECT_EQ(table.notes.back(), "Parsed 400 variables, 0 cases.");

    // One byte of data a cell, each of 300 digits.
    SystemFileBuilder digits(true, 1e300);
    for (int i = 0; i < 8; ++i) {
        digits.variable({.name = "V" + std::to_string(i)});
    }
    std::string commands;
    for (int block = 0; block < 16384; ++block) {
        commands += block % 2 == 0 ? std::string(8, '\1') : std::string(8, '\xFD');
        for (int i = 0; block % 2 == 1 && i < 8; ++i) {
            commands += bytesOf(1e300 * (1 + block / 16384.0));
        }
    }
    EXPECT_TRUE(SPSSReader::read(digits.with(commands)));
    for (int block = 0; block < 100'000; ++block) {
        commands += std::string(8, '\1');
    }
    EXPECT_TRUE(SPSSReader::read(digits.with(commands)))
        << "numbers of many digits that repeat are held once";

    SystemFileBuilder distinct;
    distinct.variable({.name = "A"});
    std::string cells;
    for (int row = 0; row < 300'000; ++row) {
        cells += bytesOf(1e300 * (1 + row / 1e6));
    }
    EXPECT_FALSE(SPSSReader::read(distinct.with(cells)));
}

TEST(SPSSReader, KeepsNumbersApartThatAreMadeToCollide) {
    // Undoes the multiplication by which numbers are spread over a table.
    constexpr std::uint64_t inverse = 0xF1DE83E19937733DU;
    SystemFileBuilder file;
    file.variable({.name = "A", .decimals = 0});
    std::string cells;
    for (int row = 0; row < 16'384; ++row) {
        cells += bytesOf(1.0);
    }
    for (std::uint64_t i = 1; i <= 60'000; ++i) {
        const std::uint64_t product = i * inverse;
        cells += bytesOf(product ^ product >> 32);
    }
    const TabularImport table = readFile(file.with(cells + cells.substr(16'384 * 8)));
    const TextColumn& column = table.rows.column(0);
    EXPECT_TRUE(column.hasCodes());
    for (std::size_t row = 16'384; row < 76'384; ++row) {
        ASSERT_EQ(column.code(row), column.code(row + 60'000)) << row;
    }
    EXPECT_GT(column.levelCount(), 59'000U);
}

TEST(SPSSReader, RefusesDamagedFilesQuickly) {
    const std::string bytes =
        SystemFileBuilder(true)
            .variable({.name = "A", .label = "label", .missingCount = -3, .missing = {1, 2, 9}})
            .variable({.name = "S", .width = 12})
            .continuation()
            .labels({{.raw = bytesOf(1.0), .text = "one"}}, {1})
            .add(SystemFileBuilder::int32(6) + SystemFileBuilder::int32(1) + std::string(80, ' '))
            .extension(14, std::string("S=00012\0\t", 9))
            .with("\x65\x66\xFD\xFE\x67\xFE\xFE\x64literal!");
    for (std::size_t size = 0; size < bytes.size() - 16; ++size) {
        EXPECT_FALSE(SPSSReader::read(bytes.substr(0, size))) << size;
    }
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        for (const char value : {'\0', '\1', '\x7F', '\x80', '\xFF'}) {
            std::string changed = bytes;
            changed[position] = value;
            SPSSReader::read(changed);
        }
    }
    const auto withRecord = [](const std::string& record) {
        return SPSSReader::read(SystemFileBuilder().variable({.name = "A"}).add(record).with(""));
    };
    const auto int32 = SystemFileBuilder::int32;
    EXPECT_FALSE(withRecord(int32(7) + int32(4) + int32(INT32_MAX) + int32(INT32_MAX)));
    EXPECT_FALSE(withRecord(int32(3) + int32(INT32_MAX) + std::string(64, ' ')));
    EXPECT_FALSE(withRecord(int32(6) + int32(-1)));
    EXPECT_FALSE(withRecord(int32(4) + int32(0)));
    EXPECT_FALSE(SPSSReader::read(
        SystemFileBuilder().variable({.name = "A", .missingCount = INT32_MIN}).with("")));
    EXPECT_FALSE(SPSSReader::read("$FL3" + bytes.substr(4)));
}

}  // namespace
}  // namespace sorvane
