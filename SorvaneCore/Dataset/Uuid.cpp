#include "SorvaneCore/Dataset/Uuid.h"

#include <random>
#include <unistd.h>

namespace sorvane {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::string_view dashedForm = "00000000-0000-0000-0000-000000000000";

int digitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

}  // namespace

Uuid Uuid::fresh() {
    Uuid result;
    // One call for all bytes: a table of many columns draws many identifiers.
    if (getentropy(result.bytes.data(), result.bytes.size()) != 0) {
        std::random_device device;
        for (std::uint8_t& byte : result.bytes) {
            byte = static_cast<std::uint8_t>(device());
        }
    }
    result.bytes[6] = static_cast<std::uint8_t>((result.bytes[6] & 0x0F) | 0x40);
    result.bytes[8] = static_cast<std::uint8_t>((result.bytes[8] & 0x3F) | 0x80);
    return result;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != dashedForm.size()) {
        return std::nullopt;
    }
    Uuid result;
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (dashedForm[i] == '-') {
            if (text[i] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const int value = digitValue(text[i]);
        if (value < 0) {
            return std::nullopt;
        }
        std::uint8_t& byte = result.bytes[nibble / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | value);
        ++nibble;
    }
    return result;
}

std::string Uuid::text() const {
    std::string result(dashedForm);
    std::size_t position = 0;
    for (const std::uint8_t byte : bytes) {
        if (result[position] == '-') {
            ++position;
        }
        result[position++] = hexDigits[byte >> 4];
        result[position++] = hexDigits[byte & 0x0F];
    }
    return result;
}

}  // namespace sorvane
