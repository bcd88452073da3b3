#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unicode/brkiter.h>
#include <vector>

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"

namespace sorvane::test {

/// The parse as it is told, one user-perceived character after the other, each found by ICU.
class ReferenceParser {
public:
    /// Input      line ends as LF
    ReferenceParser(const std::string& text, char delimiter)
        : characters_(charactersOf(text)), delimiter_(delimiter) {}

    /// The records kept, header first; `endedInQuotes` when the last quote is never closed.
    std::vector<std::vector<std::string>> records(bool& endedInQuotes) {
        bool inQuotes = false;
        for (std::size_t i = 0; i < characters_.size(); ++i) {
            const std::string& character = characters_[i];
            if (inQuotes) {
                if (character != "\"") {
                    cell_ += character;
                } else if (i + 1 < characters_.size() && characters_[i + 1] == "\"") {
                    cell_ += '"';
                    ++i;
                } else {
                    inQuotes = false;
                }
            } else if (character == "\"" && cell_.empty()) {
                inQuotes = true;
            } else if (character == std::string(1, delimiter_)) {
                endCell();
            } else if (character == "\n") {
                endCell();
                endRecord();
            } else {
                cell_ += character;
            }
        }
        endedInQuotes = inQuotes;
        if (!cell_.empty() || !record_.empty()) {
            endCell();
            endRecord();
        }
        return std::move(records_);
    }

private:
    static std::vector<std::string> charactersOf(const std::string& text) {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::BreakIterator> breaks(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
        breaks->setText(wide);
        std::vector<std::string> result;
        for (std::int32_t begin = 0, end = breaks->next(); end != icu::BreakIterator::DONE;
             begin = end, end = breaks->next()) {
            wide.tempSubStringBetween(begin, end).toUTF8String(result.emplace_back());
        }
        return result;
    }
    void endCell() {
        record_.push_back(std::move(cell_));
        cell_.clear();
    }
    void endRecord() {
        if (record_.size() != 1 || !UnicodeText::trimmed(record_.front()).empty()) {
            records_.push_back(std::move(record_));
        }
        record_.clear();
    }

    std::vector<std::string> characters_;
    char delimiter_;
    std::string cell_;
    std::vector<std::string> record_;
    std::vector<std::vector<std::string>> records_;
};

}  // namespace sorvane::test
