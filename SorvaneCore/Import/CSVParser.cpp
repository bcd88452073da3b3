#include "SorvaneCore/Import/CSVParser.h"

#include <algorithm>
#include <memory>

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/DelimiterDetection.h"
#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Import/NormalizedRows.h"
#include "SorvaneCore/Import/RecordReader.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isBlank(const RecordReader::Record& record) {
    return record.cellCount == 1 && UnicodeText::trimmed(record.cells.front()).empty();
}

bool hasValue(const RecordReader::Record& record) {
    return record.hasValueBeyond ||
           std::any_of(record.cells.begin(), record.cells.end(),
                       [](std::string_view cell) { return !MissingValue::isMissing(cell); });
}

[[noreturn]] void fail(CSVParserError::Kind kind) {
    throw CSVParserError(kind);
}

/// Removes every byte-order mark, then white space at both ends.
std::string cleanedHeader(std::string_view cell) {
    std::string header(cell);
    for (std::size_t at = header.find(byteOrderMark); at != header.npos;
         at = header.find(byteOrderMark, at)) {
        header.erase(at, byteOrderMark.size());
    }
    return std::string(UnicodeText::trimmed(header));
}

/// Reads the header; `end` becomes the start of the record after it.
std::vector<std::string> readHeaders(std::string_view text, char delimiter, std::size_t& end) {
    RecordReader reader(text, delimiter, 0);
    RecordReader::Record record;
    bool found = false;
    while (!found && reader.read(record, CSVParser::mostColumns)) {
        found = !isBlank(record);
    }
    if (reader.endedInQuotes()) {
        fail(CSVParserError::Kind::unterminatedQuote);
    }
    if (!found) {
        fail(CSVParserError::Kind::emptyFile);
    }
    if (record.cellCount > CSVParser::mostColumns) {
        fail(CSVParserError::Kind::tooManyColumns);
    }
    end = reader.position();
    std::vector<std::string> headers(record.cells.size());
    std::transform(record.cells.begin(), record.cells.end(), headers.begin(), cleanedHeader);
    return headers;
}

/// A stretch of the text that one thread reads into rows of its own, records numbered from 1.
class Piece {
public:
    Piece(std::string_view text, char delimiter, std::size_t begin, std::size_t columnCount)
        : text_(text),
          begin_(begin),
          columnCount_(columnCount),
          reader_(text, delimiter, begin),
          rows_(columnCount) {}

    /// Reads every record that begins before `end`.
    void readUntil(std::size_t end) {
        while (reader_.position() < end && reader_.read(record_, columnCount_)) {
            if (isBlank(record_)) {
                continue;
            }
            ++recordCount_;
            if (hasValue(record_)) {
                rows_.add(recordCount_, record_.cells, record_.cellCount);
            }
            if (recordCount_ == recordsBeforeEstimate) {
                // The first piece takes in the rows of all others in the end.
                estimateRows(isFirst_ ? text_.size() : end);
            }
        }
    }

    void markFirst() { isFirst_ = true; }

    std::size_t begin() const { return begin_; }
    std::size_t position() const { return reader_.position(); }
    bool endedInQuotes() const { return reader_.endedInQuotes(); }
    std::int64_t recordCount() const { return recordCount_; }
    NormalizedRows& rows() { return rows_; }

private:
    static constexpr std::int64_t recordsBeforeEstimate = 1024;

    void estimateRows(std::size_t end) {
        const std::size_t read = reader_.position() - begin_;
        const double pieces = static_cast<double>(end - begin_) / static_cast<double>(read);
        rows_.expectRows(static_cast<std::size_t>(pieces * 1.05 * recordsBeforeEstimate));
    }

    std::string_view text_;
    std::size_t begin_;
    bool isFirst_ = false;
    std::size_t columnCount_;
    RecordReader reader_;
    RecordReader::Record record_;
    std::int64_t recordCount_ = 0;
    NormalizedRows rows_;
};

/// The first line start from `position` on before which the quotes from `begin` are even in number;
/// the end of the text when there is none. A guess: quotes inside plain cells mislead it.
std::size_t likelyRecordStart(std::string_view text, std::size_t begin, std::size_t position) {
    bool even = std::count(text.begin() + static_cast<std::ptrdiff_t>(begin),
                           text.begin() + static_cast<std::ptrdiff_t>(position), '"') %
                    2 ==
                0;
    for (; position < text.size(); ++position) {
        if (text[position] == '"') {
            even = !even;
        } else if (text[position] == '\n' && even) {
            return position + 1;
        }
    }
    return text.size();
}

using Pieces = std::vector<std::unique_ptr<Piece>>;

/// The text after the header in about equal pieces.
struct Splitting {
    std::string_view text;
    char delimiter = ',';
    std::size_t columnCount = 0;

    Pieces pieces(std::size_t begin, std::size_t count) const {
        Pieces result;
        result.push_back(piece(begin));
        result.front()->markFirst();
        const std::size_t size = text.size() - begin;
        for (std::size_t i = 1; i < count; ++i) {
            const std::size_t former = result.back()->begin();
            const std::size_t target = std::max(begin + size / count * i, former);
            const std::size_t start = likelyRecordStart(text, former, target);
            if (start < text.size()) {
                result.push_back(piece(start));
            }
        }
        return result;
    }
    std::unique_ptr<Piece> piece(std::size_t begin) const {
        return std::make_unique<Piece>(text, delimiter, begin, columnCount);
    }
};

/// Reads all pieces at once. Where one does not end exactly at the start of the next, that start
/// was guessed wrong: the rest of the text is then read on from there.
void readPieces(Pieces& pieces, std::size_t textEnd, unsigned threads) {
    const auto endOf = [&](std::size_t index) {
        return index + 1 < pieces.size() ? pieces[index + 1]->begin() : textEnd;
    };
    parallelFor(pieces.size(), threads,
                [&](std::size_t index) { pieces[index]->readUntil(endOf(index)); });
    for (std::size_t index = 0; index + 1 < pieces.size(); ++index) {
        if (pieces[index]->position() != pieces[index + 1]->begin()) {
            pieces.resize(index + 1);
            pieces[index]->readUntil(textEnd);
        }
    }
}

}  // namespace

CSVParseResult CSVParser::parse(std::string_view text) const {
    const char delimiter = DelimiterDetection::delimiter(text);
    std::size_t begin = 0;
    CSVParseResult result;
    result.headers = readHeaders(text, delimiter, begin);

    const unsigned threadCount = threads == 0 ? hardwareThreads() : threads;
    const std::size_t worthwhile = (text.size() - begin) / std::max<std::size_t>(bytesPerThread, 1);
    const std::size_t count = std::clamp<std::size_t>(worthwhile, 1, threadCount);
    const Splitting splitting{
        .text = text, .delimiter = delimiter, .columnCount = result.headers.size()};
    Pieces pieces = splitting.pieces(begin, count);
    readPieces(pieces, text.size(), threadCount);
    if (pieces.back()->endedInQuotes()) {
        fail(CSVParserError::Kind::unterminatedQuote);
    }

    NormalizedRows rows(result.headers.size());
    std::int64_t recordsBefore = 1;
    for (const std::unique_ptr<Piece>& piece : pieces) {
        rows.append(std::move(piece->rows()), recordsBefore, threadCount);
        recordsBefore += piece->recordCount();
    }
    result.rowReports = rows.reports();
    result.rows = rows.finish();
    return result;
}

}  // namespace sorvane
