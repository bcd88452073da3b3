#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/CSVWriter.h"
#include "SorvaneCore/Import/CSVImporter.h"

namespace sorvane {
namespace {

using Rows = std::vector<std::vector<std::string>>;

/// What was exported comes back cell by cell, whatever stands in it.
TEST(CSVWriter, WritesWhatTheImportReads) {
    const struct {
        int line;
        std::vector<std::string> headers;
        Rows rows;
    } cases[] = {
        {__LINE__, {"a", "b"}, {{"1", "2"}, {"3", "4"}}},
        {__LINE__, {"a, b", "say \"c\""}, {{"x,y", "\"quoted\""}, {"\"", ","}}},
        {__LINE__, {"a", "b"}, {{"two\nlines", "one"}, {"\n", "\nends\n\n"}}},
        {__LINE__, {"a", "b", "c"}, {{"", "1", ""}, {"2", "", ""}, {"", "", "3"}}},
        {__LINE__, {"größe", "имя"}, {{"1;2", "a\tb"}, {"😀", "é"}}},
        {__LINE__, {"a", "b"}, {{"NA", "1"}, {"2", "n/a"}, {"-", "x"}, {"3", "-99"}}},
        {__LINE__, {"a", "b"}, {{"007", "1e5"}, {"1.50", "+3"}}},
    };
    for (const auto& each : cases) {
        ImportedDataset table;
        table.headers = each.headers;
        table.rows = TextTable::fromRows(each.rows, each.headers.size());
        const ImportedDataset read = CSVImporter().importCSV("table", CSVWriter::text(table));
        EXPECT_EQ(read.headers, each.headers) << each.line;
        ASSERT_EQ(read.rows.rowCount(), each.rows.size()) << each.line;
        for (std::size_t row = 0; row < each.rows.size(); ++row) {
            EXPECT_EQ(read.rows.row(row).texts(), each.rows[row]) << each.line;
        }
    }
}

}  // namespace
}  // namespace sorvane
