#include "SorvaneCore/Prepare/Imputation/NearestDonors.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace sorvane {

NearestDonors::NearestDonors(std::span<const double> predictions, std::size_t count)
    : order_(predictions.size()), count_(std::min(count, predictions.size())) {
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::ranges::sort(order_, [&](std::size_t a, std::size_t b) {
        return predictions[a] < predictions[b] || (predictions[a] == predictions[b] && a < b);
    });
    for (std::size_t at = 0; at < order_.size(); ++at) {
        const double prediction = predictions[order_[at]];
        if (levels_.empty() || levels_.back().prediction != prediction) {
            levels_.push_back({.prediction = prediction, .first = at, .count = 0});
        }
        ++levels_.back().count;
    }
}

void NearestDonors::collect(const Level& level, double distance) {
    for (std::size_t i = 0; i < std::min(level.count, count_); ++i) {
        found_.emplace_back(distance, order_[level.first + i]);
    }
}

std::size_t NearestDonors::donor(double prediction, std::size_t choice) {
    constexpr double none = std::numeric_limits<double>::infinity();
    found_.clear();
    auto above = std::ranges::lower_bound(levels_, prediction, {}, &Level::prediction);
    auto below = above;
    double last = 0.0;
    for (;;) {
        const double toBelow =
            below == levels_.begin() ? none : std::abs(std::prev(below)->prediction - prediction);
        const double toAbove =
            above == levels_.end() ? none : std::abs(above->prediction - prediction);
        const double nearest = std::min(toBelow, toAbove);
        const bool isLast = below == levels_.begin() && above == levels_.end();
        // Levels at the same distance go on competing by the order of their donors.
        if (isLast || (found_.size() >= count_ && nearest > last)) {
            break;
        }
        last = nearest;
        // A distance can be beyond all numbers as well.
        if (above == levels_.end() || (below != levels_.begin() && toBelow <= toAbove)) {
            collect(*--below, nearest);
        } else {
            collect(*above++, nearest);
        }
    }
    const auto chosen = found_.begin() + static_cast<std::ptrdiff_t>(choice);
    std::ranges::nth_element(found_, chosen);
    return chosen->second;
}

}  // namespace sorvane
