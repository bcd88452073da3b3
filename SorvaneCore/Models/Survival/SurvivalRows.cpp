#include "SorvaneCore/Models/Survival/SurvivalRows.h"

#include <algorithm>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/ValueOrder.h"

namespace sorvane {

std::size_t SurvivalRows::eventCount() const {
    return static_cast<std::size_t>(std::ranges::count(hasEvent, 1));
}

std::size_t SurvivalRows::distinctTimes() const {
    std::size_t distinct = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        distinct += i == 0 || times[i] != times[i - 1] ? 1 : 0;
    }
    return distinct;
}

SurvivalRows SurvivalRows::of(const NumericColumn& time,
                              const NumericColumn& event,
                              std::span<const std::uint32_t> rows) {
    const std::vector<double> times = CompleteCases::gathered(time, rows);
    const std::vector<double> events = CompleteCases::gathered(event, rows);
    SurvivalRows result;
    result.rows.reserve(rows.size());
    result.times.reserve(rows.size());
    result.hasEvent.reserve(rows.size());
    for (const std::uint32_t i : ValueOrder::ascending(times)) {
        if (times[i] >= 0.0) {
            result.rows.push_back(rows[i]);
            result.times.push_back(times[i]);
            result.hasEvent.push_back(events[i] != 0.0 ? 1 : 0);
        }
    }
    return result;
}

}  // namespace sorvane
