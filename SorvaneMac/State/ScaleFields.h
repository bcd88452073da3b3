#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/ScaleScoring.h"
#include "SorvaneCore/Import/ScaleItemClassifier.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The item set and the options of the scale; shared by adoption, the item seeds and the screens.
struct ScaleFields {
    explicit ScaleFields(FieldRegistry& fields);

    Field<std::string> constructName;
    Field<ScaleScoreMethod> scaleScoreMethod;
    Field<ReliabilityMissingDataRule> reliabilityMissingDataRule;
    Field<double> minimumItemCompletion;
    Field<std::vector<ScaleItemClassification>> scaleClassifications;
    Field<NameSet> reverseCodedItemNames;
    Field<NameSet> unreliableItemNames;
    Field<std::string> scaleScoreVariableName;
    Field<std::optional<std::string>> scaleScoreCreationMessage;
};

}  // namespace sorvane
