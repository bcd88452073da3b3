#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"

namespace sorvane {

/// How often the levels of two factors meet, by level of the first.
struct LevelMeetings {
    struct Meeting {
        std::uint32_t level = 0;
        double rows = 0.0;
    };
    /// Those of level i from starts[i] to starts[i + 1], by level of the second factor.
    std::vector<std::size_t> starts{};
    std::vector<Meeting> meetings{};

    /// Whether each level of the first factor meets one of the second alone.
    bool isNested() const { return meetings.size() + 1 == starts.size(); }
    /// The place of a meeting that there is.
    std::size_t find(std::uint32_t first, std::uint32_t second) const;

    static LevelMeetings of(const ClusterCodes& first, const ClusterCodes& second);
};

}  // namespace sorvane
