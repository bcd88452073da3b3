#include "SorvaneMac/Report/CRC32.h"

#include <array>
#include <cstddef>

namespace sorvane::CRC32 {
namespace {

constexpr std::uint32_t polynomial = 0xEDB88320;
constexpr std::size_t slices = 8;

using Table = std::array<std::uint32_t, 256>;

/// tables[k][b]: the effect of byte b followed by k zero bytes.
constexpr std::array<Table, slices> makeTables() {
    std::array<Table, slices> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1U) != 0 ? (value >> 1U) ^ polynomial : value >> 1U;
        }
        tables[0][byte] = value;
    }
    for (std::size_t slice = 1; slice < slices; ++slice) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[slice - 1][byte];
            tables[slice][byte] = (before >> 8U) ^ tables[0][before & 0xFFU];
        }
    }
    return tables;
}

constexpr std::array<Table, slices> tables = makeTables();

std::uint32_t byteAt(std::string_view data, std::size_t at) {
    return static_cast<unsigned char>(data[at]);
}

std::uint32_t littleEndian(std::string_view data, std::size_t at) {
    return byteAt(data, at) | byteAt(data, at + 1) << 8U | byteAt(data, at + 2) << 16U |
           byteAt(data, at + 3) << 24U;
}

}  // namespace

std::uint32_t checksum(std::string_view data) {
    std::uint32_t crc = ~std::uint32_t{0};
    std::size_t at = 0;
    for (; at + slices <= data.size(); at += slices) {
        const std::uint32_t low = crc ^ littleEndian(data, at);
        const std::uint32_t high = littleEndian(data, at + 4);
        crc = tables[7][low & 0xFFU] ^ tables[6][low >> 8U & 0xFFU] ^
              tables[5][low >> 16U & 0xFFU] ^ tables[4][low >> 24U] ^ tables[3][high & 0xFFU] ^
              tables[2][high >> 8U & 0xFFU] ^ tables[1][high >> 16U & 0xFFU] ^
              tables[0][high >> 24U];
    }
    for (; at < data.size(); ++at) {
        crc = (crc >> 8U) ^ tables[0][(crc ^ byteAt(data, at)) & 0xFFU];
    }
    return ~crc;
}

}  // namespace sorvane::CRC32
