#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace sorvane {

/// Finds, one after the other, the bytes of a text that can end or open a cell: the delimiter, the
/// quote and the line breaks. Looks at 64 bytes at a time and keeps what it found as a bit mask.
class SpecialBytes {
public:
    SpecialBytes(std::string_view text, char delimiter, std::size_t begin)
        : text_(text), delimiter_(delimiter), block_(begin) {
        mask_ = maskAt(block_);
    }

    /// The position of the next such byte, each reported once; the end of the text when none is
    /// left.
    std::size_t next() {
        while (mask_ == 0) {
            if (text_.size() - block_ <= blockSize) {
                return text_.size();
            }
            block_ += blockSize;
            mask_ = maskAt(block_);
        }
        const auto bit = static_cast<std::size_t>(std::countr_zero(mask_));
        mask_ &= mask_ - 1;
        return block_ + bit;
    }

private:
    static constexpr std::size_t blockSize = 64;

    bool isSpecial(char c) const { return c == delimiter_ || c == '"' || c == '\n' || c == '\r'; }

    std::uint64_t maskAt(std::size_t begin) const {
#if defined(__SSE2__)
        if (text_.size() - begin >= blockSize) {
            return vectorMask(text_.data() + begin);
        }
#endif
        std::uint64_t mask = 0;
        const std::size_t end = std::min(begin + blockSize, text_.size());
        for (std::size_t position = begin; position < end; ++position) {
            mask |= static_cast<std::uint64_t>(isSpecial(text_[position])) << (position - begin);
        }
        return mask;
    }

#if defined(__SSE2__)
    std::uint64_t vectorMask(const char* bytes) const {
        const __m128i delimiter = _mm_set1_epi8(delimiter_);
        const __m128i quote = _mm_set1_epi8('"');
        const __m128i lineFeed = _mm_set1_epi8('\n');
        const __m128i carriageReturn = _mm_set1_epi8('\r');
        std::uint64_t mask = 0;
        for (int part = 0; part < 4; ++part) {
            const __m128i sixteen =
                _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * part));
            const __m128i found = _mm_or_si128(
                _mm_or_si128(_mm_cmpeq_epi8(sixteen, delimiter), _mm_cmpeq_epi8(sixteen, quote)),
                _mm_or_si128(_mm_cmpeq_epi8(sixteen, lineFeed),
                             _mm_cmpeq_epi8(sixteen, carriageReturn)));
            mask |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(found)))
                    << (16 * part);
        }
        return mask;
    }
#endif

    std::string_view text_;
    char delimiter_;
    std::size_t block_;
    std::uint64_t mask_ = 0;
};

}  // namespace sorvane
