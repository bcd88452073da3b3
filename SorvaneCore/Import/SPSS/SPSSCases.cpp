#include "SorvaneCore/Import/SPSS/SPSSCases.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace sorvane {

namespace {

/// What is decompressed at a time stays in the cache while columns read it.
constexpr std::size_t slotsPerBlock = std::size_t{1} << 18;
constexpr std::string_view blanks = "        ";

enum Command : std::uint8_t {
    padding = 0,
    lastNumber = 251,
    endOfData = 252,
    literal = 253,
    blankString = 254,
    missingNumber = 255,
};

}  // namespace

SPSSCaseReader::SPSSCaseReader(const SPSSDictionary& dictionary, std::string_view data)
    : dictionary_(dictionary), reader_(data), slotCount_(dictionary.variables.size()) {
    if (!dictionary.compressed || slotCount_ == 0) {
        return;
    }
    const std::size_t rowsPerBlock = std::max<std::size_t>(slotsPerBlock / slotCount_, 1);
    const std::size_t rows = std::clamp<std::size_t>(mostCases(), 1, rowsPerBlock);
    slots_.resize(rows * slotCount_ * SPSSDictionary::slotSize);
    for (std::size_t command = 0; command <= missingNumber; ++command) {
        const double number = command <= lastNumber ? static_cast<double>(command) - dictionary.bias
                              : command == blankString ? ByteReader::number<double>(blanks.data())
                                                       : std::numeric_limits<double>::quiet_NaN();
        const auto bytes = std::bit_cast<std::array<char, SPSSDictionary::slotSize>>(number);
        numbers_.insert(numbers_.end(), bytes.begin(), bytes.end());
    }
    for (const SPSSDictionary::VariableRecord& variable : dictionary.variables) {
        isString_.push_back(variable.isString());
    }
}

std::size_t SPSSCaseReader::mostCases() const {
    if (slotCount_ == 0) {
        return 0;
    }
    const std::size_t slotsLeft = dictionary_.compressed
                                      ? reader_.remaining()
                                      : reader_.remaining() / SPSSDictionary::slotSize;
    return slotsLeft / slotCount_;
}

SPSSCaseBlock SPSSCaseReader::next() {
    if (slotCount_ == 0 || hasEnded_) {
        return {};
    }
    return dictionary_.compressed ? nextCompressed() : nextPlain();
}

SPSSCaseBlock SPSSCaseReader::nextPlain() {
    const std::size_t rows = mostCases();
    const auto bytes =
        reader_.readBytes(static_cast<std::int64_t>(rows * slotCount_ * SPSSDictionary::slotSize));
    return {.bytes = bytes->data(),
            .rowCount = rows,
            .slotCount = slotCount_,
            .numberOrder = dictionary_.numberOrder()};
}

SPSSCaseBlock SPSSCaseReader::nextCompressed() {
    const std::size_t rows = decompress() / slotCount_;
    return {.bytes = slots_.data(),
            .rowCount = isDamaged_ ? 0 : rows,
            .slotCount = slotCount_,
            .numberOrder = ByteOrder::little};
}

std::size_t SPSSCaseReader::decompress() {
    const std::size_t slotsWanted = slots_.size() / SPSSDictionary::slotSize;
    std::size_t slot = 0;
    std::size_t column = 0;
    while (slot < slotsWanted) {
        if (commands_.empty()) {
            commands_ = reader_.readBytes(SPSSDictionary::slotSize).value_or(std::string_view());
            if (commands_.empty()) {
                break;
            }
        }
        const auto command = static_cast<std::uint8_t>(commands_.front());
        commands_.remove_prefix(1);
        char* target = slots_.data() + slot * SPSSDictionary::slotSize;
        if (command == padding) {
            continue;
        }
        if (command == endOfData) {
            break;
        }
        if (command != literal) {
            const bool isString = isString_[column];
            std::memcpy(
                target,
                isString ? blanks.data() : numbers_.data() + command * SPSSDictionary::slotSize,
                SPSSDictionary::slotSize);
        } else if (!readLiteral(column, target)) {
            break;
        }
        ++slot;
        column = column + 1 == slotCount_ ? 0 : column + 1;
    }
    hasEnded_ = slot < slotsWanted;
    return slot;
}

bool SPSSCaseReader::readLiteral(std::size_t slot, char* target) {
    const std::optional<std::string_view> bytes = reader_.readBytes(SPSSDictionary::slotSize);
    isDamaged_ = !bytes;
    if (isDamaged_) {
        return false;
    }
    std::memcpy(target, bytes->data(), SPSSDictionary::slotSize);
    if (dictionary_.bigEndian && !isString_[slot]) {
        std::reverse(target, target + SPSSDictionary::slotSize);
    }
    return true;
}

}  // namespace sorvane
