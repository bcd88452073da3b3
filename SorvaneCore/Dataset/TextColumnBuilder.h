#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// Gathers the cells of a column, in row order, into its levels and codes.
///
/// A column is judged by its first rows alone: when more than half of them are distinct, and not a
/// few long texts are what repeats, a dictionary does not pay and the rows stand for themselves. The
/// form, and the order of the levels
/// (by first appearance), therefore depend on the cells only, however they were handed over.
class TextColumnBuilder {
public:
    void append(std::string_view cell);

    /// Appends the cell so many times.
    void appendRepeated(std::string_view cell, std::size_t count);

    /// Whether cells are placed in a dictionary, so that their codes stay valid; false from the
    /// time when the column was found to be mostly distinct.
    bool hasCodes() const { return !holdsRows(); }
    /// Appends a cell and gives its code.
    ///
    /// Input      a column with codes; afterwards it may have none
    std::uint32_t appendCoded(std::string_view cell);
    /// Appends the cell that has this code.
    ///
    /// Input      a column with codes, a code that it gave
    void appendCode(std::uint32_t code);

    /// Places the cells of a column without codes in a dictionary after all, for good.
    void encode();

    /// The cells of `next` after these.
    void append(TextColumnBuilder&& next);
    /// How many rows there may be in the end, so that storage is laid out once.
    void expectRows(std::size_t rows) { expectedRows_ = rows; }

    std::size_t size() const { return rowCount_; }
    /// The bytes of its texts: each distinct one once, or those of all rows where there are no codes.
    std::size_t textBytes() const { return levels_.byteCount(); }

    /// The column of all cells so far; the builder is empty afterwards.
    std::shared_ptr<const TextColumn> finish();

    /// The rows by which a column is judged.
    static constexpr std::size_t judgedRows = 16384;

private:
    struct Entry {
        std::uint64_t key = 0;
        std::uint32_t code = 0;
    };
    static constexpr std::uint32_t noCode = ~std::uint32_t{0};

    std::uint32_t codeOf(std::string_view cell);
    std::uint32_t crowdedCodeOf(std::string_view cell);
    void growTable();
    void place(const Entry& entry);
    void storeCode(std::uint32_t code);
    void widenCodes();
    bool isUndecided() const { return rowCount_ < judgedRows; }
    bool holdsRows() const { return std::holds_alternative<std::monostate>(codes_); }
    void judge();
    bool repeatsLongTexts() const;
    void reserveRows();
    void appendRemapped(const TextColumnBuilder& next, std::size_t firstRow);
    std::string_view cell(std::size_t row) const;

    TextList levels_;
    TextColumn::Codes codes_ = std::vector<std::uint8_t>();
    std::size_t rowCount_ = 0;
    std::size_t expectedRows_ = 0;
    std::vector<Entry> table_;
    /// The codes of texts for which the table had no place near their own.
    std::map<std::string, std::uint32_t, std::less<>> crowded_;
};

}  // namespace sorvane
