#include "SorvaneCore/Analyses/Categorical/ExpectedCounts.h"

#include <algorithm>
#include <cstddef>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ExpectedCounts {

double chiSquare(std::span<const std::int64_t> observed, std::span<const double> expected) {
    double sum = 0.0;
    for (std::size_t i = 0; i < observed.size(); ++i) {
        if (expected[i] > 0.0) {
            const double deviation = static_cast<double>(observed[i]) - expected[i];
            sum += deviation * deviation / expected[i];
        }
    }
    return sum;
}

std::int64_t small(std::span<const double> expected) {
    constexpr double smallest = 5.0;
    return std::ranges::count_if(expected, [](double count) { return count < smallest; });
}

std::string smallCells(std::int64_t count, std::int64_t cells) {
    return NumberText::integer(count) + " of " + NumberText::integer(cells) +
           " expected cells are below 5";
}

}  // namespace sorvane::ExpectedCounts
