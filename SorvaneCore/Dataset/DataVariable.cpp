#include "SorvaneCore/Dataset/DataVariable.h"

#include <array>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

struct KindTexts {
    std::string_view rawValue;
    std::string_view displayName;
};

constexpr std::array<KindTexts, 10> kindTexts = {{
    {"demographic_background", "Demographic/background"},
    {"status", "Status"},
    {"psychometric_item", "Psychometric item"},
    {"test_item", "Test item"},
    {"rubric_item", "Rubric item"},
    {"outcome", "Outcome"},
    {"grouping", "Grouping"},
    {"text_response", "Text response"},
    {"administrative", "Administrative"},
    {"exclude", "Ignore"},
}};

std::int64_t groupingLevelLimit(std::int64_t rowCount) {
    if (rowCount < 24) {
        return 12;
    }
    return rowCount < 60 ? rowCount / 2 : 30;
}

}  // namespace

std::string_view rawValue(VariableKind kind) {
    return kindTexts[static_cast<std::size_t>(kind)].rawValue;
}

std::string_view displayName(VariableKind kind) {
    return kindTexts[static_cast<std::size_t>(kind)].displayName;
}

bool isReliabilityEligible(VariableKind kind) {
    using enum VariableKind;
    return kind == psychometricItem || kind == testItem || kind == rubricItem;
}

bool includedInDescriptivesByDefault(VariableKind kind) {
    return !isIgnoredForAnalysis(kind);
}

bool canServeAsDependentVariable(VariableKind kind) {
    using enum VariableKind;
    return isReliabilityEligible(kind) || kind == status || kind == outcome;
}

bool canServeAsIndependentGroupingVariable(VariableKind kind) {
    using enum VariableKind;
    return isReliabilityEligible(kind) || kind == demographicBackground || kind == status ||
           kind == grouping;
}

bool isIgnoredForAnalysis(VariableKind kind) {
    return kind == VariableKind::administrative || kind == VariableKind::exclude;
}

std::string ScaleRange::displayText() const {
    if (minimum && maximum) {
        return NumberText::clean(*minimum) + "-" + NumberText::clean(*maximum);
    }
    if (minimum) {
        return NumberText::clean(*minimum) + "+";
    }
    return maximum ? "up to " + NumberText::clean(*maximum) : "Not set";
}

bool DataVariable::isOutcomeSelectionCandidate() const {
    return numericSummary.has_value() && nonMissingCount >= 1 &&
           canServeAsDependentVariable(assignedType);
}

bool DataVariable::isGroupingSelectionCandidate(std::int64_t rowCount) const {
    return canServeAsIndependentGroupingVariable(assignedType) && nonMissingCount >= 1 &&
           uniqueCount >= 2 && uniqueCount <= groupingLevelLimit(rowCount);
}

}  // namespace sorvane
