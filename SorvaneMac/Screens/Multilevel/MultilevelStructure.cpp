#include "SorvaneMac/Screens/Multilevel/MultilevelStructure.h"

namespace sorvane::MultilevelStructure {

bool hasSecondGrouping(const MultilevelFields& fields) {
    const MultilevelStructureKind structure = fields.mlStructure.get();
    return structure == MultilevelStructureKind::crossed ||
           structure == MultilevelStructureKind::threeLevel;
}

bool isGrowth(const MultilevelFields& fields) {
    return fields.mlStructure.get() == MultilevelStructureKind::growth;
}

bool hasTime(const MultilevelFields& fields) {
    return isGrowth(fields) || fields.mlStructure.get() == MultilevelStructureKind::autoregressive;
}

bool isOrdinal(const MultilevelFields& fields) {
    return fields.mlFamily.get() == MultilevelFamily::ordinal;
}

bool allowsRandomSlope(const MultilevelFields& fields) {
    return fields.mlStructure.get() == MultilevelStructureKind::nested && !isOrdinal(fields);
}

NameSet placed(const MultilevelFields& fields) {
    NameSet names = {fields.mlOutcome->name, fields.mlCluster->name};
    if (hasSecondGrouping(fields)) {
        names.insert(fields.mlCluster2->name);
    }
    if (isGrowth(fields)) {
        names.insert(fields.mlTime->name);
    }
    names.erase("");
    return names;
}

}  // namespace sorvane::MultilevelStructure
