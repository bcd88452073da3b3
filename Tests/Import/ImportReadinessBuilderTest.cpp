#include "SorvaneCore/Import/ImportReadinessBuilder.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;

struct HeaderCase {
    int line;
    Texts headers;
    Texts normalized;
    Texts messages;
};

TEST(ImportReadinessBuilder, NamesBlankAndRepeatedHeaders) {
    const std::vector<HeaderCase> cases = {
        {__LINE__,
         {"", "", "a"},
         {"Column 1", "Column 2", "a"},
         {"Column 1 had a blank header and was named Column 1.",
          "Column 2 had a blank header and was named Column 2."}},
        {__LINE__, {" a", "a "}, {"a", "a 2"}, {"Duplicate header a at column 2 was renamed a 2."}},
        {__LINE__,
         {"Age 2", "Age", "Age", "age"},
         {"Age 2", "Age", "Age 2", "age"},
         {"Duplicate header Age at column 3 was renamed Age 2."}},
        {__LINE__,
         {"Column 2", " "},
         {"Column 2", "Column 2 2"},
         {"Column 2 had a blank header and was named Column 2 2."}},
    };
    for (const HeaderCase& each : cases) {
        SCOPED_TRACE(each.line);
        const auto result = ImportReadinessBuilder::normalizedHeaders(each.headers);
        EXPECT_EQ(result.headers, each.normalized);
        Texts messages;
        for (const ImportReadinessIssue& issue : result.issues) {
            messages.push_back(issue.message);
            EXPECT_EQ(issue.header,
                      result.headers[static_cast<std::size_t>(*issue.columnIndex) - 1]);
        }
        EXPECT_EQ(messages, each.messages);
    }
    using enum ImportReadinessIssueKind;
    const auto issues = ImportReadinessBuilder::normalizedHeaders(Texts{"a", "a", ""}).issues;
    EXPECT_EQ(issues[0].kind, duplicateHeader);
    EXPECT_EQ(issues[1].kind, emptyHeader);
}

TEST(ImportReadinessBuilder, MakesRowsRectangularAndDropsMissingOnes) {
    const std::vector<ImportSourceRow> rows = {{2, {"", " ", ""}},
                                               {3, {"n/a", "-", "."}},
                                               {4, {"1", "2", "3", "4"}},
                                               {7, {"", "", "", "x"}},
                                               {9, {"1"}}};
    const auto result = ImportReadinessBuilder::normalizeRows(rows, 2);
    ASSERT_EQ(result.rows.rowCount(), 3U);
    EXPECT_EQ(result.rows.row(0).texts(), (Texts{"1", "2"}));
    // Its value lay beyond the width.
    EXPECT_EQ(result.rows.row(1).texts(), (Texts{"", ""}));
    EXPECT_EQ(result.rows.row(2).texts(), (Texts{"1", ""}));
    EXPECT_EQ(result.reports[0], (ImportRowNormalizationReport{4, 4, 2, 2, 0}));
    EXPECT_EQ(result.reports[1], (ImportRowNormalizationReport{7, 4, 2, 2, 0}));
    EXPECT_EQ(result.reports[2], (ImportRowNormalizationReport{9, 1, 2, 0, 1}));
}

