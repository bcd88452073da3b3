#include "SorvaneCore/Import/Stata/StataCells.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "SorvaneCore/Import/ColumnGroups.h"
#include "SorvaneCore/Import/ImplausibleMagnitude.h"
#include "SorvaneCore/Import/PatternColumnBuilder.h"
#include "SorvaneCore/Import/Stata/StataLongTexts.h"
#include "SorvaneCore/Import/TextBudget.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

using Kind = StataFile::VarType::Kind;

constexpr double plainIntegers = 1e15;

/// A file may have so many cells, whatever its size; beyond that, so many for each of its bytes.
/// Only columns of no width could have more.
constexpr std::size_t cellsFloor = std::size_t{1} << 26;
constexpr std::size_t cellsPerByte = 2;

// The greatest values that are not missing.
constexpr std::int8_t lastByte = 100;
constexpr std::int16_t lastInt = 32740;
constexpr std::int32_t lastLong = 2147483620;
/// What stands exactly at these thresholds, the plain missing value, still counts as a number.
constexpr double floatThreshold = 0x1p127;
constexpr double doubleThreshold = 0x1p1023;

/// The bytes of a reference and how many of them are of the variable.
struct ReferenceLayout {
    std::size_t width = 8;
    std::size_t variableWidth = 2;

    static ReferenceLayout of(std::int64_t release, StataStringReferences references) {
        if (references == StataStringReferences::stated) {
            return release == 117 ? ReferenceLayout{.width = 8, .variableWidth = 2}
                                  : ReferenceLayout{.width = 12, .variableWidth = 4};
        }
        const std::size_t variableWidth = release == 117 ? 4 : release == 118 ? 2 : 3;
        return {.width = 8, .variableWidth = variableWidth};
    }

    StataReference read(const char* bytes, ByteOrder order) const {
        return {.variable = number(bytes, variableWidth, order),
                .observation = number(bytes + variableWidth, width - variableWidth, order)};
    }

private:
    static std::uint64_t number(const char* bytes, std::size_t size, ByteOrder order) {
        std::uint64_t result = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t at = order == ByteOrder::big ? i : size - 1 - i;
            result = result << 8 | static_cast<std::uint8_t>(bytes[at]);
        }
        return result;
    }
};

std::size_t widthOf(const StataFile::VarType& type, const ReferenceLayout& layout) {
    switch (type.kind) {
        case Kind::byte:
            return 1;
        case Kind::int_:
            return 2;
        case Kind::long_:
        case Kind::float_:
            return 4;
        case Kind::double_:
            return 8;
        case Kind::strL:
            return layout.width;
        case Kind::str:
            break;
    }
    return type.width;
}

std::size_t rowWidth(const StataFile& file, const ReferenceLayout& layout) {
    return std::accumulate(file.types.begin(), file.types.end(), std::size_t{0},
                           [&layout](std::size_t sum, const StataFile::VarType& type) {
                               return sum + widthOf(type, layout);
                           });
}

double widened(float number) {
    return static_cast<double>(number);
}

double widened(double number) {
    return number;
}

/// What all columns share.
struct Context {
    const StataFile& file;
    const StataLongTexts& longTexts;
    TextBudget& budget;
    StataStringReferences references;
};

struct RowBlock {
    const char* bytes = nullptr;
    std::size_t rowCount = 0;
    std::size_t rowWidth = 0;
};

/// Takes the cells of one variable, block by block.
class ColumnReader {
public:
    ColumnReader(const Context& context, StataFile::VarType type, std::size_t offset)
        : file_(context.file),
          longTexts_(context.longTexts),
          budget_(context.budget),
          type_(type),
          offset_(offset),
          layout_(ReferenceLayout::of(file_.release, context.references)),
          otherLayout_(ReferenceLayout::of(file_.release, StataStringReferences::eightBytes)) {}

    void expectRows(std::size_t rows) {
        patterns_.expectRows(rows);
        texts_.expectRows(rows);
    }

    void take(const RowBlock& block) {
        switch (type_.kind) {
            case Kind::byte:
                takeIntegers<std::int8_t>(block, lastByte);
                break;
            case Kind::int_:
                takeIntegers<std::int16_t>(block, lastInt);
                break;
            case Kind::long_:
                takeIntegers<std::int32_t>(block, lastLong);
                break;
            case Kind::float_:
                takeNumbers<float>(block, floatThreshold);
                break;
            case Kind::double_:
                takeNumbers<double>(block, doubleThreshold);
                break;
            case Kind::strL:
                takeReferences(block);
                break;
            case Kind::str:
                takeTexts(block);
                break;
        }
    }

