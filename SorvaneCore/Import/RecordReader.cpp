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
        // Where the cell ends: at a delimiter, a line break or the end of the text.
        std::size_t end = special_.next();
        const std::string_view cell =
            endsCell(end) ? text_.substr(position_, end - position_) : cellWithQuotes(end);
        const bool atEnd = end == text_.size();
        if (endedInQuotes_ || (atEnd && cell.empty() && record.cellCount == 0)) {
            position_ = text_.size();
            return false;
        }
        ++record.cellCount;
        if (record.cellCount <= keptCells) {
            record.cells.push_back(cell);
        } else {
            record.hasValueBeyond = record.hasValueBeyond || !MissingValue::isMissing(cell);
        }
        if (atEnd || text_[end] != delimiter_) {
            position_ = atEnd ? end : afterLineBreak(end);
            return true;
        }
        position_ = end + 1;
    }
}

std::string_view RecordReader::cellWithQuotes(std::size_t& end) {
    if (end == position_ && isQuote(end)) {
        return quotedCell(end);
    }
    end = nextEnd();
    return text_.substr(position_, end - position_);
}

std::string_view RecordReader::quotedCell(std::size_t& end) {
    rewritten_.clear();
    std::size_t unread = position_ + 1;
    const std::size_t close = closingQuote(unread);
    if (endedInQuotes_) {
        end = close;
        return {};
    }
    end = nextEnd();
    const std::string_view quoted = text_.substr(unread, close - unread);
    const std::string_view plain = text_.substr(close + 1, end - close - 1);
    if (rewritten_.empty() && plain.empty()) {
        return quoted;
    }
    rewritten_.append(quoted).append(plain);
    return stored(rewritten_);
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

std::size_t RecordReader::nextEnd() {
    std::size_t position = special_.next();
    while (!endsCell(position)) {
        position = special_.next();
    }
    return position;
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
