#pragma once

#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <string_view>

#include "SorvaneCore/Analyses/HierarchicalLinkage.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionRuns.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class DataReductionMethod { pca, efa, omega, kmeans, hierarchical };
BOOST_DESCRIBE_ENUM(DataReductionMethod, pca, efa, omega, kmeans, hierarchical)

/// The method's name as the user reads it.
std::string_view displayName(DataReductionMethod method);
std::string_view displayName(HierarchicalLinkage linkage);

/// The selections of Data Reduction, and each method as it was last run.
struct DataReductionFields {
    explicit DataReductionFields(FieldRegistry& fields);

    Field<DataReductionMethod> drMethod;
    Field<NameSet> drItems;
    /// How many clusters.
    Field<std::int64_t> drK;
    Field<bool> drStandardize;
    Field<bool> drHasRun;
    Field<std::int64_t> drFactorCount;
    Field<HierarchicalLinkage> drLinkage;
    Field<std::optional<ComponentsRun>> drComponentsRun;
    Field<std::optional<FactorsRun>> drFactorsRun;
    Field<std::optional<OmegaRun>> drOmegaRun;
    Field<std::optional<KMeansRun>> drKMeansRun;
    Field<std::optional<TreeRun>> drTreeRun;
};

}  // namespace sorvane
