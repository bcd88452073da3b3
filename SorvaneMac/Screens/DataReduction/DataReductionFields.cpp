#include "SorvaneMac/Screens/DataReduction/DataReductionFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(DataReductionMethod method) {
    switch (method) {
        case DataReductionMethod::pca:
            return "Principal component analysis";
        case DataReductionMethod::efa:
            return "Exploratory factor analysis";
        case DataReductionMethod::omega:
            return "McDonald's omega";
        case DataReductionMethod::kmeans:
            return "K-means clustering";
        case DataReductionMethod::hierarchical:
            return "Hierarchical clustering";
    }
    return {};
}

std::string_view displayName(HierarchicalLinkage linkage) {
    switch (linkage) {
        case HierarchicalLinkage::ward:
            return "Ward";
        case HierarchicalLinkage::complete:
            return "Complete";
        case HierarchicalLinkage::average:
            return "Average";
        case HierarchicalLinkage::single:
            return "Single";
    }
    return {};
}

DataReductionFields::DataReductionFields(FieldRegistry& fields)
    : drMethod(fields, "drMethod", DataReductionMethod::pca, ResetRule::kept),
      drItems(fields, "drItems"),
      drK(fields, "drK", 3, ResetRule::kept),
      drStandardize(fields, "drStandardize", true, ResetRule::kept),
      drHasRun(fields, "drHasRun"),
      drFactorCount(fields, "drFactorCount", 2, ResetRule::kept),
      drLinkage(fields, "drLinkage", HierarchicalLinkage::ward, ResetRule::kept),
      drComponentsRun(fields, "drComponentsRun"),
      drFactorsRun(fields, "drFactorsRun"),
      drOmegaRun(fields, "drOmegaRun"),
      drKMeansRun(fields, "drKMeansRun"),
      drTreeRun(fields, "drTreeRun") {}

}  // namespace sorvane
