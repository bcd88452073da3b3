#include "SorvaneCore/Dataset/TextKey.h"

#include <bit>
#include <cstring>

namespace sorvane {

namespace {

static_assert(std::endian::native == std::endian::little, "keys are packed from the low byte up");

__extension__ typedef unsigned __int128 Wide;

template <typename Word>
std::uint64_t wordAt(const char* bytes) {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// The 0 to 8 bytes of a text in one word, padded with zeros; never reads beyond the text.
std::uint64_t packed(const char* bytes, std::size_t size) {
    if (size >= 4) {
        return wordAt<std::uint32_t>(bytes) | wordAt<std::uint32_t>(bytes + size - 4)
                                                  << (8 * (size - 4));
    }
    if (size == 0) {
        return 0;
    }
    const std::size_t middle = size / 2;
    return wordAt<std::uint8_t>(bytes) | wordAt<std::uint8_t>(bytes + middle) << (8 * middle) |
           wordAt<std::uint8_t>(bytes + size - 1) << (8 * (size - 1));
}

/// Both halves of a 128-bit product, folded: every bit of the input reaches every bit.
std::uint64_t folded(std::uint64_t a, std::uint64_t b) {
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// Two independent multiply-and-fold hashes over words of the text; the last two words overlap.
TextKey hashed(std::string_view text) {
    constexpr std::uint64_t secrets[] = {0xA0761D6478BD642FU, 0xE7037ED1A0B428DBU,
                                         0x8EBC6AF09C88C6E3U, 0x589965CC75374CC3U};
    TextKey key{text.size(), ~text.size()};
    const auto mixIn = [&key, &secrets](const char* bytes) {
        const std::uint64_t first = wordAt<std::uint64_t>(bytes);
        const std::uint64_t second = wordAt<std::uint64_t>(bytes + 8);
        key.low = folded(first ^ secrets[0] ^ key.low, second ^ secrets[1]) + key.high;
        key.high = folded(second ^ secrets[2] ^ key.high, first ^ secrets[3]);
    };
    const char* bytes = text.data();
    const char* last = bytes + text.size() - 16;
    for (; bytes < last; bytes += 16) {
        mixIn(bytes);
    }
    mixIn(last);
    return {folded(key.low ^ secrets[2], secrets[3]), folded(key.high ^ secrets[0], secrets[1])};
}

}  // namespace

TextKey TextKey::of(std::string_view text) {
    const std::size_t size = text.size();
    if (size <= 8) {
        return {packed(text.data(), size), static_cast<std::uint64_t>(size) << 56};
    }
    if (size <= longestExact) {
        const std::uint64_t tail = wordAt<std::uint64_t>(text.data() + size - 8);
        return {wordAt<std::uint64_t>(text.data()),
                tail >> (8 * (16 - size)) | static_cast<std::uint64_t>(size) << 56};
    }
    TextKey key = hashed(text);
    key.high |= std::uint64_t{0xFF} << 56;
    return key;
}

}  // namespace sorvane
