#include "SorvaneCore/Analyses/Basics/RankStatistics.h"

#include "SorvaneCore/Analyses/Basics/OrderedClasses.h"
#include "SorvaneCore/Analyses/Basics/ValueCounts.h"

namespace sorvane::RankStatistics {

std::vector<double> averageRanks(std::span<const double> values) {
    const OrderedClasses classes = OrderedClasses::of(values);
    const std::vector<double> midranks = classes.midranks();
    std::vector<double> ranks(values.size());
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        ranks[i] = midranks[classes.classOf[i]];
    }
    return ranks;
}

double tieTerm(std::span<const double> values) {
    return OrderedClasses::of(values).tiedPairs();
}

std::vector<double> tieGroupSizes(std::span<const double> values) {
    std::vector<double> sizes;
    const ValueCounts sample(values);
    for (const std::uint64_t count : sample.counts()) {
        if (count > 1) {
            sizes.push_back(static_cast<double>(count));
        }
    }
    return sizes;
}

}  // namespace sorvane::RankStatistics
