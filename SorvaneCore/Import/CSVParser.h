#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportRows.h"
#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// A parsed text: the header's cells, not yet made unique, and rows of that width.
struct CSVParseResult {
    std::vector<std::string> headers;
    TextTable rows;
    /// One per kept row, in order.
    ImportRowReports rowReports;

    bool operator==(const CSVParseResult&) const = default;
};

/// Delimited text to rows.
struct CSVParser {
    /// How many threads read at once; 0 takes what the machine has. The result does not depend on
    /// it.
    unsigned threads = 0;
    /// The least text worth a thread of its own, in bytes.
    std::size_t bytesPerThread = std::size_t{1} << 20;

    /// A header wider than this is refused.
    static constexpr std::size_t mostColumns = 1'000'000;

    /// The table that a text spells.
    ///
    /// Method     the delimiter is detected; the first record that is not blank is the header; rows
    ///            of missing cells alone are dropped; the rest are cut or padded to the header's
    ///            width. Records are numbered as they are kept, the header being 1
    /// Failure    no record, a quote left open, a header too wide -> CSVParserError
    /// Cost       O(bytes)
    CSVParseResult parse(std::string_view text) const;
};

}  // namespace sorvane
