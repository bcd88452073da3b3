#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/SpecialBytes.h"

namespace sorvane {

/// Takes delimited text apart, record by record.
///
/// Outside quotes a quote opens a quoted cell only where the cell is still empty, and is a plain
/// character elsewhere; text after a closing quote belongs to the same cell. A delimiter or quote
/// with a combining mark is an ordinary character. CR LF and CR end a line as LF does, and read as
/// LF inside quotes.
class RecordReader {
public:
    /// Reads from `begin`, which must be the start of a record.
    RecordReader(std::string_view text, char delimiter, std::size_t begin);

    /// The cells of the next record, and how many there are with those beyond `keptCells`.
    /// They stay valid until the next call.
    struct Record {
        std::vector<std::string_view> cells;
        std::size_t cellCount = 0;
        /// A cell beyond the kept ones holds a value.
        bool hasValueBeyond = false;
    };

    /// Reads one record, blank lines included; false at the end of the text.
    bool read(Record& record, std::size_t keptCells);

    /// Where the next record begins.
    std::size_t position() const { return position_; }
    /// Whether the text ended inside quotes.
    bool endedInQuotes() const { return endedInQuotes_; }

private:
    /// The cell at `position_` in which the first special byte, at `end`, does not end it; `end`
    /// becomes where it ends.
    std::string_view cellWithQuotes(std::size_t& end);
    std::string_view quotedCell(std::size_t& end);
    std::size_t closingQuote(std::size_t& unread);
    std::size_t nextEnd();
    bool endsCell(std::size_t position) const;
    bool isQuote(std::size_t position) const;
    /// The position after a line break, CR LF being one.
    std::size_t afterLineBreak(std::size_t position);
    std::string_view stored(std::string_view cell);

    std::string_view text_;
    char delimiter_;
    SpecialBytes special_;
    std::size_t position_;
    bool endedInQuotes_ = false;
    /// What has been read of a quoted cell that is not one stretch of the source.
    std::string rewritten_;
    std::array<std::byte, 4096> firstStorage_;
    std::pmr::monotonic_buffer_resource storage_{firstStorage_.data(), firstStorage_.size()};
};

}  // namespace sorvane
