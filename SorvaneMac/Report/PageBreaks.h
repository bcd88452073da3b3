#pragma once

#include <optional>
#include <span>
#include <vector>

namespace sorvane {

/// A stretch of an endless page, measured downward.
struct Extent {
    double top = 0;
    double bottom = 0;

    double height() const { return bottom - top; }
    bool operator==(const Extent&) const = default;
};

/// A table whose heads are printed again above the rest of it.
struct RepeatedHeads {
    Extent heads{};
    Extent rows{};
};

/// What one page prints of the endless page.
struct PageSlice {
    Extent body{};
    /// Printed above the body.
    std::optional<Extent> heads{};

    bool operator==(const PageSlice&) const = default;
};

/// An endless page and where it must not be cut.
struct EndlessPage {
    double pageHeight = 0;
    /// Differences up to this are rounding.
    double tolerance = 0;
    /// Everything to be printed: lines of text, rows of tables.
    std::vector<Extent> content{};
    /// What stands on one page where it can.
    std::vector<Extent> together{};
    std::vector<RepeatedHeads> tables{};
};

/// Cuts an endless page into pages.
///
/// Method     a page begins with the first content that is not yet printed and ends as low as it
///            can without a cut through content or through what stands together; only what begins
///            a page and does not fit it is cut
/// Returns    slices that hold the top of every content exactly once; empty without content
/// Cost       n log n
std::vector<PageSlice> pageSlices(EndlessPage page);

}  // namespace sorvane
