#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Times and what ended them, in ascending order of time, ties in row order.
struct SurvivalRows {
    /// Where each stands in the table.
    std::vector<std::uint32_t> rows{};
    std::vector<double> times{};
    /// 1 for an event, 0 for a censored time.
    std::vector<std::uint8_t> hasEvent{};

    std::size_t count() const { return rows.size(); }
    std::size_t eventCount() const;
    std::size_t distinctTimes() const;

    /// Those of the given rows whose time is not negative.
    ///
    /// Input      rows that have a number in both columns; an event is any number but 0
    /// Cost       O(n)
    static SurvivalRows of(const NumericColumn& time,
                           const NumericColumn& event,
                           std::span<const std::uint32_t> rows);
};

}  // namespace sorvane
