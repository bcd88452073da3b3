#include "SorvaneMac/Screens/DataReductionFields.h"

namespace sorvane {

DataReductionFields::DataReductionFields(FieldRegistry& fields)
    : drMethod(fields, "drMethod", DataReductionMethod::pca, ResetRule::kept),
      drItems(fields, "drItems"),
      drK(fields, "drK", 3, ResetRule::kept),
      drStandardize(fields, "drStandardize", true, ResetRule::kept),
      drHasRun(fields, "drHasRun"),
      drFactorCount(fields, "drFactorCount", 2, ResetRule::kept),
      drLinkage(fields, "drLinkage", HierarchicalLinkage::ward, ResetRule::kept) {}

}  // namespace sorvane
