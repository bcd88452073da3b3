#include "SorvaneCore/Dataset/Grid/DerivedColumns.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Prepare/BinnedVariableBuilder.h"
#include "SorvaneCore/Prepare/ComputedVariableBuilder.h"
#include "SorvaneCore/Prepare/DataTransforms.h"
#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneCore/Prepare/ScaleScoreBuilder.h"
#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/LogText.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

std::string countText(std::size_t count) {
    return NumberText::integer(static_cast<std::int64_t>(count));
}

bool isBlank(std::string_view text) {
    return UnicodeText::trimmed(text).empty();
}

/// The kind of score as columns made by it say.
std::string kindText(ComputedVariableMethod method) {
    return method == ComputedVariableMethod::validCount ? "valid-response count"
                                                        : std::string(displayName(method));
}

/// Without both ends of its scale an item is taken as it stands.
bool isReversed(const DataVariable& item, const NameSet& reverseCoded) {
    return reverseCoded.contains(item.name) && item.scaleRange && item.scaleRange->minimum &&
           item.scaleRange->maximum;
}

}  // namespace

std::string StudioState::uniqueHeaderName(std::string_view base, std::string_view own) const {
    const std::string_view trimmed = UnicodeText::trimmed(base);
    const std::string wanted = trimmed.empty() ? "Score" : std::string(trimmed);
    std::string name = wanted;
    for (std::int64_t number = 2; name != own && dataset().columnIndex(name); ++number) {
        name = wanted + " " + NumberText::integer(number);
    }
    return name;
}

void StudioState::appendDerivedVariable(DerivedColumn column) {
    storeUndo("addition of " + column.name);
    data.dataset.edit([&column](ImportedDataset& table) {
        DerivedColumns::append(table, column.name, column.values, column.assignedType,
                               column.warning);
    });
}

std::vector<std::string> StudioState::addDerivedVariables(std::string label,
                                                          std::vector<DerivedColumn> columns,
                                                          std::string logEntry) {
    storeUndo(std::move(label));
    std::vector<std::string> names;
    for (DerivedColumn& column : columns) {
        column.name = uniqueHeaderName(column.name);
        data.dataset.edit([&column](ImportedDataset& table) {
            DerivedColumns::append(table, column.name, column.values, column.assignedType,
                                   column.warning);
        });
        names.push_back(column.name);
    }
    log(std::move(logEntry));
    refreshAnalysisDefaults();
    return names;
}

void StudioState::replaceColumnValues(const std::string& name,
                                      TextTable::Column values,
                                      std::string warning) {
    storeUndo("in-place change to " + name);
    const std::size_t column = *dataset().columnIndex(name);
    data.dataset.edit(
        [&](ImportedDataset& table) { DerivedColumns::replace(table, column, values, warning); });
}

std::vector<const DataVariable*> StudioState::selectedComputedVariables() const {
    std::vector<const DataVariable*> selected;
    for (const DataVariable* variable : VariableLists::computedSourceVariables(dataset())) {
        if (derived.selectedComputedVariableIDs->contains(variable->id)) {
            selected.push_back(variable);
        }
    }
    return selected;
}

std::optional<std::string> StudioState::computedVariableLacks() const {
    const std::size_t chosen = selectedComputedVariables().size();
    if (derived.computedVariableMethod.get() == ComputedVariableMethod::validCount) {
        return chosen >= 1 ? std::nullopt
                           : std::optional(
                                 "Select at least one numeric variable before creating "
                                 "a count variable.");
    }
    return chosen >= 2 ? std::nullopt
                       : std::optional(
                             "Select at least two numeric variables before creating a "
                             "score variable.");
}

bool StudioState::createComputedVariable() {
    if (const std::optional<std::string> lacking = computedVariableLacks()) {
        derived.computedVariableMessage.set(*lacking);
        return false;
    }
    const std::vector<std::string> names = VariableLists::names(selectedComputedVariables());
    std::vector<NumericColumn> columns;
    for (const std::string& each : names) {
        columns.push_back(dataset().numericColumn(each));
    }
    const ComputedVariableMethod method = derived.computedVariableMethod.get();
    const double completion = derived.computedVariableMinimumCompletion.get();
    const std::string kind = kindText(method);
    const std::string percentage = LogText::percent(completion);
    const std::string& wanted = derived.computedVariableName.get();
    const std::string name = uniqueHeaderName(isBlank(wanted) ? "Computed Variable" : wanted);
    appendDerivedVariable({.name = name,
                           .values = DerivedValueFormatter::column(
                               ComputedVariableBuilder::numericValues(columns, method, completion)),
                           .assignedType = VariableKind::outcome,
                           .warning = "Computed " + kind + " from " + countText(names.size()) +
                                      " variable(s): " + joinedText(names) + ", " + percentage +
                                      " minimum completion"});
    log("Created " + name + " as " + kind + " from " + joinedText(names) + " using " + percentage);
    derived.computedVariableMessage.set(
        name + " was added and is available for Descriptives and ANOVA outcomes");
    selectedDescriptiveVariableName.set({name});
    selectedANOVAOutcomeName.set({name});
    refreshAnalysisDefaults();
    return true;
}

std::optional<std::string> StudioState::binningLacks() const {
    return dataset().columnIndex(derived.selectedBinningVariableName->name)
               ? std::nullopt
               : std::optional("Choose a numeric variable to group.");
}

