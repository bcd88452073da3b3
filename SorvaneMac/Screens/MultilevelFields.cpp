#include "SorvaneMac/Screens/MultilevelFields.h"

namespace sorvane {

MultilevelFields::MultilevelFields(FieldRegistry& fields)
    : mlStructure(fields, "mlStructure", MultilevelStructureKind::nested),
      mlFamily(fields, "mlFamily", MultilevelFamily::gaussian),
      mlDFMethod(fields, "mlDFMethod", MultilevelDFMethod::wald),
      mlOutcome(fields, "mlOutcome"),
      mlCluster(fields, "mlCluster"),
      mlCluster2(fields, "mlCluster2"),
      mlTime(fields, "mlTime"),
      mlPredictors(fields, "mlPredictors"),
      mlEstimator(fields, "mlEstimator", MultilevelEstimator::reml, ResetRule::kept),
      mlRandomSlope(fields, "mlRandomSlope"),
      mlCorrelateRandom(fields, "mlCorrelateRandom", true),
      mlHasRun(fields, "mlHasRun") {}

}  // namespace sorvane
