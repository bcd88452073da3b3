#include "SorvaneCore/Import/Excel/WorksheetParser.h"

#include <algorithm>
#include <charconv>

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

std::optional<std::int64_t> integer(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    std::int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// A row may name a column more than once, but hardly each of them.
constexpr std::size_t mostCellsOfRow = 2 * WorksheetTable::mostColumns;

bool isBefore(const WorksheetCell& left, const WorksheetCell& right) {
    return left.column < right.column;
}

}  // namespace

void WorksheetParser::startElement(XmlName name, const XmlAttributes& attributes) {
    if (name == "c") {
        startCell(attributes);
    } else if (name == "v") {
        isInsideValue_ = true;
    } else if (name == "row") {
        startRow(attributes);
    } else if (name == "t") {
        isInsideInlineText_ = isInsideInlineText_ || cellType_ == CellType::inlineString;
    }
}

void WorksheetParser::characters(std::string_view text) {
    if (isInsideValue_) {
        cellValue_.append(text);
    }
    if (isInsideInlineText_) {
        inlineText_.append(text);
    }
}

void WorksheetParser::endElement(XmlName name) {
    if (name == "c") {
        endCell();
    } else if (name == "v") {
        isInsideValue_ = false;
    } else if (name == "row") {
        endRow();
    } else if (name == "t") {
        isInsideInlineText_ = false;
    }
}

void WorksheetParser::startRow(const XmlAttributes& attributes) {
    isInsideRow_ = true;
    rowCells_.clear();
    rowTexts_.clear();
    const std::optional<std::string_view> number = attributes.value("r");
    rowNumber_ = (number ? integer(*number) : std::nullopt).value_or(storedRows_ + 1);
}

void WorksheetParser::startCell(const XmlAttributes& attributes) {
    cellColumn_ = columnIndex(attributes.value("r").value_or(std::string_view()));
    const std::string_view type = attributes.value("t").value_or(std::string_view());
    cellType_ = type == "s"           ? CellType::sharedString
                : type == "b"         ? CellType::boolean
                : type == "inlineStr" ? CellType::inlineString
                                      : CellType::plain;
    cellValue_.clear();
    inlineText_.clear();
}

void WorksheetParser::endCell() {
    if (cellColumn_ && isInsideRow_) {
        const std::string_view value = UnicodeText::trimmed(cellValue_);
        switch (cellType_) {
            case CellType::plain:
                addCell(value, false);
                break;
            case CellType::sharedString:
                addCell(sharedString(value), true);
                break;
            case CellType::boolean:
                addCell(value == "1" ? "TRUE" : "FALSE", true);
                break;
            case CellType::inlineString:
                addCell(UnicodeText::trimmed(inlineText_), false);
                break;
        }
    }
    cellColumn_.reset();
    cellType_ = CellType::plain;
}

std::string_view WorksheetParser::sharedString(std::string_view index) const {
    const std::optional<std::int64_t> number = integer(index);
    const bool exists =
        number && *number >= 0 && static_cast<std::size_t>(*number) < sharedStrings_.size();
    return exists ? sharedStrings_[static_cast<std::size_t>(*number)] : std::string_view();
}

void WorksheetParser::addCell(std::string_view text, bool isShared) {
    RowCell cell{.column = *cellColumn_, .begin = rowTexts_.size(), .size = text.size()};
    if (isShared) {
        cell.shared = text;
    } else {
        rowTexts_.append(text);
    }
    rowCells_.push_back(cell);
    if (rowCells_.size() > mostCellsOfRow) {
        refuse("A row of a worksheet has far more cells than there are columns.");
    }
}

void WorksheetParser::endRow() {
    if (isInsideRow_) {
        const std::string_view texts = rowTexts_;
        cells_.clear();
        for (const RowCell& cell : rowCells_) {
            cells_.push_back({.column = cell.column,
                              .text = cell.shared.value_or(texts.substr(cell.begin, cell.size))});
        }
        sortCells();
        const bool hasValue = std::any_of(
            cells_.begin(), cells_.end(),
            [](const WorksheetCell& cell) { return !MissingValue::isMissing(cell.text); });
        if (hasValue) {
            table_.add(rowNumber_, cells_);
            ++storedRows_;
        }
        if (storedRows_ > WorksheetTable::mostRows) {
            refuse("A worksheet has more rows than worksheets can have.");
        }
    }
    isInsideRow_ = false;
}

/// Ascending columns; of several cells of one column the last counts.
void WorksheetParser::sortCells() {
    const auto outOfOrder = std::adjacent_find(
        cells_.begin(), cells_.end(), [](const WorksheetCell& left, const WorksheetCell& right) {
            return !isBefore(left, right);
        });
    if (outOfOrder == cells_.end()) {
        return;
    }
    std::reverse(cells_.begin(), cells_.end());
    std::stable_sort(cells_.begin(), cells_.end(), isBefore);
    const auto end = std::unique(cells_.begin(), cells_.end(),
                                 [](const WorksheetCell& left, const WorksheetCell& right) {
                                     return left.column == right.column;
                                 });
    cells_.erase(end, cells_.end());
}

std::optional<std::size_t> WorksheetParser::columnIndex(std::string_view reference) {
    std::size_t number = 0;
    for (const char c : reference) {
        const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isLetter) {
            number = number * 26 + static_cast<std::size_t>((c | 0x20) - 'a') + 1;
        }
        if ((!isLetter && number > 0) || number > WorksheetTable::mostColumns) {
            break;
        }
    }
    return number == 0 || number > WorksheetTable::mostColumns ? std::nullopt
                                                               : std::optional(number - 1);
}

}  // namespace sorvane
