#pragma once

#include <cstdint>
#include <string_view>

namespace sorvane {

/// A text as 128 bits: the text itself where it fits, a hash of it otherwise.
///
/// A text of up to 15 bytes stands in the key with its length, so that equal keys mean equal texts.
/// A longer one is represented by 120 bits of hash under a length byte that no short text has:
/// among 10^9 distinct texts the chance of two with one key is below 10^-18.
struct TextKey {
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    bool operator==(const TextKey&) const = default;

    static TextKey of(std::string_view text);

    /// Whether the key holds the text itself.
    bool isExact() const { return high >> 56 <= longestExact; }
    /// The bits mixed, for a place in a table.
    std::uint64_t mixed() const {
        std::uint64_t bits = (low ^ (high << 23 | high >> 41)) * 0x9E3779B97F4A7C15U;
        bits ^= bits >> 32;
        return bits * 0xD6E8FEB86659FD93U;
    }

    static constexpr std::size_t longestExact = 15;
};

}  // namespace sorvane
