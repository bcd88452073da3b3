#include "SorvaneMac/Report/PDFReportExporter.h"

#include <cstddef>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/ReportExporter.h"
#include "SorvaneMac/Report/ReportFiles.h"
#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

std::string pdfText(const RichDocument& document) {
    const std::vector<std::uint8_t> bytes = PDFReportExporter::pdf(document);
    return {bytes.begin(), bytes.end()};
}

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++found;
    }
    return found;
}

TEST(PDFReportExporter, WritesSelectableTextAndFiguresOnLetterPages) {
    const std::string pdf =
        pdfText(ReportExporter::attributed(test::sampleReport(), "my data", 300));
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_NE(pdf.find("/MediaBox [0 0 612"), std::string::npos);
    EXPECT_GE(count(pdf, "/ToUnicode"), 3U);
    EXPECT_GE(count(pdf, "/FontFile2"), 3U);
    EXPECT_GE(count(pdf, "/Subtype /Image"), 1U);
    EXPECT_EQ(count(pdf, "/Type /Page\n"), 1U);
}

TEST(PDFReportExporter, EndsThePageBeforeATableThatWouldBreak) {
    ReportTable table{.headers = {"Item", "M"}};
    table.rows.assign(18, {"a", "1.0"});
    const std::vector<ReportItem> items(3, ReportItem{.title = "T", .table = table});
    EXPECT_EQ(count(pdfText(ReportExporter::attributed(items, "d", 1)), "/Type /Page\n"), 3U);
    EXPECT_EQ(count(pdfText({}), "/Type /Page\n"), 1U);
}

TEST(ReportFiles, SaysWhyAFileCannotBeWritten) {
    EXPECT_EQ(suggestedFileName(ReportFormat::docx), "Sorvane-Report.docx");
    EXPECT_EQ(reportFormat("briselreport"), ReportFormat::draft);
    EXPECT_FALSE(reportFormat("doc"));
    const auto failure = writeReport({}, ReportFormat::md, "/no such folder/report.md");
    EXPECT_EQ(failure, "Save failed: No such file or directory.");

    const auto file = std::filesystem::temp_directory_path() / "sorvane-report-test.rtf";
    EXPECT_FALSE(writeReport({}, ReportFormat::rtf, file));
    EXPECT_EQ(std::filesystem::file_size(file), encode({}).size());
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace sorvane
