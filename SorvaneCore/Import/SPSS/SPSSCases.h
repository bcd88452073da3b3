#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/SPSS/SPSSDictionary.h"

namespace sorvane {

/// Some cases in a row, each of so many slots of 8 bytes.
struct SPSSCaseBlock {
    const char* bytes = nullptr;
    std::size_t rowCount = 0;
    std::size_t slotCount = 0;
    /// Of the numbers; the bytes of strings are as they stand. A missing number is a NaN.
    ByteOrder numberOrder = ByteOrder::little;

    const char* slot(std::size_t row, std::size_t index) const {
        return bytes + (row * slotCount + index) * 8;
    }
    SPSSCaseBlock stretch(std::size_t firstRow, std::size_t rows) const {
        return {.bytes = slot(firstRow, 0),
                .rowCount = rows,
                .slotCount = slotCount,
                .numberOrder = numberOrder};
    }
};

/// Gives the cases of a system file, block by block. The header's count of cases is not looked at.
class SPSSCaseReader {
public:
    /// Input      `data` what follows the dictionary; both outlive the reader
    SPSSCaseReader(const SPSSDictionary& dictionary, std::string_view data);

    /// The next cases, valid until the next call; none at the end. A case that is cut off is left
    /// out.
    SPSSCaseBlock next();
    /// Whether the compressed data broke off inside a value, so that the file is unreadable.
    bool isDamaged() const { return isDamaged_; }
    /// How many cases are left at the most; the number itself where the data are not compressed.
    std::size_t mostCases() const;

private:
    SPSSCaseBlock nextPlain();
    SPSSCaseBlock nextCompressed();
    /// Obeys commands until a block is full; says how many slots were filled.
    std::size_t decompress();
    bool readLiteral(std::size_t slot, char* target);

    const SPSSDictionary& dictionary_;
    ByteReader reader_;
    std::size_t slotCount_;
    bool isDamaged_ = false;
    bool hasEnded_ = false;
    /// Commands of the current block that have not been obeyed.
    std::string_view commands_;
    std::vector<char> slots_;
    /// By command: the 8 bytes of the number that it stands for.
    std::vector<char> numbers_;
    std::vector<bool> isString_;
};

}  // namespace sorvane
