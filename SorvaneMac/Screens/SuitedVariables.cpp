#include "SorvaneMac/Screens/SuitedVariables.h"

#include <algorithm>

#include "SorvaneCore/Import/NameTokens.h"

namespace sorvane::SuitedVariables {

namespace {

constexpr std::int64_t fewestCategories = 2;
constexpr std::int64_t mostCategories = 8;

template <typename Keep>
List kept(const List& list, Keep keep) {
    List result;
    std::copy_if(list.begin(), list.end(), std::back_inserter(result), keep);
    return result;
}

List all(const ImportedDataset& dataset) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        list.push_back(&variable);
    }
    return list;
}

bool mayIdentify(VariableKind kind) {
    return kind == VariableKind::grouping || kind == VariableKind::demographicBackground ||
           kind == VariableKind::status || kind == VariableKind::administrative;
}

/// Names rather than answers: each stands twice or more on average.
bool namesRepeat(const DataVariable& variable) {
    return variable.assignedType == VariableKind::textResponse && variable.uniqueCount >= 2 &&
           2 * variable.uniqueCount <= variable.nonMissingCount;
}

}  // namespace

List named(const List& list, std::initializer_list<std::string_view> words) {
    return kept(list, [words](const DataVariable* variable) {
        const NameTokens tokens = tokenize(variable->name);
        return std::any_of(words.begin(), words.end(), [&tokens](std::string_view word) {
            return tokens.find(word) != tokens.end();
        });
    });
}

List twoValued(const List& numeric) {
    return kept(numeric, [](const DataVariable* variable) { return variable->uniqueCount == 2; });
}

List withFewCategories(const List& list) {
    return kept(list, [](const DataVariable* variable) {
        return variable->uniqueCount >= fewestCategories && variable->uniqueCount <= mostCategories;
    });
}

List analyzed(const ImportedDataset& dataset) {
    return kept(all(dataset), [](const DataVariable* variable) {
        return !isIgnoredForAnalysis(variable->assignedType);
    });
}

List clusters(const ImportedDataset& dataset) {
    const std::int64_t rowCount = dataset.rowCount();
    return kept(all(dataset), [rowCount](const DataVariable* variable) {
        return variable->isGroupingSelectionCandidate(rowCount) || namesRepeat(*variable) ||
               (mayIdentify(variable->assignedType) && variable->uniqueCount >= 2 &&
                variable->uniqueCount < variable->nonMissingCount);
    });
}

}  // namespace sorvane::SuitedVariables
