#include "SorvaneCore/Dataset/ImportRows.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Report = ImportRowNormalizationReport;

/// Lines 2, 3, 4 and 7 of a file of three columns; the second has a cell too few, the last two too
/// many.
ImportRowReports fourRows() {
    ImportRowReports reports(3);
    reports.append(Report::of(2, 3, 3));
    reports.append(Report::of(3, 2, 3));
    reports.append(Report::of(4, 3, 3));
    reports.append(Report::of(7, 5, 3));
    return reports;
}

TEST(ImportRowReports, GiveBackWhatWasAppended) {
    const ImportRowReports reports = fourRows();
    ASSERT_EQ(reports.size(), 4U);
    EXPECT_EQ(reports[0],
              (Report{.sourceRowNumber = 2, .originalColumnCount = 3, .normalizedColumnCount = 3}));
    EXPECT_EQ(reports[1].paddedFieldCount, 1);
    EXPECT_EQ(reports[1].extraFieldCount, 0);
    EXPECT_EQ(reports[3].sourceRowNumber, 7);
    EXPECT_EQ(reports[3].extraFieldCount, 2);
    EXPECT_EQ(reports[3].paddedFieldCount, 0);
    EXPECT_EQ(reports.deviations().size(), 2U) << "an ordinary row costs nothing";
}

TEST(ImportRowReports, NumberTheRowsOfLaterPartsOn) {
    // The second part of a file was read from its own line 1 on, which is line 8 of the whole.
    ImportRowReports part(3);
    part.appendOrdinary(1, 2);
    part.append(Report::of(4, 1, 3));
    ImportRowReports whole = fourRows();
    whole.append(part, 7);
    ASSERT_EQ(whole.size(), 7U);
    EXPECT_EQ(whole[3].sourceRowNumber, 7);
    EXPECT_EQ(whole[4].sourceRowNumber, 8);
    EXPECT_EQ(whole[5].sourceRowNumber, 9);
    EXPECT_EQ(whole[6], Report::of(11, 1, 3));

    ImportRowReports atOnce = fourRows();
    for (const Report& report : {Report::of(8, 3, 3), Report::of(9, 3, 3), Report::of(11, 1, 3)}) {
        atOnce.append(report);
    }
    EXPECT_EQ(whole, atOnce);
}

TEST(ImportRowReports, AreCutAndContinuedWithTheTable) {
    const ImportRowReports cut = fourRows().resized(3, 3);
    ASSERT_EQ(cut.size(), 3U);
    EXPECT_EQ(cut.deviations().size(), 1U);
    const ImportRowReports again = cut.resized(5, 3);
    EXPECT_EQ(again[1], Report::of(3, 2, 3));
    EXPECT_EQ(again[3], Report::of(5, 3, 3)) << "a line after the header's";
    EXPECT_EQ(again[4].sourceRowNumber, 6);
    const ImportRowReports fresh = ImportRowReports().resized(2, 4);
    EXPECT_EQ(fresh[0], Report::of(2, 4, 4));
    EXPECT_EQ(fresh[1], Report::of(3, 4, 4));
}

TEST(ImportRowSummaries, CountTheCellsOfEachRow) {
    const ImportRowSummaries summaries(fourRows(), {0, 2, 3, 5}, 3);
    ASSERT_EQ(summaries.size(), 4U);
    const ImportRowSummary second = summaries[1];
    EXPECT_EQ(second.dataRowIndex, 2);
    EXPECT_EQ(second.sourceRowNumber, 3);
    EXPECT_EQ(second.missingCount, 2);
    EXPECT_EQ(second.nonMissingCount, 1);
    EXPECT_EQ(second.originalColumnCount, 2);
    EXPECT_EQ(second.normalizedColumnCount, 3);
    EXPECT_EQ(second.paddedFieldCount, 1);
    EXPECT_EQ(summaries[2].nonMissingCount, 0);
    EXPECT_EQ(summaries[3].nonMissingCount, 0) << "never fewer than none";
    EXPECT_EQ(summaries[3].extraFieldCount, 2);
}

}  // namespace
}  // namespace sorvane
