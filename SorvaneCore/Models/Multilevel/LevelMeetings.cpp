#include "SorvaneCore/Models/Multilevel/LevelMeetings.h"

#include <algorithm>

namespace sorvane {

std::size_t LevelMeetings::find(std::uint32_t first, std::uint32_t second) const {
    const auto begin = meetings.begin() + static_cast<std::ptrdiff_t>(starts[first]);
    const auto end = meetings.begin() + static_cast<std::ptrdiff_t>(starts[first + 1]);
    const auto found = std::ranges::lower_bound(begin, end, second, {}, &Meeting::level);
    return static_cast<std::size_t>(found - meetings.begin());
}

LevelMeetings LevelMeetings::of(const ClusterCodes& first, const ClusterCodes& second) {
    std::vector<std::uint64_t> pairs(first.codes.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs[i] = (static_cast<std::uint64_t>(first.codes[i]) << 32U) | second.codes[i];
    }
    std::ranges::sort(pairs);
    LevelMeetings result;
    result.starts.assign(first.count() + 1, 0);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (i > 0 && pairs[i] == pairs[i - 1]) {
            result.meetings.back().rows += 1.0;
            continue;
        }
        result.meetings.push_back({.level = static_cast<std::uint32_t>(pairs[i]), .rows = 1.0});
        ++result.starts[(pairs[i] >> 32U) + 1];
    }
    for (std::size_t level = 0; level < first.count(); ++level) {
        result.starts[level + 1] += result.starts[level];
    }
    return result;
}

}  // namespace sorvane
