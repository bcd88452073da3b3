#include "SorvaneCore/Dataset/DistinctTexts.h"

#include <algorithm>
#include <bit>

namespace sorvane {

namespace {

constexpr std::size_t textsPerPart = 4096;
constexpr std::size_t mostParts = 1024;

/// The number of distinct keys, by a table of indexes (0 for an empty place) at most half full.
std::uint64_t distinctCount(const std::vector<TextKey>& keys, std::vector<std::uint32_t>& table) {
    const std::size_t places = std::bit_ceil(keys.size() * 2);
    table.assign(places, 0);
    std::uint64_t count = 0;
    for (std::size_t index = 0; index < keys.size(); ++index) {
        std::size_t place = keys[index].mixed() & (places - 1);
        while (table[place] != 0 && keys[table[place] - 1] != keys[index]) {
            place = (place + 1) & (places - 1);
        }
        if (table[place] == 0) {
            table[place] = static_cast<std::uint32_t>(index + 1);
            ++count;
        }
    }
    return count;
}

}  // namespace

DistinctTexts::DistinctTexts(std::size_t expected) {
    const std::size_t wanted = std::clamp(expected / textsPerPart, std::size_t{2}, mostParts);
    parts_.resize(std::bit_ceil(wanted));
    shift_ = 64 - std::countr_zero(parts_.size());
    for (std::vector<TextKey>& part : parts_) {
        part.reserve(expected / parts_.size() + expected / parts_.size() / 8);
    }
}

std::uint64_t DistinctTexts::count() const {
    std::vector<std::uint32_t> table;
    std::uint64_t count = 0;
    for (const std::vector<TextKey>& part : parts_) {
        count += distinctCount(part, table);
    }
    return count;
}

}  // namespace sorvane
