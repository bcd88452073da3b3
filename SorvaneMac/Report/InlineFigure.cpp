#include "SorvaneMac/Report/InlineFigure.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace sorvane {
namespace {

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::array<std::uint8_t, 4> headerChunk{'I', 'H', 'D', 'R'};
constexpr std::array<std::uint8_t, 4> resolutionChunk{'p', 'H', 'Y', 's'};
constexpr std::array<std::uint8_t, 4> dataChunk{'I', 'D', 'A', 'T'};
constexpr std::size_t chunkOverhead = 12;

constexpr double maximumWidth = 468;
constexpr double maximumHeight = 560;
constexpr double pointsPerInch = 72;
constexpr double pointsPerMetre = pointsPerInch / 0.0254;

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24 | std::uint32_t{bytes[at + 1]} << 16 |
           std::uint32_t{bytes[at + 2]} << 8 | std::uint32_t{bytes[at + 3]};
}

bool isChunk(std::span<const std::uint8_t> png,
             std::size_t at,
             const std::array<std::uint8_t, 4>& name) {
    return std::ranges::equal(png.subspan(at + 4, 4), name);
}

/// Points a pixel, from the resolution chunk, which stands before the first data chunk.
double pointsPerPixel(std::span<const std::uint8_t> png) {
    std::size_t at = signature.size();
    while (at + chunkOverhead <= png.size() && !isChunk(png, at, dataChunk)) {
        const std::size_t length = bigEndian(png, at);
        if (isChunk(png, at, resolutionChunk) && at + chunkOverhead + 9 <= png.size()) {
            const std::uint32_t pixelsPerMetre = bigEndian(png, at + 8);
            const bool inMetres = png[at + 16] == 1;
            return inMetres && pixelsPerMetre > 0 ? pointsPerMetre / pixelsPerMetre
                                                  : pointsPerInch / 96;
        }
        at += chunkOverhead + length;
    }
    return pointsPerInch / 96;
}

}  // namespace

std::optional<InlineFigure> inlineFigure(std::span<const std::uint8_t> png) {
    constexpr std::size_t headerEnd = signature.size() + 16;
    if (png.size() < headerEnd || !std::ranges::equal(png.first(signature.size()), signature) ||
        !isChunk(png, signature.size(), headerChunk)) {
        return std::nullopt;
    }
    const double columns = bigEndian(png, 16);
    const double rows = bigEndian(png, 20);
    if (columns == 0 || rows == 0) {
        return std::nullopt;
    }
    const double natural = pointsPerPixel(png);
    const double scale = std::min({natural, maximumWidth / columns, maximumHeight / rows});
    return InlineFigure{.png = std::vector<std::uint8_t>(png.begin(), png.end()),
                        .width = columns * scale,
                        .height = rows * scale};
}

}  // namespace sorvane
