#include "SorvaneCore/Analyses/Basics/ValueCounts.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Analyses/Basics/ValueOrder.h"

namespace sorvane {

ValueCounts::ValueCounts(std::span<const double> sample) {
    appendSample(sample);
}

ValueCounts::ValueCounts(const NumericColumn& column) {
    if (!column.hasCodes()) {
        appendSample(column.present());
        return;
    }
    const std::vector<std::uint64_t> levelCounts = column.levelCounts();
    const std::span<const std::optional<double>> levels = column.levels();
    std::vector<double> values;
    std::vector<std::uint64_t> counts;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        if (levels[level] && levelCounts[level] > 0) {
            values.push_back(*levels[level]);
            counts.push_back(levelCounts[level]);
        }
    }
    for (const std::uint32_t index : ValueOrder::ascending(values)) {
        append(values[index], counts[index]);
    }
}

void ValueCounts::appendSample(std::span<const double> sample) {
    for (const double value : ValueOrder::sorted(sample)) {
        append(value, 1);
    }
}

void ValueCounts::append(double value, std::uint64_t count) {
    total_ += count;
    if (!values_.empty() && values_.back() == value) {
        counts_.back() += count;
        ends_.back() = total_;
        return;
    }
    values_.push_back(value);
    counts_.push_back(count);
    ends_.push_back(total_);
}

double ValueCounts::at(std::uint64_t position) const {
    const auto end = std::ranges::upper_bound(ends_, position);
    return values_[static_cast<std::size_t>(end - ends_.begin())];
}

double ValueCounts::medianOf(std::uint64_t first, std::uint64_t length) const {
    const double upper = at(first + length / 2);
    return length % 2 == 1 ? upper : (at(first + length / 2 - 1) + upper) / 2.0;
}

double ValueCounts::mean() const {
    const auto n = static_cast<double>(total_);
    double sum = 0.0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        sum += static_cast<double>(counts_[i]) * values_[i];
    }
    const double rough = sum / n;
    if (!std::isfinite(rough)) {
        return rough;
    }
    return rough + leftOfMean(rough);
}

double ValueCounts::leftOfMean(double mean) const {
    double left = 0.0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        left += static_cast<double>(counts_[i]) * (values_[i] - mean);
    }
    return left / static_cast<double>(total_);
}

double ValueCounts::sumOfSquares(double mean) const {
    const double left = leftOfMean(mean);
    double sum = 0.0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const double deviation = values_[i] - mean - left;
        sum += static_cast<double>(counts_[i]) * (deviation * deviation);
    }
    return SampleMoments::beyondRounding(sum, total_, std::abs(mean));
}

double ValueCounts::sumOfCubes(double mean, double scale) const {
    const double left = leftOfMean(mean);
    double sum = 0.0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const double deviation = (values_[i] - mean - left) / scale;
        sum += static_cast<double>(counts_[i]) * (deviation * deviation * deviation);
    }
    return sum;
}

}  // namespace sorvane
