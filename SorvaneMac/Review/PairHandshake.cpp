#include "SorvaneMac/Review/PairHandshake.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::string_view greeting = "PAIR";
constexpr std::size_t codeLength = 4;

}  // namespace

PairHandshake::Verdict PairHandshake::take(std::span<const std::uint8_t> bytes,
                                           const std::optional<std::string>& pairCode) {
    const std::size_t taken = std::min(bytes.size(), missing());
    std::ranges::copy(bytes.first(taken), bytes_.begin() + static_cast<std::ptrdiff_t>(count_));
    count_ += taken;
    if (verdict_ == Verdict::waiting && count_ == length) {
        verdict_ = judge(pairCode);
    }
    return verdict_;
}

PairHandshake::Verdict PairHandshake::judge(const std::optional<std::string>& pairCode) const {
    const bool isValid = pairCode && pairCode->size() == codeLength;
    const std::string expected = std::string(greeting) + (isValid ? *pairCode : "0000");
    // Volatile, so that the loop is not left at the first difference.
    volatile std::uint8_t difference = 0;
    for (std::size_t at = 0; at < length; ++at) {
        difference = static_cast<std::uint8_t>(
            difference | (bytes_[at] ^ static_cast<std::uint8_t>(expected[at])));
    }
    return isValid && difference == 0 ? Verdict::accepted : Verdict::refused;
}

namespace ReviewWire {

std::string pairCode(std::uint32_t number) {
    const std::string digits = NumberText::integer(number % pairCodes);
    return std::string(codeLength - digits.size(), '0') + digits;
}

std::optional<std::array<std::uint8_t, 4>> lengthPrefix(std::uint64_t payloadSize) {
    if (payloadSize > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    const auto byte = [payloadSize](unsigned shift) {
        return static_cast<std::uint8_t>(payloadSize >> shift & 0xFF);
    };
    return std::array<std::uint8_t, 4>{byte(24), byte(16), byte(8), byte(0)};
}

}  // namespace ReviewWire

}  // namespace sorvane
