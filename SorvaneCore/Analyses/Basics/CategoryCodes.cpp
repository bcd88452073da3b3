#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "SorvaneCore/Dataset/LabelOrder.h"

namespace sorvane {

CategoryCodes CategoryCodes::of(const TextColumn& column, std::span<const std::uint32_t> rows) {
    constexpr std::uint32_t unseen = std::numeric_limits<std::uint32_t>::max();
    CategoryCodes result;
    result.codes.resize(rows.size());
    std::vector<std::uint32_t> categoryOfLevel(column.levelCount(), unseen);
    // A column without codes has equal texts more than once among its levels.
    std::unordered_map<std::string_view, std::uint32_t> known;
    const auto categoryOf = [&](std::size_t level) {
        const std::string_view text = column.level(level);
        const auto [entry, isNew] =
            known.try_emplace(text, static_cast<std::uint32_t>(result.labels.size()));
        if (isNew) {
            result.labels.emplace_back(text);
        }
        return entry->second;
    };
    column.withCodes([&](const auto& levels) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            std::uint32_t& category = categoryOfLevel[levels[rows[i]]];
            if (category == unseen) {
                category = categoryOf(levels[rows[i]]);
            }
            result.codes[i] = category;
        }
    });
    return result;
}

void CategoryCodes::sortByLabel() {
    std::vector<std::string> byBytes = labels;
    std::ranges::sort(byBytes);
    std::vector<std::string> sorted;
    std::unordered_map<std::string_view, std::uint32_t> place;
    for (const std::size_t index : LabelOrder::caseInsensitive(byBytes)) {
        place[byBytes[index]] = static_cast<std::uint32_t>(sorted.size());
        sorted.push_back(byBytes[index]);
    }
    std::vector<std::uint32_t> placeOf;
    for (const std::string& label : labels) {
        placeOf.push_back(place[label]);
    }
    for (std::uint32_t& code : codes) {
        code = placeOf[code];
    }
    labels = std::move(sorted);
}

std::vector<std::int64_t> CategoryCodes::counts() const {
    std::vector<std::int64_t> counts(labels.size(), 0);
    for (const std::uint32_t code : codes) {
        ++counts[code];
    }
    return counts;
}

}  // namespace sorvane
