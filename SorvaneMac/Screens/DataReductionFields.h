#pragma once

#include <boost/describe/enum.hpp>
#include <cstdint>

#include "SorvaneCore/Analyses/HierarchicalLinkage.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class DataReductionMethod { pca, efa, omega, kmeans, hierarchical };
BOOST_DESCRIBE_ENUM(DataReductionMethod, pca, efa, omega, kmeans, hierarchical)

/// The selections of Data Reduction.
struct DataReductionFields {
    explicit DataReductionFields(FieldRegistry& fields);

    Field<DataReductionMethod> drMethod;
    Field<NameSet> drItems;
    /// Clusters.
    Field<std::int64_t> drK;
    Field<bool> drStandardize;
    Field<bool> drHasRun;
    Field<std::int64_t> drFactorCount;
    Field<HierarchicalLinkage> drLinkage;
};

}  // namespace sorvane
