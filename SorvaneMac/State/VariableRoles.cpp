#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::string_view roleRequest = "assign Grouping, Outcome, or Item";
/// Above this many distinct values a column is no Likert item.
constexpr std::int64_t likertLevelLimit = 12;

bool mayBeScaleItem(const DataVariable& variable) {
    return isReliabilityEligible(variable.assignedType) ||
           VariableLists::isNumericForAnalysis(variable);
}

void takeIntoItemSet(DataVariable& variable) {
    variable.assignedType = VariableKind::psychometricItem;
    variable.includeInDescriptives = true;
    variable.includeInReliability = true;
    std::erase_if(variable.warnings, [](const std::string& warning) {
        return warning.find(roleRequest) != std::string::npos;
    });
}

bool isLikertCandidate(const DataVariable& variable) {
    return isReliabilityEligible(variable.inferredType) &&
           variable.assignedType != VariableKind::outcome && variable.numericSummary &&
           variable.scaleRange && variable.scaleRange->minimum && variable.scaleRange->maximum &&
           variable.uniqueCount <= likertLevelLimit;
}

void applyVerdict(DataVariable& variable, const ScaleItemClassification* verdict) {
    using Category = ScaleItemClassification::Category;
    if (verdict && verdict->category == Category::likelyScale && mayBeScaleItem(variable)) {
        takeIntoItemSet(variable);
    }
    if (mayBeScaleItem(variable)) {
        variable.includeInReliability = verdict && verdict->autoSelectAsScale;
    }
}

/// The column that each header names: of two with one name, the left one twice.
std::vector<TextTable::Column> columnsByName(const ImportedDataset& dataset) {
    std::unordered_map<std::string_view, std::size_t> leftmost;
    std::vector<TextTable::Column> columns;
    for (std::size_t column = 0; column < dataset.headers.size(); ++column) {
        const auto named = leftmost.try_emplace(dataset.headers[column], column).first;
        columns.push_back(dataset.rows.sharedColumn(named->second));
    }
    return columns;
}

std::map<std::string, std::string> questionTexts(const ImportedDataset& dataset) {
    std::map<std::string, std::string> texts;
    for (const DataVariable& variable : dataset.variables) {
        if (variable.label && !variable.label->empty()) {
            texts.emplace(variable.name, *variable.label);
        }
    }
    return texts;
}

}  // namespace

void StudioState::editVariable(const Uuid& id, const std::function<void(DataVariable&)>& edit) {
    const std::vector<DataVariable>& variables = dataset().variables;
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&id](const DataVariable& each) { return each.id == id; });
    if (found == variables.end()) {
        return;
    }
    const auto index = static_cast<std::size_t>(found - variables.begin());
    data.dataset.edit([&edit, index](ImportedDataset& table) { edit(table.variables[index]); });
    data.editsSinceChange.roles = true;
    refreshAnalysisDefaults();
}

void StudioState::assignVariable(const Uuid& id, VariableKind kind) {
    editVariable(id, [this, kind](DataVariable& variable) {
        variable.assignedType = kind;
        variable.includeInDescriptives = includedInDescriptivesByDefault(kind);
        variable.includeInReliability = isReliabilityEligible(kind);
        if (!isReliabilityEligible(kind)) {
            NameSet reversed = scale.reverseCodedItemNames.get();
            reversed.erase(variable.name);
            scale.reverseCodedItemNames.set(std::move(reversed));
        }
    });
}

void StudioState::setReliabilityIncluded(const Uuid& id, bool included) {
    editVariable(id, [this, included](DataVariable& variable) {
        variable.includeInReliability = included;
        if (included) {
            NameSet unreliable = scale.unreliableItemNames.get();
            unreliable.erase(variable.name);
            scale.unreliableItemNames.set(std::move(unreliable));
        }
    });
}

void StudioState::setDescriptivesIncluded(const Uuid& id, bool included) {
    editVariable(id,
                 [included](DataVariable& variable) { variable.includeInDescriptives = included; });
}

void StudioState::classifyAndSeedScaleItems(bool seedSelection) {
    if (!hasData()) {
        scale.scaleClassifications.set({});
        return;
    }
    scale.scaleClassifications.set(ScaleItemClassifier::classify(
        dataset().headers, columnsByName(dataset()), questionTexts(dataset())));
    if (!seedSelection) {
        return;
    }
    std::map<std::string_view, const ScaleItemClassification*> verdicts;
    for (const ScaleItemClassification& verdict : scale.scaleClassifications.get()) {
        verdicts.emplace(verdict.columnName, &verdict);
    }
    data.dataset.edit([&verdicts](ImportedDataset& table) {
        for (DataVariable& variable : table.variables) {
            const auto verdict = verdicts.find(variable.name);
            applyVerdict(variable, verdict == verdicts.end() ? nullptr : verdict->second);
        }
    });
    data.editsSinceChange.roles = true;
}

const ScaleItemClassification* StudioState::classification(std::string_view columnName) const {
    const std::vector<ScaleItemClassification>& verdicts = scale.scaleClassifications.get();
    const auto found = std::find_if(
        verdicts.begin(), verdicts.end(),
        [columnName](const auto& verdict) { return verdict.columnName == columnName; });
    return found == verdicts.end() ? nullptr : &*found;
}

void StudioState::selectLikertCandidateItemsForReliability() {
    data.dataset.edit([](ImportedDataset& table) {
        for (DataVariable& variable : table.variables) {
            if (isLikertCandidate(variable)) {
                takeIntoItemSet(variable);
            }
        }
    });
    data.editsSinceChange.roles = true;
    refreshAnalysisDefaults();
}

}  // namespace sorvane
