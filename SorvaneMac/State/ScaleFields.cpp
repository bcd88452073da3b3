#include "SorvaneMac/State/ScaleFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

ScaleFields::ScaleFields(FieldRegistry& fields)
    : constructName(fields, "constructName", "", ResetRule::kept),
      scaleScoreMethod(fields, "scaleScoreMethod", ScaleScoreMethod::mean, ResetRule::kept),
      reliabilityMissingDataRule(fields,
                                 "reliabilityMissingDataRule",
                                 ReliabilityMissingDataRule::listwiseDeletion,
                                 ResetRule::kept),
      minimumItemCompletion(fields, "minimumItemCompletion", 0.8, ResetRule::kept),
      scaleClassifications(fields, "scaleClassifications", {}, ResetRule::kept),
      reverseCodedItemNames(fields, "reverseCodedItemNames", {}, ResetRule::kept),
      unreliableItemNames(fields, "unreliableItemNames", {}, ResetRule::kept),
      scaleScoreVariableName(fields, "scaleScoreVariableName", "Scale score", ResetRule::kept),
      scaleScoreCreationMessage(
          fields, "scaleScoreCreationMessage", std::nullopt, ResetRule::kept) {}

}  // namespace sorvane
