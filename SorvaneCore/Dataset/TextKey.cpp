#include "SorvaneCore/Dataset/TextKey.h"

namespace sorvane {

namespace {

__extension__ typedef unsigned __int128 Wide;

/// Both halves of a 128-bit product, folded: every bit of the input reaches every bit.
std::uint64_t folded(std::uint64_t a, std::uint64_t b) {
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// Two independent multiply-and-fold hashes over words of the text; the last two words overlap.
TextKey hashed(std::string_view text) {
    static constexpr std::uint64_t secrets[] = {0xA0761D6478BD642FU, 0xE7037ED1A0B428DBU,
                                                0x8EBC6AF09C88C6E3U, 0x589965CC75374CC3U};
    TextKey key{text.size(), ~text.size()};
    const auto mixIn = [&key](const char* bytes) {
        const std::uint64_t first = TextKey::wordAt<std::uint64_t>(bytes);
        const std::uint64_t second = TextKey::wordAt<std::uint64_t>(bytes + 8);
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

TextKey TextKey::ofLonger(std::string_view text) {
    const std::size_t size = text.size();
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
