#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(MultilevelStructureKind value) {
    switch (value) {
        case MultilevelStructureKind::nested:
            return "Nested";
        case MultilevelStructureKind::crossed:
            return "Crossed";
        case MultilevelStructureKind::threeLevel:
            return "Three-level";
        case MultilevelStructureKind::growth:
            return "Growth";
        case MultilevelStructureKind::autoregressive:
            return "AR lag";
    }
    return "";
}

std::string_view displayName(MultilevelFamily value) {
    switch (value) {
        case MultilevelFamily::gaussian:
            return "Continuous (Gaussian)";
        case MultilevelFamily::binomial:
            return "Binary 0/1 (logistic)";
        case MultilevelFamily::poisson:
            return "Count (Poisson)";
        case MultilevelFamily::ordinal:
            return "Ordinal (cumulative logit)";
    }
    return "";
}

std::string_view displayName(MultilevelEstimator value) {
    switch (value) {
        case MultilevelEstimator::reml:
            return "REML";
        case MultilevelEstimator::ml:
            return "ML";
    }
    return "";
}

std::string_view displayName(MultilevelDFMethod value) {
    switch (value) {
        case MultilevelDFMethod::wald:
            return "Wald (normal)";
        case MultilevelDFMethod::containment:
            return "Containment t";
        case MultilevelDFMethod::satterthwaite:
            return "Satterthwaite t";
        case MultilevelDFMethod::kenwardRoger:
            return "Kenward–Roger t";
    }
    return "";
}

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
      mlMessage(fields, "mlMessage"),
      mlHasRun(fields, "mlHasRun"),
      mlResult(fields, "mlResult"),
      mlOrdinalResult(fields, "mlOrdinalResult") {}

}  // namespace sorvane