TEST(ImportReadinessBuilder, RecordsWhatWasFound) {
    const Texts headers = {"a", "b"};
    const TextTable table =
        TextTable::fromRows({{"NA", "1"}, {" na", "x"}, {"", "2.5"}, {"7", "."}}, 2);
    ImportRowReports reports(2);
    reports.append(ImportRowNormalizationReport::of(2, 2, 2));
    reports.append(ImportRowNormalizationReport::of(5, 4, 2));
    reports.append(ImportRowNormalizationReport::of(6, 1, 2));
    const ImportReadinessMetadata metadata = ImportReadinessBuilder::metadata(
        {.sourceKind = ImportSourceKind::xlsx, .worksheetName = "Sheet"}, headers, table, reports,
        {{.message = "first"}});

    EXPECT_EQ(metadata.worksheetName, "Sheet");
    EXPECT_EQ(metadata.expectedColumnCount, 2);
    EXPECT_EQ(metadata.totalCellCount, 8);
    EXPECT_EQ(metadata.missingCellCount, 4);
    EXPECT_EQ(metadata.nonMissingCellCount, 4);
    EXPECT_EQ(metadata.missingValueMarkers.size(), 17U);
    EXPECT_EQ(metadata.observedMissingMarkers,
              (std::map<std::string, std::int64_t>{{"(blank)", 1}, {".", 1}, {"na", 2}}));
    const ImportColumnSummary& second = metadata.columnSummaries[1];
    EXPECT_EQ(second.columnIndex, 2);
    EXPECT_EQ(second.numericCount, 2);
    EXPECT_EQ(second.textCount, 1);
    EXPECT_EQ(second.uniqueNonMissingCount, 3);
    EXPECT_EQ(second.sampleValues, (Texts{"1", "x", "2.5"}));
    EXPECT_EQ(second.numericSummary, (NumericSummary{1.0, 2.5, 1.75}));

    ASSERT_EQ(metadata.rowSummaries.size(), 4U);
    EXPECT_EQ(metadata.rowSummaries[1], (ImportRowSummary{2, 5, 1, 1, 4, 2, 2, 0}));
    // No report was handed over for the last row: a line after a header line.
    EXPECT_EQ(metadata.rowSummaries[3], (ImportRowSummary{4, 5, 1, 1, 2, 2, 0, 0}));

    ASSERT_EQ(metadata.issues.size(), 3U);
    EXPECT_EQ(metadata.issues[0].message, "first");
    EXPECT_EQ(metadata.issues[1].message,
              "Row 5 has 2 more field(s) than the header; extra values were not imported.");
    EXPECT_EQ(metadata.issues[2].message,
              "Row 6 has 1 fewer field(s) than the header; missing cells were padded as blank.");
    EXPECT_EQ(metadata.issues[2].expectedColumnCount, 2);
    EXPECT_EQ(metadata.issues[2].actualColumnCount, 1);
}

TEST(ImportReadinessBuilder, CountsMissingCellsOfLongColumnsInAnyForm) {
    constexpr std::size_t rowCount = 40'000;
    std::vector<std::string> distinct(rowCount);
    std::vector<std::string> codes(rowCount);
    for (std::size_t row = 0; row < rowCount; ++row) {
        distinct[row] = row % 5 == 0 ? "NA" : std::to_string(row);
        codes[row] = row % 3 == 0 ? "" : row % 3 == 1 ? "-" : "x";
    }
    const TextTable table({TextColumn::of(distinct), TextColumn::of(codes)}, rowCount);
    ASSERT_FALSE(table.column(0).hasCodes());
    const auto metadata = ImportReadinessBuilder::metadata({}, Texts{"a", "b"}, table, {}, {});
    std::int64_t total = 0;
    for (std::size_t row = 0; row < rowCount; ++row) {
        const std::int64_t expected = (row % 5 == 0 ? 1 : 0) + (row % 3 != 2 ? 1 : 0);
        ASSERT_EQ(metadata.rowSummaries[row].missingCount, expected) << row;
        total += expected;
    }
    EXPECT_EQ(metadata.missingCellCount, total);
    EXPECT_EQ(metadata.columnSummaries[0].uniqueNonMissingCount, 32'000);
}

TEST(ImportReadinessBuilder, DescribesATableWithoutRows) {
    const auto metadata =
        ImportReadinessBuilder::metadata({}, Texts{"a"}, TextTable::fromRows({}, 1), {}, {});
    EXPECT_EQ(metadata.totalCellCount, 0);
    EXPECT_TRUE(metadata.rowSummaries.empty());
    EXPECT_EQ(metadata.columnSummaries.front().nonMissingCount, 0);
}

}  // namespace
}  // namespace sorvane
