#include "SorvaneCore/Analyses/Basics/ValueOrder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace sorvane::ValueOrder {

namespace {

constexpr int digitBits = 11;
constexpr std::size_t digitCount = std::size_t{1} << digitBits;
constexpr int indexBits = 32;
/// Below this a comparison sort costs less than clearing the digit counts.
constexpr std::size_t fewKeys = 400;

/// Bits whose unsigned order is the order of the doubles.
std::uint64_t orderedBits(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);  // -0 becomes 0
    constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
    return (bits & signBit) != 0 ? ~bits : bits | signBit;
}

/// Stable sort by the `bits` bits from `firstBit` on.
void radixSort(std::vector<std::uint64_t>& keys, int firstBit, int bits) {
    std::vector<std::uint64_t> other(keys.size());
    for (int shift = firstBit; shift < firstBit + bits; shift += digitBits) {
        const std::uint64_t mask =
            (std::uint64_t{1} << std::min(digitBits, firstBit + bits - shift)) - 1;
        std::array<std::size_t, digitCount> starts{};
        for (const std::uint64_t key : keys) {
            ++starts[(key >> shift) & mask];
        }
        if (starts[(keys.front() >> shift) & mask] == keys.size()) {
            continue;
        }
        std::size_t next = 0;
        for (std::size_t& start : starts) {
            next += std::exchange(start, next);
        }
        for (const std::uint64_t key : keys) {
            other[starts[(key >> shift) & mask]++] = key;
        }
        keys.swap(other);
    }
}

/// Puts indexes whose leading bits agree into the order of their whole values.
void settleRun(std::span<std::uint32_t> run, std::span<const double> values) {
    const std::uint64_t first = orderedBits(values[run.front()]);
    const auto same = [values, first](std::uint32_t index) {
        return orderedBits(values[index]) == first;
    };
    if (std::ranges::all_of(run, same)) {
        return;
    }
    std::ranges::stable_sort(run, {},
                             [values](std::uint32_t index) { return orderedBits(values[index]); });
}

/// The leading bits of each value above the smallest one, over its index.
struct LeadingKeys {
    std::vector<std::uint64_t> keys;
    int bits = 0;
    bool exact = true;
};

LeadingKeys leadingKeys(std::span<const double> values) {
    std::uint64_t smallest = ~std::uint64_t{0};
    std::uint64_t largest = 0;
    for (const double value : values) {
        const std::uint64_t bits = orderedBits(value);
        smallest = std::min(smallest, bits);
        largest = std::max(largest, bits);
    }
    const int width = static_cast<int>(std::bit_width(largest - smallest));
    const int shift = std::max(0, width - indexBits);
    LeadingKeys result{.keys = std::vector<std::uint64_t>(values.size()),
                       .bits = width - shift,
                       .exact = shift == 0};
    for (std::size_t i = 0; i < values.size(); ++i) {
        result.keys[i] = ((orderedBits(values[i]) - smallest) >> shift) << indexBits | i;
    }
    return result;
}

}  // namespace

std::vector<std::uint32_t> ascending(std::span<const double> values) {
    std::vector<std::uint32_t> order(values.size());
    if (values.empty()) {
        return order;
    }
    LeadingKeys leading = leadingKeys(values);
    std::vector<std::uint64_t>& keys = leading.keys;
    if (keys.size() < fewKeys) {
        std::ranges::sort(keys);
    } else {
        radixSort(keys, indexBits, leading.bits);
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        order[i] = static_cast<std::uint32_t>(keys[i]);
    }
    if (leading.exact) {
        return order;
    }
    for (std::size_t begin = 0, end = 0; begin < keys.size(); begin = end) {
        for (end = begin + 1; end < keys.size(); ++end) {
            if (keys[end] >> indexBits != keys[begin] >> indexBits) {
                break;
            }
        }
        if (end - begin > 1) {
            settleRun(std::span(order).subspan(begin, end - begin), values);
        }
    }
    return order;
}

std::vector<double> sorted(std::span<const double> values) {
    std::vector<double> result(values.size());
    const std::vector<std::uint32_t> order = ascending(values);
    for (std::size_t i = 0; i < order.size(); ++i) {
        result[i] = values[order[i]];
    }
    return result;
}

void sortKeys(std::vector<std::uint64_t>& keys, int bits) {
    if (keys.size() < fewKeys) {
        std::ranges::sort(keys);
    } else {
        radixSort(keys, 0, bits);
    }
}

}  // namespace sorvane::ValueOrder