    bool isImplausible() const { return isImplausible_; }
    bool hasOtherReferences() const { return hasOtherReferences_; }
    TextTable::Column finish() { return hasPatterns() ? patterns_.finish() : texts_.finish(); }

private:
    bool isShortText() const { return type_.kind == Kind::str && type_.width <= 8; }
    bool hasPatterns() const { return isShortText() || type_.kind != Kind::str; }

    const char* cell(const RowBlock& block, std::size_t row) const {
        return block.bytes + row * block.rowWidth + offset_;
    }

    template <typename Number, typename TextOf>
    void takePatterns(const RowBlock& block, const TextOf& textOf) {
        const auto textOfPattern = [&](std::uint64_t pattern) {
            const auto raw = std::bit_cast<std::array<char, 8>>(pattern);
            return textOf(ByteReader::number<Number>(raw.data(), file_.byteOrder));
        };
        for (std::size_t row = 0; row < block.rowCount; ++row) {
            patterns_.append(pattern(cell(block, row), sizeof(Number)), textOfPattern);
        }
    }

    static std::uint64_t pattern(const char* bytes, std::size_t size) {
        std::uint64_t pattern = 0;
        std::memcpy(&pattern, bytes, size);
        return pattern;
    }

    template <typename Integer>
    void takeIntegers(const RowBlock& block, Integer last) {
        takePatterns<Integer>(block, [this, last](Integer value) {
            storage_ = value > last ? std::string() : NumberText::integer(value);
            return PatternText{.text = storage_};
        });
    }

    template <typename Number>
    void takeNumbers(const RowBlock& block, double threshold) {
        takePatterns<Number>(block, [this, threshold](Number number) {
            const double value = widened(number);
            const bool isMissing = !std::isfinite(value) || value > threshold;
            isImplausible_ = isImplausible_ ||
                             (!isMissing && (isImplausibleMagnitude(value) || value == threshold));
            storage_ = isMissing ? std::string() : stataNumberText(value);
            return PatternText{.text = storage_};
        });
    }

    void takeTexts(const RowBlock& block) {
        if (isShortText()) {
            const auto textOf = [this](std::uint64_t pattern) {
                const auto raw = std::bit_cast<std::array<char, 8>>(pattern);
                storage_ = StataFile::text({raw.data(), type_.width});
                return PatternText{.text = storage_};
            };
            for (std::size_t row = 0; row < block.rowCount; ++row) {
                patterns_.append(pattern(cell(block, row), type_.width), textOf);
            }
            return;
        }
        for (std::size_t row = 0; row < block.rowCount; ++row) {
            texts_.append(StataFile::text({cell(block, row), type_.width}));
        }
    }

    void takeReferences(const RowBlock& block) {
        const auto textOf = [this](std::uint64_t number) {
            storage_ = longTexts_.text(number);
            return PatternText{.text = storage_};
        };
        for (std::size_t row = 0; row < block.rowCount && !budget_.isExceeded(); ++row) {
            const char* bytes = cell(block, row);
            const StataReference reference = layout_.read(bytes, file_.byteOrder);
            const std::size_t number = longTexts_.number(reference);
            const std::size_t bytesBefore = patterns_.textBytes();
            patterns_.append(number, textOf);
            budget_.change(bytesBefore, patterns_.textBytes());
            if (number == 0 && !reference.isEmpty() && layout_.width == otherLayout_.width) {
                const StataReference other = otherLayout_.read(bytes, file_.byteOrder);
                hasOtherReferences_ = hasOtherReferences_ || longTexts_.number(other) != 0;
            }
        }
    }

    const StataFile& file_;
    const StataLongTexts& longTexts_;
    TextBudget& budget_;
    StataFile::VarType type_;
    std::size_t offset_;
    ReferenceLayout layout_;
    ReferenceLayout otherLayout_;
    PatternColumnBuilder patterns_;
    TextColumnBuilder texts_;
    bool isImplausible_ = false;
    bool hasOtherReferences_ = false;
    std::string storage_;
};

/// Whether so many cells can be meant by a file of that size.
bool hasPlausibleSize(const StataFile& file) {
    const std::size_t mostCells = cellsFloor + cellsPerByte * file.bytes.size();
    return file.observationCount <= mostCells / std::max<std::size_t>(file.types.size(), 1);
}

