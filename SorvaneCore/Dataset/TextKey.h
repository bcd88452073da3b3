#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace sorvane {

static_assert(std::endian::native == std::endian::little, "keys are packed from the low byte up");

/// A text as 128 bits: the text itself where it fits, a hash of it otherwise.
///
/// A text of up to 15 bytes stands in the key with its length, so that equal keys mean equal texts.
/// A longer one is represented by 120 bits of hash under a length byte that no short text has:
/// among 10^9 distinct texts the chance of two with one key is below 10^-18.
struct TextKey {
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    bool operator==(const TextKey&) const = default;

    static TextKey of(std::string_view text) {
        return text.size() <= 8
                   ? TextKey{packed(text.data(), text.size()), std::uint64_t{text.size()} << 56}
                   : ofLonger(text);
    }

    /// The 0 to 8 bytes of a text in one word, padded with zeros; never reads beyond the text.
    static std::uint64_t packed(const char* bytes, std::size_t size) {
        if (size == 0) {
            return 0;
        }
        if (size < 4) {
            const std::size_t middle = size / 2;
            return wordAt<std::uint8_t>(bytes) |
                   wordAt<std::uint8_t>(bytes + middle) << (8 * middle) |
                   wordAt<std::uint8_t>(bytes + size - 1) << (8 * (size - 1));
        }
        return wordAt<std::uint32_t>(bytes) | wordAt<std::uint32_t>(bytes + size - 4)
                                                  << (8 * (size - 4));
    }
    template <typename Word>
    static std::uint64_t wordAt(const char* bytes) {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    /// Whether the key holds the text itself.
    bool isExact() const { return high >> 56 <= longestExact; }
    /// The bits mixed, for a place in a table.
    std::uint64_t mixed() const {
        std::uint64_t bits = (low ^ (high << 23 | high >> 41)) * 0x9E3779B97F4A7C15U;
        bits ^= bits >> 32;
        return bits * 0xD6E8FEB86659FD93U;
    }

    static constexpr std::size_t longestExact = 15;

private:
    static TextKey ofLonger(std::string_view text);
};

}  // namespace sorvane
