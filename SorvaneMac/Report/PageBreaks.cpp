#include "SorvaneMac/Report/PageBreaks.h"

#include <algorithm>

namespace sorvane {
namespace {

std::optional<Extent> headsRepeatedAt(const EndlessPage& page, double top) {
    for (const RepeatedHeads& table : page.tables) {
        if (top > table.rows.top + page.tolerance && top < table.rows.bottom - page.tolerance) {
            return table.heads;
        }
    }
    return std::nullopt;
}

/// The lowest place from the limit up at which nothing is cut that begins below the page's top.
double lowestCut(const EndlessPage& page,
                 const std::vector<Extent>& obstacles,
                 double top,
                 double limit) {
    const auto first = std::ranges::upper_bound(obstacles, top + page.tolerance, {}, &Extent::top);
    double cut = limit;
    for (bool moved = true; moved;) {
        moved = false;
        for (auto at = first; at != obstacles.end() && at->top < cut - page.tolerance; ++at) {
            if (at->bottom > cut + page.tolerance) {
                cut = at->top;
                moved = true;
            }
        }
    }
    return cut;
}

}  // namespace

std::vector<PageSlice> pageSlices(EndlessPage page) {
    std::vector<Extent>& content = page.content;
    std::ranges::sort(content, {}, &Extent::top);
    std::vector<Extent> obstacles = content;
    obstacles.insert(obstacles.end(), page.together.begin(), page.together.end());
    std::ranges::sort(obstacles, {}, &Extent::top);

    std::vector<PageSlice> slices;
    for (auto next = content.begin(); next != content.end();) {
        PageSlice slice{.heads = headsRepeatedAt(page, next->top)};
        const double available = page.pageHeight - (slice.heads ? slice.heads->height() : 0);
        slice.body.top = next->top;
        slice.body.bottom = lowestCut(page, obstacles, next->top, next->top + available);
        next = std::ranges::lower_bound(next, content.end(), slice.body.bottom - page.tolerance, {},
                                        &Extent::top);
        slices.push_back(slice);
    }
    return slices;
}

}  // namespace sorvane
