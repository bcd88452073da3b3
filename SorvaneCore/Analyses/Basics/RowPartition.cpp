#include "SorvaneCore/Analyses/Basics/RowPartition.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane {

RowPartition::RowPartition(std::span<const std::uint32_t> groupOfRow, std::size_t groups)
    : starts_(groups + 1, 0), placeOf_(groupOfRow.size()) {
    for (const std::uint32_t group : groupOfRow) {
        ++starts_[group + 1];
    }
    std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
    std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
    for (std::size_t row = 0; row < groupOfRow.size(); ++row) {
        placeOf_[row] = static_cast<std::uint32_t>(next[groupOfRow[row]]++);
    }
}

std::size_t RowPartition::smallestGroup() const {
    std::size_t smallest = std::numeric_limits<std::size_t>::max();
    for (std::size_t group = 0; group < groupCount(); ++group) {
        smallest = std::min(smallest, groupSize(group));
    }
    return smallest;
}

std::vector<double> RowPartition::arranged(std::span<const double> values) const {
    std::vector<double> result(values.size());
    for (std::size_t row = 0; row < values.size(); ++row) {
        result[placeOf_[row]] = values[row];
    }
    return result;
}

std::vector<double> RowPartition::means(std::span<const double> arranged) const {
    std::vector<double> result;
    for (std::size_t i = 0; i < groupCount(); ++i) {
        result.push_back(SampleMoments::mean(group(arranged, i)));
    }
    return result;
}

}  // namespace sorvane
