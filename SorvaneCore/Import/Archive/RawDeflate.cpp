#include "SorvaneCore/Import/Archive/RawDeflate.h"

#include <libdeflate.h>
#include <memory>

namespace sorvane::RawDeflate {

namespace {

/// The most bytes that one byte of a stream stands for: 8 codes of one bit for length and distance
/// together take 2 bits, each for 258 bytes.
constexpr std::uint64_t bytesPerByte = 1032;

struct Closer {
    void operator()(libdeflate_decompressor* decompressor) const {
        libdeflate_free_decompressor(decompressor);
    }
};

}  // namespace

bool canHold(std::size_t compressedSize, std::uint64_t size) {
    return size / bytesPerByte <= compressedSize;
}

std::optional<std::string> inflate(std::string_view compressed, std::uint64_t size) {
    if (!canHold(compressed.size(), size)) {
        return std::nullopt;
    }
    const std::unique_ptr<libdeflate_decompressor, Closer> decompressor(
        libdeflate_alloc_decompressor());
    if (!decompressor) {
        return std::nullopt;
    }
    std::string bytes(size, '\0');
    // Without a place for the size found, a stream that ends early is refused too.
    const libdeflate_result result =
        libdeflate_deflate_decompress(decompressor.get(), compressed.data(), compressed.size(),
                                      bytes.data(), bytes.size(), nullptr);
    return result == LIBDEFLATE_SUCCESS ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace sorvane::RawDeflate
