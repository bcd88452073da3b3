#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/DelimiterDetection.h"
#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/ScaleItemClassifier.h"
#include "SorvaneCore/Import/TextEncoding.h"

namespace {

using namespace sorvane;

void require(bool holds, const char* what) {
    if (!holds) {
        std::fputs(what, stderr);
        std::abort();
    }
}

std::optional<CSVParseResult> parsed(const CSVParser& parser, std::string_view text) {
    try {
        return parser.parse(text);
    } catch (const CSVParserError&) {
        return std::nullopt;
    }
}

/// The cells as text, each in quotes.
std::string printed(const CSVParseResult& result) {
    std::string text;
    const auto print = [&text](std::string_view cell, bool isLast) {
        text += '"';
        for (const char c : cell) {
            text += c == '"' ? "\"\"" : std::string(1, c);
        }
        text += isLast ? "\"\n" : "\",";
    };
    const std::size_t width = result.headers.size();
    for (std::size_t column = 0; column < width; ++column) {
        print(result.headers[column], column + 1 == width);
    }
    for (std::size_t row = 0; row < result.rows.rowCount(); ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            print(result.rows.cell(row, column), column + 1 == width);
        }
    }
    return text;
}

/// Whether a print can be read back: a mark at the edge of a cell would join its quote, a quoted
/// line break can mislead the detection of the delimiter, and one blank header or row that came
/// from a wider record would vanish.
bool canBeReadBack(const CSVParseResult& result, const std::string& print) {
    for (std::size_t position = 0; position < print.size(); ++position) {
        if (print[position] == '"' && !UnicodeText::standsAlone(print, position)) {
            return false;
        }
    }
    for (std::size_t row = 0; row < result.rows.rowCount(); ++row) {
        if (ImportReadinessBuilder::meaningfulValueCount(result.rows.row(row).texts()) == 0) {
            return false;
        }
    }
    const bool hasBlankHeader = result.headers.size() == 1 && result.headers.front().empty();
    return !hasBlankHeader && DelimiterDetection::delimiter(print) == ',';
}

void checkParse(std::string_view text) {
    const auto result = parsed({.threads = 1}, text);
    require(parsed({.threads = 3, .bytesPerThread = 16}, text) == result, "pieces differ");
    if (!result) {
        return;
    }
    require(result->rowReports.size() == result->rows.rowCount(), "a report per row");
    require(result->rows.columnCount() == result->headers.size(), "a column per header");
    const std::string print = printed(*result);
    if (canBeReadBack(*result, print)) {
        const auto again = parsed({.threads = 1}, print);
        require(again && again->headers == result->headers && again->rows == result->rows,
                "a print reads back");
    }
}

void checkImport(std::string_view text) {
    std::optional<ImportedDataset> dataset;
    try {
        dataset = CSVImporter{.parser = {.threads = 1}}.importCSV("fuzz", text);
    } catch (const ImportError& error) {
        require(*error.what() != '\0', "an error has a sentence");
        return;
    }
    const ImportReadinessMetadata& metadata = dataset->importMetadata;
    std::int64_t byColumn = 0;
    for (const ImportColumnSummary& column : metadata.columnSummaries) {
        byColumn += column.missingCount;
        require(column.missingCount + column.nonMissingCount == dataset->rowCount(),
                "cells add up");
        require(column.uniqueNonMissingCount <= column.nonMissingCount, "no more kinds than cells");
    }
    std::int64_t byRow = 0;
    for (std::size_t row = 0; row < metadata.rowSummaries.size(); ++row) {
        byRow += metadata.rowSummaries[row].missingCount;
    }
    require(byColumn == byRow && byRow == metadata.missingCellCount, "missing cells add up");
    const auto scales =
        ScaleItemClassifier::classify(dataset->headers, dataset->rows.columns(), {});
    require(scales.size() == dataset->headers.size(), "a classification per header");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto encoding = TextEncoding::recognized(bytes);
    if (!encoding) {
        return 0;
    }
    const std::string text = TextEncoding::toUtf8(bytes, *encoding);
    require(UnicodeText::isValidUtf8(text), "decoded text is UTF-8");
    checkParse(text);
    checkImport(text);
    return 0;
}
