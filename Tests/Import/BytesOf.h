#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <string>

namespace sorvane {

/// The bytes of a number, the lowest first.
template <typename Number>
std::string bytesOf(Number number) {
    const auto raw = std::bit_cast<std::array<char, sizeof(Number)>>(number);
    return {raw.begin(), raw.end()};
}

/// The bytes of a number, the highest first.
template <typename Number>
std::string bigEndianBytesOf(Number number) {
    std::string bytes = bytesOf(number);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

}  // namespace sorvane
