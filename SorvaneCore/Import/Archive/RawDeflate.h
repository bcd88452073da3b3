#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sorvane::RawDeflate {

/// What a DEFLATE stream without a header of its own unpacks to.
///
/// Failure    damaged, cut off, shorter or longer than `size`, or `size` beyond what so few bytes
///            can hold, before memory is taken for it -> absent
std::optional<std::string> inflate(std::string_view compressed, std::uint64_t size);

/// Whether a stream of so many bytes can unpack to `size` bytes: one bit stands for 258 bytes at
/// the most.
bool canHold(std::size_t compressedSize, std::uint64_t size);

}  // namespace sorvane::RawDeflate
