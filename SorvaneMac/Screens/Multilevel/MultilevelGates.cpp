#include "SorvaneMac/Screens/Multilevel/MultilevelGates.h"

#include "SorvaneMac/Screens/Multilevel/MultilevelGuide.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelStructure.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane::MultilevelGates {

namespace {

using MultilevelStructure::allowsRandomSlope;
using MultilevelStructure::hasSecondGrouping;
using MultilevelStructure::hasTime;
using MultilevelStructure::isGrowth;
using MultilevelStructure::isOrdinal;
using MultilevelStructure::placed;
using VariableLists::List;
using VariableLists::numericVariables;

std::optional<Gate> blankSelection(const MultilevelFields& fields) {
    if (fields.mlOutcome->isBlank() || fields.mlCluster->isBlank()) {
        return Gate{.title = "Set an outcome and a grouping",
                    .lead = "",
                    .text = std::string(MultilevelGuide::hint)};
    }
    if (hasSecondGrouping(fields) &&
        (fields.mlCluster2->isBlank() || fields.mlCluster2.get() == fields.mlCluster.get())) {
        return Gate{.title = "Set a second grouping",
                    .lead = "",
                    .text =
                        "Crossed and three-level models take two different grouping variables. "
                        "Set the second one in the Setup panel, or choose Nested."};
    }
    if (hasTime(fields) && fields.mlTime->isBlank()) {
        return Gate{.title = "Set a time variable",
                    .lead = "",
                    .text =
                        "Growth and AR lag models follow a person or unit over time. Set the "
                        "variable that holds the time in the Setup panel."};
    }
    return std::nullopt;
}

std::optional<Gate> goneSelection(const ImportedDataset& dataset, const MultilevelFields& fields) {
    const List numeric = numericVariables(dataset);
    const List groups = SuitedVariables::clusters(dataset);
    std::optional<Gate> gone =
        SelectionGates::goneColumn(fields.mlOutcome, numeric, "numeric columns");
    if (!gone) {
        gone = SelectionGates::goneColumn(fields.mlCluster, groups, "grouping columns");
    }
    if (!gone && hasSecondGrouping(fields)) {
        gone = SelectionGates::goneColumn(fields.mlCluster2, groups, "grouping columns");
    }
    if (!gone && hasTime(fields)) {
        gone = SelectionGates::goneColumn(fields.mlTime, numeric, "numeric columns");
    }
    if (!gone) {
        gone = SelectionGates::goneColumn(fields.mlPredictors, numeric, "numeric columns");
    }
    if (!gone && allowsRandomSlope(fields)) {
        gone = SelectionGates::goneColumn(fields.mlRandomSlope, numeric, "numeric columns");
    }
    return gone;
}

bool hasColumnTwice(const MultilevelFields& fields) {
    NameSet roles = placed(fields);
    std::size_t count = hasSecondGrouping(fields) ? 3U : 2U;
    if (hasTime(fields)) {
        roles.insert(fields.mlTime->name);
        ++count;
    }
    return roles.size() < count;
}

std::optional<Gate> unsuitedStructure(const MultilevelFields& fields) {
    if (hasColumnTwice(fields)) {
        return Gate{.title = "One column stands in two places",
                    .lead = "",
                    .text =
                        "The outcome, the groupings and the time must be different columns. "
                        "Change one of them in the Setup panel."};
    }
    if (hasSecondGrouping(fields) && !fields.mlRandomSlope->isBlank()) {
        return Gate{.title = "This structure takes no random slope",
                    .lead = fields.mlRandomSlope->name,
                    .text =
                        "Crossed and three-level models have random intercepts alone. Choose "
                        "Nested to keep the slope."};
    }
    if (isOrdinal(fields) && (hasSecondGrouping(fields) || isGrowth(fields))) {
        return Gate{.title = "Ordinal models take one random intercept",
                    .lead = "",
                    .text = "For an ordinal outcome choose Nested or AR lag, or another family."};
    }
    return std::nullopt;
}

}  // namespace

std::optional<Gate> gate(const ImportedDataset& dataset, const MultilevelFields& fields) {
    std::optional<Gate> missing = blankSelection(fields);
    if (!missing) {
        missing = goneSelection(dataset, fields);
    }
    return missing ? missing : unsuitedStructure(fields);
}

}  // namespace sorvane::MultilevelGates