bool StudioState::createBinnedVariable() {
    if (const std::optional<std::string> lacking = binningLacks()) {
        derived.binningMessage.set(*lacking);
        return false;
    }
    const std::string source = derived.selectedBinningVariableName->name;
    const BinningMethod method = derived.binningMethod.get();
    const std::int64_t bands = std::max<std::int64_t>(1, derived.binningBinCount.get());
    const NumericColumn values = dataset().numericColumn(source);
    const std::string& wanted = derived.binnedVariableName.get();
    const std::string name = uniqueHeaderName(isBlank(wanted) ? source + " Group" : wanted);
    appendDerivedVariable({.name = name,
                           .values = method == BinningMethod::equalWidth
                                         ? BinnedVariableBuilder::equalWidth(values, bands)
                                         : BinnedVariableBuilder::quantile(values, bands),
                           .assignedType = VariableKind::grouping,
                           .warning = "Grouped from " + source + " using " +
                                      std::string(displayName(method)) + " with " +
                                      NumberText::integer(bands) + " band(s)."});
    const std::string done = "Created " + name + " by grouping " + source + " into " +
                             NumberText::integer(bands) + " band(s).";
    logSettings(name, std::string(displayName(method)));
    log(done);
    derived.binningMessage.set(done);
    refreshAnalysisDefaults();
    return true;
}

std::string StudioState::defaultScaleScoreVariableName() const {
    const std::string_view construct = UnicodeText::trimmed(scale.constructName.get());
    if (construct.empty()) {
        return "Total Test";
    }
    const bool isMean = scale.scaleScoreMethod.get() == ScaleScoreMethod::mean;
    return std::string(construct) + (isMean ? " Mean Score" : " Total Score");
}

std::vector<NumericColumn> StudioState::scaleScoreMatrix(
    const std::vector<std::string>& items) const {
    std::vector<NumericColumn> matrix;
    for (const std::string& name : items) {
        const DataVariable& item = *dataset().variable(name);
        NumericColumn values = dataset().numericColumn(name);
        if (isReversed(item, scale.reverseCodedItemNames.get())) {
            values = NumericColumn(DataTransforms::reverseCode(values, *item.scaleRange->minimum,
                                                               *item.scaleRange->maximum));
        }
        matrix.push_back(std::move(values));
    }
    return matrix;
}

std::string StudioState::scaleScoreSettings(const std::vector<std::string>& items) const {
    const ReliabilityMissingDataRule rule = scale.reliabilityMissingDataRule.get();
    std::string settings(rawValue(rule));
    if (rule != ReliabilityMissingDataRule::listwiseDeletion) {
        settings += ", " + LogText::percent(scale.minimumItemCompletion.get()) + " item completion";
    }
    std::vector<std::string> reversed;
    for (const std::string& name : items) {
        const DataVariable& item = *dataset().variable(name);
        if (isReversed(item, scale.reverseCodedItemNames.get())) {
            reversed.push_back(name + " on " + item.scaleRange->displayText());
        }
    }
    settings += reversed.empty() ? "" : "; reverse-coded: " + joinedText(reversed);
    const std::vector<std::string> unturned = itemsNotReversed();
    settings += unturned.empty() ? ""
                                 : "; marked Rev, but taken as they stand because the ends of "
                                   "their scales are not known: " +
                                       joinedText(unturned);
    return settings;
}

std::vector<std::string> StudioState::itemsNotReversed() const {
    std::vector<std::string> unturned;
    for (const DataVariable* item : VariableLists::reliabilityVariables(dataset())) {
        const NameSet& marked = scale.reverseCodedItemNames.get();
        if (marked.contains(item->name) && !isReversed(*item, marked)) {
            unturned.push_back(item->name);
        }
    }
    return unturned;
}

std::optional<std::string> StudioState::scaleScoreLacks() const {
    return VariableLists::reliabilityVariables(dataset()).size() >= 2
               ? std::nullopt
               : std::optional(
                     "Select at least two item variables before creating a score variable.");
}

bool StudioState::createScaleScoreVariable() {
    if (const std::optional<std::string> lacking = scaleScoreLacks()) {
        scale.scaleScoreCreationMessage.set(*lacking);
        return false;
    }
    const std::vector<std::string> items =
        VariableLists::names(VariableLists::reliabilityVariables(dataset()));
    const ScaleScoreOptions options{.missingDataRule = scale.reliabilityMissingDataRule.get(),
                                    .scaleScoreMethod = scale.scaleScoreMethod.get(),
                                    .minimumItemCompletion = scale.minimumItemCompletion.get()};
    const std::string kind(displayName(options.scaleScoreMethod));
    const std::string name = uniqueHeaderName(scale.scaleScoreVariableName.get());
    const std::string settings = scaleScoreSettings(items);
    appendDerivedVariable({.name = name,
                           .values = DerivedValueFormatter::column(
                               ScaleScoreBuilder::scores(scaleScoreMatrix(items), options)),
                           .assignedType = VariableKind::outcome,
                           .warning = kind + " from " + countText(items.size()) +
                                      " item variables: " + joinedText(items)});
    logSettings(name, settings);
    log(name + " as " + kind + " from reliability items " + joinedText(items));
    scale.scaleScoreCreationMessage.set(name +
                                        " was added as a new dependent-variable score and is now "
                                        "available in Descriptives and ANOVA.");
    selectedDescriptiveVariableName.set({name});
    selectedANOVAOutcomeName.set({name});
    refreshAnalysisDefaults();
    return true;
}

}  // namespace sorvane
