#include "SorvaneCore/Import/SPSS/SPSSColumns.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Import/ColumnGroups.h"
#include "SorvaneCore/Import/ImplausibleMagnitude.h"
#include "SorvaneCore/Import/PatternColumnBuilder.h"
#include "SorvaneCore/Import/SPSS/SPSSCases.h"
#include "SorvaneCore/Import/TextBudget.h"

namespace sorvane {

namespace {

/// A number of 8 bytes that is met once can print with some 80 characters and still be meant.
constexpr std::size_t textPerByte = 10;

/// Takes the cells of one variable, block by block.
class ColumnReader {
public:
    ColumnReader(const SPSSVariable& variable, SPSSText::Encoding encoding, TextBudget& budget)
        : variable_(variable), encoding_(encoding), budget_(budget) {
        if (variable.missing) {
            missingValues_ = variable.missing->discrete;
            std::sort(missingValues_.begin(), missingValues_.end());
        }
    }

    void expectRows(std::size_t rows) {
        patterns_.expectRows(rows);
        texts_.expectRows(rows);
    }

    void take(const SPSSCaseBlock& block) {
        if (budget_.isExceeded()) {
            return;
        }
        const std::size_t bytesBefore = textBytes();
        if (!variable_.isString()) {
            takeNumbers(block);
        } else if (variable_.slotCount == 1) {
            takeShortTexts(block);
        } else {
            takeLongTexts(block);
        }
        budget_.change(bytesBefore, textBytes());
    }

    std::uint64_t userMissingCells() const { return patterns_.countedCells(); }
    bool isImplausible() const { return isImplausible_; }
    TextTable::Column finish() { return hasPatterns() ? patterns_.finish() : texts_.finish(); }

private:
    bool hasPatterns() const { return variable_.slotCount == 1; }
    std::size_t textBytes() const {
        return hasPatterns() ? patterns_.textBytes() : texts_.textBytes();
    }

    void takeNumbers(const SPSSCaseBlock& block) {
        const auto textOf = [this, &block](std::uint64_t pattern) {
            const auto raw = std::bit_cast<std::array<char, 8>>(pattern);
            return numberText(ByteReader::number<double>(raw.data(), block.numberOrder));
        };
        for (std::size_t row = 0; row < block.rowCount; ++row) {
            patterns_.append(pattern(block, row), textOf);
        }
    }

    void takeShortTexts(const SPSSCaseBlock& block) {
        const auto textOf = [this](std::uint64_t pattern) {
            const auto raw = std::bit_cast<std::array<char, 8>>(pattern);
            return PatternText{.text = cellText({raw.data(), raw.size()})};
        };
        for (std::size_t row = 0; row < block.rowCount; ++row) {
            patterns_.append(pattern(block, row), textOf);
        }
    }

    void takeLongTexts(const SPSSCaseBlock& block) {
        const std::size_t size = variable_.slotCount * 8;
        for (std::size_t row = 0; row < block.rowCount; ++row) {
            texts_.append(cellText({block.slot(row, variable_.firstSlot), size}));
        }
    }

    std::uint64_t pattern(const SPSSCaseBlock& block, std::size_t row) const {
        std::uint64_t pattern;
        std::memcpy(&pattern, block.slot(row, variable_.firstSlot), sizeof pattern);
        return pattern;
    }

    PatternText numberText(double value) {
        if (std::isnan(value)) {
            return {};
        }
        if (isUserMissing(value)) {
            return {.text = {}, .isCounted = true};
        }
        isImplausible_ = isImplausible_ || isImplausibleMagnitude(value);
        storage_ = SPSSNumbers::cellText(value, variable_.format);
        return {.text = storage_};
    }

    bool isUserMissing(double value) const {
        const auto& range = variable_.missing ? variable_.missing->range : noRange;
        return (range && range->lower <= value && value <= range->upper) ||
               std::binary_search(missingValues_.begin(), missingValues_.end(), value);
    }

    std::string_view cellText(std::string_view bytes) {
        storage_ = SPSSText::decodeString(SPSSText::trimmedTrailingSpaces(bytes), encoding_);
        return storage_;
    }

    static constexpr std::optional<MissingSpec::Range> noRange = std::nullopt;

    const SPSSVariable& variable_;
    /// Ascending: a file can declare any number of them.
    std::vector<double> missingValues_;
    SPSSText::Encoding encoding_;
    TextBudget& budget_;
    PatternColumnBuilder patterns_;
    TextColumnBuilder texts_;
    bool isImplausible_ = false;
    std::string storage_;
};

}  // namespace

std::optional<SPSSTable> readSPSSTable(const SPSSDictionary& dictionary,
                                       const std::vector<SPSSVariable>& variables,
                                       std::string_view data) {
    const SPSSText::Encoding encoding = SPSSText::resolveEncoding(dictionary.encodingName).encoding;
    SPSSCaseReader cases(dictionary, data);
    TextBudget budget(data.size(), textPerByte);
    std::vector<ColumnReader> columns;
    columns.reserve(variables.size());
    for (const SPSSVariable& variable : variables) {
        columns.emplace_back(variable, encoding, budget);
        if (!dictionary.compressed) {
            columns.back().expectRows(cases.mostCases());
        }
    }
    std::size_t rowCount = 0;
    for (SPSSCaseBlock block = cases.next(); block.rowCount > 0; block = cases.next()) {
        forEachColumnStretch(columns.size(), block.rowCount,
                             [&](std::size_t column, std::size_t firstRow, std::size_t rows) {
                                 columns[column].take(block.stretch(firstRow, rows));
                             });
        rowCount += block.rowCount;
    }
    if (cases.isDamaged() || budget.isExceeded()) {
        return std::nullopt;
    }
    SPSSTable table;
    std::vector<TextTable::Column> finished;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        table.userMissingCells += columns[column].userMissingCells();
        if (columns[column].isImplausible()) {
            table.implausibleColumns.push_back(column);
        }
        finished.push_back(columns[column].finish());
    }
    table.rows = TextTable(std::move(finished), rowCount);
    return table;
}

}  // namespace sorvane
