#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace sorvane {

enum class ByteOrder { little, big };

/// Walks bytes from front to back and never reads beyond them: a read that does not fit gives
/// nothing and stays where it is.
class ByteReader {
public:
    explicit ByteReader(std::string_view bytes, std::size_t position = 0)
        : bytes_(bytes), position_(position < bytes.size() ? position : bytes.size()) {}

    std::size_t position() const { return position_; }
    std::size_t remaining() const { return bytes_.size() - position_; }
    std::string_view rest() const { return bytes_.substr(position_); }

    /// The next `count` bytes.
    std::optional<std::string_view> readBytes(std::int64_t count) {
        if (count < 0 || !std::in_range<std::size_t>(count) ||
            static_cast<std::size_t>(count) > remaining()) {
            return std::nullopt;
        }
        const std::string_view found = bytes_.substr(position_, static_cast<std::size_t>(count));
        position_ += found.size();
        return found;
    }

    /// The next number of that type, whole or floating.
    template <typename Number>
    std::optional<Number> read(ByteOrder order = ByteOrder::little) {
        const std::optional<std::string_view> found = readBytes(sizeof(Number));
        return found ? std::optional<Number>(number<Number>(found->data(), order)) : std::nullopt;
    }

    /// Whether the bytes at the position are the tag.
    bool peekMatches(std::string_view tag) const { return rest().starts_with(tag); }
    /// Moves past the tag if it stands at the position; does not search.
    bool skipPast(std::string_view tag) {
        const bool matches = peekMatches(tag);
        position_ += matches ? tag.size() : 0;
        return matches;
    }

    /// The number that stands at `bytes`.
    template <typename Number>
    static Number number(const char* bytes, ByteOrder order = ByteOrder::little) {
        std::array<char, sizeof(Number)> raw;
        std::memcpy(raw.data(), bytes, raw.size());
        if ((order == ByteOrder::little) != (std::endian::native == std::endian::little)) {
            for (std::size_t i = 0; i < raw.size() / 2; ++i) {
                std::swap(raw[i], raw[raw.size() - 1 - i]);
            }
        }
        return std::bit_cast<Number>(raw);
    }

private:
    std::string_view bytes_;
    std::size_t position_;
};

}  // namespace sorvane
