#include "SorvaneMac/State/VariableLists.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::VariableLists {

namespace {

constexpr std::array<std::string_view, 8> outcomeWords = {
    "outcome", "score", "total", "satisfaction", "achievement", "performance", "rating", "result"};

template <typename Keep>
List kept(const ImportedDataset& dataset, Keep keep) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        if (keep(variable)) {
            list.push_back(&variable);
        }
    }
    return list;
}

template <typename Wanted>
const DataVariable* firstOf(const List& list, Wanted wanted) {
    const auto found = std::find_if(list.begin(), list.end(), wanted);
    return found == list.end() ? nullptr : *found;
}

const DataVariable* firstOfKind(const List& list, VariableKind kind) {
    return firstOf(list,
                   [kind](const DataVariable* variable) { return variable->assignedType == kind; });
}

}  // namespace

bool isNumericForAnalysis(const DataVariable& variable) {
    return variable.numericSummary.has_value() && !isIgnoredForAnalysis(variable.assignedType);
}

List numericVariables(const ImportedDataset& dataset) {
    return kept(dataset, isNumericForAnalysis);
}

std::vector<std::string> numericNames(const ImportedDataset& dataset) {
    return names(numericVariables(dataset));
}

List descriptiveNumericVariables(const ImportedDataset& dataset) {
    return kept(dataset, [](const DataVariable& variable) {
        return variable.includeInDescriptives && variable.numericSummary.has_value();
    });
}

List reliabilityVariables(const ImportedDataset& dataset) {
    return kept(dataset, [](const DataVariable& variable) {
        return variable.includeInReliability &&
               (isReliabilityEligible(variable.assignedType) || isNumericForAnalysis(variable));
    });
}

List anovaOutcomeVariables(const ImportedDataset& dataset) {
    return kept(dataset, [](const DataVariable& variable) {
        return variable.isOutcomeSelectionCandidate();
    });
}

List anovaGroupingVariables(const ImportedDataset& dataset) {
    const std::int64_t rowCount = dataset.rowCount();
    return kept(dataset, [rowCount](const DataVariable& variable) {
        return variable.isGroupingSelectionCandidate(rowCount);
    });
}

List computedSourceVariables(const ImportedDataset& dataset) {
    return numericVariables(dataset);
}

List without(List list, const NameSet& taken) {
    std::erase_if(
        list, [&taken](const DataVariable* variable) { return taken.contains(variable->name); });
    return list;
}

const DataVariable* preferredOutcomeVariable(const ImportedDataset& dataset) {
    const List outcomes = anovaOutcomeVariables(dataset);
    const DataVariable* named = firstOf(outcomes, [](const DataVariable* variable) {
        const std::string name = UnicodeText::lowerCased(variable->name);
        return std::any_of(outcomeWords.begin(), outcomeWords.end(),
                           [&name](auto word) { return name.find(word) != std::string::npos; });
    });
    return named ? named : firstOfKind(outcomes, VariableKind::outcome);
}

const DataVariable* preferredGroupingVariable(const ImportedDataset& dataset) {
    const List factors = anovaGroupingVariables(dataset);
    const DataVariable* grouping = firstOfKind(factors, VariableKind::grouping);
    return grouping ? grouping : firstOfKind(factors, VariableKind::demographicBackground);
}

bool contains(const List& list, std::string_view name) {
    return firstOf(list, [name](const DataVariable* variable) { return variable->name == name; });
}

std::optional<std::string> firstExistingName(std::string_view name, const List& list) {
    return contains(list, name) ? std::optional<std::string>(name) : std::nullopt;
}

std::vector<std::string> names(const List& list) {
    std::vector<std::string> result;
    for (const DataVariable* variable : list) {
        result.push_back(variable->name);
    }
    return result;
}

}  // namespace sorvane::VariableLists
