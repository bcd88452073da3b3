#include "SorvaneCore/Dataset/NumericColumn.h"

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

/// Digits, signs, the point, and the first letters of "inf" and "nan": no other byte begins what
/// the C routine reads. Most texts are told from numbers here.
bool canBeginNumber(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'i' || c == 'I' ||
           c == 'n' || c == 'N';
}

}  // namespace

bool readTrimmedNumber(std::string_view trimmed, double& number) {
    return !trimmed.empty() && canBeginNumber(trimmed.front()) && NumberText::read(trimmed, number);
}

std::optional<double> numericCell(std::string_view cell) {
    if (MissingValue::isMissing(cell)) {
        return std::nullopt;
    }
    double number = 0.0;
    return readTrimmedNumber(UnicodeText::trimmed(cell), number) ? std::optional<double>(number)
                                                                 : std::nullopt;
}

NumericColumn::NumericColumn(std::shared_ptr<const TextColumn> column)
    : column_(std::move(column)) {
    levels_.reserve(column_->levelCount());
    for (std::size_t code = 0; code < column_->levelCount(); ++code) {
        levels_.push_back(numericCell(column_->level(code)));
    }
}

NumericColumn::NumericColumn(std::vector<std::optional<double>> rows) : levels_(std::move(rows)) {}

std::vector<std::uint64_t> NumericColumn::levelCounts() const {
    return column_ ? column_->levelCounts() : std::vector<std::uint64_t>(levels_.size(), 1);
}

std::vector<std::optional<double>> NumericColumn::rows() const {
    std::vector<std::optional<double>> result(size());
    withCodes([this, &result](const auto& codes) {
        for (std::size_t row = 0; row < result.size(); ++row) {
            result[row] = levels_[codes[row]];
        }
    });
    return result;
}

std::vector<double> NumericColumn::present() const {
    std::vector<double> result;
    result.reserve(size());
    withCodes([this, &result](const auto& codes) {
        for (std::size_t row = 0; row < size(); ++row) {
            const std::optional<double>& number = levels_[codes[row]];
            if (number) {
                result.push_back(*number);
            }
        }
    });
    return result;
}

}  // namespace sorvane