/// The bytes of all observations; absent when the file does not hold so many.
std::optional<std::string_view> dataBytes(const StataFile& file, std::size_t width) {
    std::optional<ByteReader> section = file.section("data");
    // Without this, observations of no variables could be any number.
    const bool isEmpty = file.observationCount == 0;
    if (!section || (width == 0 && !isEmpty) ||
        (!isEmpty && file.observationCount > section->remaining() / width)) {
        return std::nullopt;
    }
    return section->readBytes(static_cast<std::int64_t>(file.observationCount * width));
}

/// The data section if it ends where it has to when references take 8 bytes, and not where they were
/// read to take 12.
std::optional<std::string_view> dataOfEightBytes(const StataFile& file,
                                                 const ReferenceLayout& layout) {
    const auto eightBytes = ReferenceLayout::of(file.release, StataStringReferences::eightBytes);
    const std::size_t width = rowWidth(file, eightBytes);
    std::optional<ByteReader> section = file.section("data");
    if (layout.width == eightBytes.width || width == rowWidth(file, layout) || !section ||
        file.observationCount > section->remaining() / width) {
        return std::nullopt;
    }
    const auto data = section->readBytes(static_cast<std::int64_t>(file.observationCount * width));
    return section->peekMatches("</data>") ? data : std::nullopt;
}

/// From the first reference on, all that follows stands elsewhere, and with it the next rows whole.
std::vector<std::size_t> columnsAfterReferences(const StataFile& file) {
    std::vector<std::size_t> columns;
    bool isAfter = file.observationCount > 1;
    for (std::size_t column = 0; column < file.types.size(); ++column) {
        isAfter = isAfter || file.types[column].kind == Kind::strL;
        if (isAfter) {
            columns.push_back(column);
        }
    }
    return columns;
}

std::vector<std::size_t> allColumns(const StataFile& file) {
    std::vector<std::size_t> columns(file.types.size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    return columns;
}

std::vector<ColumnReader> columnReaders(const Context& context) {
    const StataFile& file = context.file;
    const auto layout = ReferenceLayout::of(file.release, context.references);
    std::vector<ColumnReader> columns;
    columns.reserve(file.types.size());
    std::size_t offset = 0;
    for (const StataFile::VarType& type : file.types) {
        columns.emplace_back(context, type, offset);
        columns.back().expectRows(static_cast<std::size_t>(file.observationCount));
        offset += widthOf(type, layout);
    }
    return columns;
}

void takeAll(std::vector<ColumnReader>& columns, std::string_view data, std::size_t width) {
    forEachColumnStretch(
        columns.size(), data.size() / width,
        [&](std::size_t column, std::size_t firstRow, std::size_t rows) {
            columns[column].take(
                {.bytes = data.data() + firstRow * width, .rowCount = rows, .rowWidth = width});
        });
}

}  // namespace

std::optional<StataTable> readStataTable(const StataFile& file, StataStringReferences references) {
    const auto layout = ReferenceLayout::of(file.release, references);
    const std::size_t width = rowWidth(file, layout);
    const std::optional<std::string_view> otherData = dataOfEightBytes(file, layout);
    const std::optional<std::string_view> data = dataBytes(file, width);
    if ((!data && !otherData) || !hasPlausibleSize(file)) {
        return std::nullopt;
    }
    const StataLongTexts longTexts(file);
    TextBudget budget(file.bytes.size());
    std::vector<ColumnReader> columns = columnReaders(
        {.file = file, .longTexts = longTexts, .budget = budget, .references = references});
    const std::string_view read = data ? *data : *otherData;
    if (!read.empty()) {
        takeAll(columns, read, width);
    }
    if (budget.isExceeded()) {
        return std::nullopt;
    }

    StataTable table;
    std::vector<TextTable::Column> finished;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (columns[column].isImplausible()) {
            table.implausibleColumns.push_back(column);
        }
        if (columns[column].hasOtherReferences()) {
            table.shiftedColumns.push_back(column);
        }
        finished.push_back(columns[column].finish());
    }
    if (otherData) {
        table.shiftedColumns = data ? columnsAfterReferences(file) : allColumns(file);
    }
    table.rows = TextTable(std::move(finished), width == 0 ? 0 : read.size() / width);
    if (!data) {
        table.rows.resizeRows(static_cast<std::size_t>(file.observationCount));
    }
    return table;
}

std::string stataNumberText(double value) {
    if (std::fabs(value) < plainIntegers && value == std::trunc(value)) {
        return NumberText::integer(static_cast<std::int64_t>(value));
    }
    constexpr int significantDigits = 10;
    return NumberText::general(value, significantDigits);
}

}  // namespace sorvane
