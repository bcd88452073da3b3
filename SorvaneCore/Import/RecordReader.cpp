#include "SorvaneCore/Import/RecordReader.h"

#include <algorithm>

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

RecordReader::RecordReader(std::string_view text, char delimiter, std::size_t begin)
    : text_(text), delimiter_(delimiter), special_(text, delimiter, begin), position_(begin) {}

bool RecordReader::read(Record& record, std::size_t keptCells) {
    record.cells.clear();
    record.cellCount = 0;
    record.hasValueBeyond = false;
    storage_.release();
    while (true) {
        const Cell cell = readCell();
        const bool atEnd = cell.end == text_.size();
        if (endedInQuotes_ || (atEnd && cell.text.empty() && record.cellCount == 0)) {
            position_ = text_.size();
            return false;
        }
        ++record.cellCount;
        if (record.cells.size() < keptCells) {
            record.cells.push_back(cell.text);
        } else {
            record.hasValueBeyond = record.hasValueBeyond || !MissingValue::isMissing(cell.text);
        }
        if (atEnd || text_[cell.end] != delimiter_) {
            position_ = atEnd ? cell.end : afterLineBreak(cell.end);
            return true;
        }
        position_ = cell.end + 1;
    }
}

RecordReader::Cell RecordReader::readCell() {
    const std::size_t special = special_.next();
    if (special == position_ && isQuote(special)) {
        return readQuotedCell();
    }
    const std::size_t end = nextEnd(special);
    return {.text = text_.substr(position_, end - position_), .end = end};
}

RecordReader::Cell RecordReader::readQuotedCell() {
    rewritten_.clear();
    std::size_t unread = position_ + 1;
    const std::size_t close = closingQuote(unread);
    if (endedInQuotes_) {
        return {.text = {}, .end = close};
    }
    const std::size_t end = nextEnd(special_.next());
    const std::string_view quoted = text_.substr(unread, close - unread);
    const std::string_view plain = text_.substr(close + 1, end - close - 1);
    if (rewritten_.empty() && plain.empty()) {
        return {.text = quoted, .end = end};
    }
    rewritten_.append(quoted).append(plain);
    return {.text = stored(rewritten_), .end = end};
}

/// Finds the quote that closes a cell. What must be rewritten on the way, doubled quotes and
/// carriage returns, goes with all before it into `rewritten_`, and `unread` moves behind it.
std::size_t RecordReader::closingQuote(std::size_t& unread) {
    while (true) {
        const std::size_t position = special_.next();
        if (position == text_.size()) {
            endedInQuotes_ = true;
            return position;
        }
        if (text_[position] == '\r') {
            rewritten_.append(text_.substr(unread, position - unread)).push_back('\n');
            unread = afterLineBreak(position);
        } else if (isQuote(position)) {
            if (!isQuote(position + 1)) {
                return position;
            }
            rewritten_.append(text_.substr(unread, position + 1 - unread));
            unread = special_.next() + 1;
        }
    }
}

std::size_t RecordReader::nextEnd(std::size_t special) {
    while (!endsCell(special)) {
        special = special_.next();
    }
    return special;
}

bool RecordReader::endsCell(std::size_t position) const {
    if (position == text_.size()) {
        return true;
    }
    const char c = text_[position];
    if (c == '"') {
        return false;
    }
    return c != delimiter_ || c == '\t' || UnicodeText::standsAlone(text_, position);
}

bool RecordReader::isQuote(std::size_t position) const {
    return position < text_.size() && text_[position] == '"' &&
           UnicodeText::standsAlone(text_, position);
}

std::size_t RecordReader::afterLineBreak(std::size_t position) {
    if (text_[position] == '\r' && position + 1 < text_.size() && text_[position + 1] == '\n') {
        return special_.next() + 1;
    }
    return position + 1;
}

std::string_view RecordReader::stored(std::string_view cell) {
    auto* bytes = static_cast<char*>(storage_.allocate(cell.size(), 1));
    std::copy(cell.begin(), cell.end(), bytes);
    return {bytes, cell.size()};
}

}  // namespace sorvane
