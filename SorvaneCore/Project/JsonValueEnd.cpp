#include "SorvaneCore/Project/JsonValueEnd.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace sorvane {

namespace {

constexpr std::size_t blockSize = 64;

/// The brackets, the backslash and the bar between them: '[' to ']' and '{' to '}' are the same
/// three bytes but for one bit.
bool isBracketOrBackslash(char c) {
    const int raised = static_cast<unsigned char>(c) | 0x20;
    return raised >= '{' && raised <= '}';
}

std::uint64_t anyBlockMask(std::string_view bytes) {
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isSpecial = bytes[i] == '"' || isBracketOrBackslash(bytes[i]);
        mask |= static_cast<std::uint64_t>(isSpecial) << i;
    }
    return mask;
}

#if defined(__SSE2__)
std::uint64_t fullBlockMask(const char* bytes) {
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i bit = _mm_set1_epi8(0x20);
    const __m128i lowest = _mm_set1_epi8('{');
    const __m128i range = _mm_set1_epi8('}' - '{');
    std::uint64_t mask = 0;
    for (int part = 0; part < 4; ++part) {
        const __m128i sixteen =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * part));
        const __m128i above = _mm_sub_epi8(_mm_or_si128(sixteen, bit), lowest);
        const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(sixteen, quote),
                                           _mm_cmpeq_epi8(_mm_min_epu8(above, range), above));
        mask |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(found)))
                << (16 * part);
    }
    return mask;
}
#endif

/// The bytes of a block that can begin, end or escape something, as bits.
std::uint64_t specialMask(std::string_view block) {
#if defined(__SSE2__)
    if (block.size() == blockSize) {
        return fullBlockMask(block.data());
    }
#endif
    return anyBlockMask(block);
}

}  // namespace

std::size_t JsonValueEnd::find(std::string_view bytes) {
    // The place of the byte that a backslash takes its meaning from; the backslash may be the last
    // byte of the former piece.
    std::size_t escaped = isEscaped_ ? 0 : std::string_view::npos;
    for (std::size_t block = 0; block < bytes.size(); block += blockSize) {
        std::uint64_t mask = specialMask(bytes.substr(block, blockSize));
        for (; mask != 0; mask &= mask - 1) {
            const std::size_t at = block + static_cast<std::size_t>(std::countr_zero(mask));
            if (at == escaped) {
                continue;
            }
            if (bytes[at] == '\\') {
                escaped = at + 1;
                continue;
            }
            meet(bytes[at]);
            if (isFound_ || isTooDeep()) {
                return at + 1;
            }
        }
    }
    isEscaped_ = escaped == bytes.size();
    return bytes.size();
}

void JsonValueEnd::meet(char special) {
    if (special == '"') {
        inString_ = !inString_;
    } else if (!inString_) {
        depth_ += special == '[' || special == '{' ? 1 : special == '|' ? 0 : -1;
    }
    isFound_ = depth_ <= 0 && !inString_;
}

}  // namespace sorvane
