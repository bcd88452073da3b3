#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace sorvane {

/// A picture inside a document, with the size at which it is shown.
struct InlineFigure {
    std::vector<std::uint8_t> png{};
    /// In points.
    double width = 0;
    double height = 0;

    bool operator==(const InlineFigure&) const = default;
};

/// A PNG picture at its natural size, made smaller where it would not fit a page.
///
/// Method     the resolution in the file, otherwise 96 pixels an inch; at most 468 by 560 points,
///            what Word's one-inch margins leave with room for a caption
/// Failure    not a PNG picture -> absent
std::optional<InlineFigure> inlineFigure(std::span<const std::uint8_t> png);

}  // namespace sorvane
