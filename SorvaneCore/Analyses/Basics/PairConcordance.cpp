#include "SorvaneCore/Analyses/Basics/PairConcordance.h"

#include <algorithm>
#include <bit>
#include <vector>

#include "SorvaneCore/Analyses/Basics/ValueOrder.h"

namespace sorvane {

namespace {

constexpr std::size_t insertionRun = 16;

std::int64_t pairsOf(std::uint64_t count) {
    return static_cast<std::int64_t>(count * (count - 1) / 2);
}

std::int64_t tiedPairs(const OrderedClasses& classes) {
    std::int64_t pairs = 0;
    for (const std::uint32_t count : classes.counts) {
        pairs += pairsOf(count);
    }
    return pairs;
}

/// Sorts a short run and returns how many pairs stood in descending order.
std::int64_t insertionExchanges(std::span<std::uint32_t> run) {
    std::int64_t exchanges = 0;
    for (std::size_t i = 1; i < run.size(); ++i) {
        const std::uint32_t value = run[i];
        std::size_t place = i;
        for (; place > 0 && run[place - 1] > value; --place) {
            run[place] = run[place - 1];
        }
        run[place] = value;
        exchanges += static_cast<std::int64_t>(i - place);
    }
    return exchanges;
}

/// Merges two sorted runs and returns how many pairs across them stood in descending order.
std::int64_t mergeExchanges(std::span<const std::uint32_t> left,
                            std::span<const std::uint32_t> right,
                            std::uint32_t* merged) {
    std::size_t i = 0;
    std::size_t j = 0;
    std::int64_t exchanges = 0;
    while (i < left.size() && j < right.size()) {
        const bool takeRight = right[j] < left[i];
        *merged++ = takeRight ? right[j] : left[i];
        exchanges += takeRight ? static_cast<std::int64_t>(left.size() - i) : 0;
        j += takeRight ? 1U : 0U;
        i += takeRight ? 0U : 1U;
    }
    merged = std::ranges::copy(left.subspan(i), merged).out;
    std::ranges::copy(right.subspan(j), merged);
    return exchanges;
}

std::int64_t sortExchanges(std::vector<std::uint32_t> values) {
    std::int64_t exchanges = 0;
    const std::size_t count = values.size();
    for (std::size_t first = 0; first < count; first += insertionRun) {
        exchanges += insertionExchanges(
            std::span(values).subspan(first, std::min(insertionRun, count - first)));
    }
    std::vector<std::uint32_t> merged(count);
    for (std::size_t width = insertionRun; width < count; width *= 2) {
        const std::span<const std::uint32_t> from = values;
        for (std::size_t first = 0; first < count; first += 2 * width) {
            const std::size_t middle = std::min(first + width, count);
            const std::size_t end = std::min(middle + width, count);
            exchanges += mergeExchanges(from.subspan(first, middle - first),
                                        from.subspan(middle, end - middle), &merged[first]);
        }
        values.swap(merged);
    }
    return exchanges;
}

}  // namespace

PairConcordance PairConcordance::of(const OrderedClasses& x, const OrderedClasses& y) {
    const std::size_t count = x.size();
    const int yBits = static_cast<int>(std::bit_width(y.counts.size()));
    const int xBits = static_cast<int>(std::bit_width(x.counts.size()));
    std::vector<std::uint64_t> keys(count);
    for (std::size_t i = 0; i < count; ++i) {
        keys[i] = std::uint64_t{x.classOf[i]} << yBits | y.classOf[i];
    }
    ValueOrder::sortKeys(keys, xBits + yBits);

    std::vector<std::uint32_t> yInOrder(count);
    std::int64_t tiedInBoth = 0;
    std::uint64_t run = 0;
    const std::uint64_t yMask = (std::uint64_t{1} << yBits) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        yInOrder[i] = static_cast<std::uint32_t>(keys[i] & yMask);
        run = i > 0 && keys[i] == keys[i - 1] ? run + 1 : 0;
        tiedInBoth += static_cast<std::int64_t>(run);
    }
    PairConcordance result{
        .pairs = count > 0 ? pairsOf(count) : 0, .tiedInX = tiedPairs(x), .tiedInY = tiedPairs(y)};
    result.balance = result.pairs - result.tiedInX - result.tiedInY + tiedInBoth -
                     2 * sortExchanges(std::move(yInOrder));
    return result;
}

}  // namespace sorvane
