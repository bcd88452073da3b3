#include "SorvaneCore/Analyses/Basics/GroupMoments.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane {

GroupMoments GroupMoments::of(std::span<const double> values, std::string name) {
    const double mean = SampleMoments::mean(values);
    return {.name = std::move(name),
            .n = static_cast<double>(values.size()),
            .mean = mean,
            .sumOfSquares = SampleMoments::sumOfSquares(values, mean)};
}

GroupMoments GroupMoments::ofDifferences(std::span<const double> a, std::span<const double> b) {
    std::vector<double> differences(a.size());
    std::ranges::transform(a, b, differences.begin(), std::minus());
    GroupMoments moments = of(differences);
    // Their rounding is that of the values, which can be far larger.
    const double largest =
        std::max(SampleMoments::largestMagnitude(a), SampleMoments::largestMagnitude(b));
    moments.sumOfSquares = SampleMoments::beyondRounding(moments.sumOfSquares, a.size(), largest);
    if (moments.sumOfSquares == 0.0 &&
        SampleMoments::beyondRounding(moments.mean * moments.mean, 1, largest) == 0.0) {
        moments.mean = 0.0;
    }
    return moments;
}

std::vector<GroupMoments> GroupMoments::ofGroups(std::span<const NamedNumericGroup> groups,
                                                 std::size_t fewest) {
    std::vector<GroupMoments> moments;
    for (const NamedNumericGroup& group : groups) {
        if (group.values.size() >= fewest) {
            moments.push_back(of(group.values, group.name));
        }
    }
    return moments;
}

double GroupMoments::total(std::span<const GroupMoments> groups) {
    double n = 0.0;
    for (const GroupMoments& group : groups) {
        n += group.n;
    }
    return n;
}

double GroupMoments::squaresWithin(std::span<const GroupMoments> groups) {
    double squares = 0.0;
    for (const GroupMoments& group : groups) {
        squares += group.sumOfSquares;
    }
    return squares;
}

double GroupMoments::squaresBetween(std::span<const GroupMoments> groups) {
    // From the first mean, so that a large offset costs no digits.
    const double origin = groups.empty() ? 0.0 : groups.front().mean;
    double shift = 0.0;
    for (const GroupMoments& group : groups) {
        shift += group.n * (group.mean - origin);
    }
    shift /= total(groups);
    double squares = 0.0;
    for (const GroupMoments& group : groups) {
        const double deviation = group.mean - origin - shift;
        squares += group.n * deviation * deviation;
    }
    return squares;
}

}  // namespace sorvane
