#include "SorvaneCore/Analyses/Basics/GroupedProducts.h"

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane {

std::vector<GroupedVariable> GroupedVariable::of(std::span<const NumericColumn> columns,
                                                 std::span<const std::uint32_t> rows,
                                                 const RowPartition& partition) {
    std::vector<GroupedVariable> variables;
    for (const NumericColumn& column : columns) {
        GroupedVariable& variable = variables.emplace_back();
        variable.values = partition.arranged(CompleteCases::gathered(column, rows));
        variable.groupMeans = partition.means(variable.values);
        variable.grandMean = SampleMoments::mean(variable.values);
    }
    return variables;
}

GroupedProducts GroupedProducts::of(std::span<const GroupedVariable> variables,
                                    const RowPartition& partition) {
    const std::size_t p = variables.size();
    GroupedProducts sums{.withinGroups = std::vector<double>(p * p, 0.0),
                         .betweenGroups = std::vector<double>(p * p, 0.0)};
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            const GroupedVariable& a = variables[i];
            const GroupedVariable& b = variables[j];
            for (std::size_t g = 0; g < partition.groupCount(); ++g) {
                sums.withinGroups[i * p + j] += SampleMoments::sumOfProducts(
                    partition.group(std::span(a.values), g), a.groupMeans[g],
                    partition.group(std::span(b.values), g), b.groupMeans[g]);
                sums.betweenGroups[i * p + j] += static_cast<double>(partition.groupSize(g)) *
                                                 (a.groupMeans[g] - a.grandMean) *
                                                 (b.groupMeans[g] - b.grandMean);
            }
            sums.withinGroups[j * p + i] = sums.withinGroups[i * p + j];
            sums.betweenGroups[j * p + i] = sums.betweenGroups[i * p + j];
        }
    }
    return sums;
}

}  // namespace sorvane
