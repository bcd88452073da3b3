#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Prepare/DataTransforms.h"
#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/LogText.h"
#include "SorvaneMac/State/RecodeDrafts.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

using Numbers = std::vector<std::optional<double>>;
using DataTransforms::Unmatched;
using DerivedValueFormatter::text;

template <typename Rule>
std::string rulesText(const std::vector<Rule>& rules, bool copiesUnmatched) {
    std::vector<std::string> texts;
    for (const Rule& rule : rules) {
        texts.push_back(RecodeDrafts::text(rule));
    }
    texts.emplace_back(copiesUnmatched ? "other values kept" : "other values → missing");
    return joinedText(texts, "; ");
}

std::string counted(std::size_t count, std::string_view noun) {
    return NumberText::integer(static_cast<std::int64_t>(count)) + " " + std::string(noun);
}

Numbers recoded(const NumericColumn& source, const VariableEditorFields& editor) {
    const Unmatched unmatched = editor.rcCopyUnmatched.get() ? Unmatched::kept : Unmatched::missing;
    if (editor.rcMode.get() == "range") {
        return DataTransforms::recodeRanges(source, editor.rcRangeRules.get(), unmatched);
    }
    if (editor.rcMode.get() == "reverse") {
        return DataTransforms::reverseCode(source, editor.rcReverseMin.get(),
                                           editor.rcReverseMax.get());
    }
    return DataTransforms::recodeValues(source, editor.rcValueRules.get(), unmatched);
}

/// What the recode is, as columns made by it and the log say.
std::string recodeDetail(const VariableEditorFields& editor) {
    const std::string& source = editor.rcSource->name;
    if (editor.rcMode.get() == "range") {
        return "range recode of " + source + " (" +
               counted(editor.rcRangeRules->size(), "band(s)") + ")";
    }
    if (editor.rcMode.get() == "reverse") {
        return "reverse code of " + source + " on " + text(editor.rcReverseMin.get()) + "-" +
               text(editor.rcReverseMax.get());
    }
    return "value recode of " + source + " (" + counted(editor.rcValueRules->size(), "rule(s)") +
           ")";
}

/// The rules, which the detail only counts; a reversal says everything itself.
std::string recodeSettings(const VariableEditorFields& editor) {
    const bool copies = editor.rcCopyUnmatched.get();
    return editor.rcMode.get() == "range" ? rulesText(editor.rcRangeRules.get(), copies)
                                          : rulesText(editor.rcValueRules.get(), copies);
}

bool isPair(const VariableEditorFields& editor) {
    return editor.cvKind.get() == "pair";
}

}  // namespace

std::optional<std::string> StudioState::recodeLacks() const {
    if (!dataset().columnIndex(editor.rcSource->name)) {
        return "Choose a source variable.";
    }
    if (editor.rcMode.get() == "reverse" &&
        !(editor.rcReverseMax.get() > editor.rcReverseMin.get())) {
        return "Scale maximum must exceed the minimum.";
    }
    return std::nullopt;
}

NumericColumn StudioState::leadingNumbers(const std::string& column, std::int64_t rows) const {
    const std::optional<std::size_t> index = dataset().columnIndex(column);
    if (!index || rows >= dataset().rowCount()) {
        return dataset().numericColumn(column);
    }
    Numbers numbers;
    for (std::int64_t row = 0; row < rows; ++row) {
        numbers.push_back(numericCell(dataset().rows.cell(static_cast<std::size_t>(row), *index)));
    }
    return NumericColumn(std::move(numbers));
}

std::optional<Numbers> StudioState::recodePreview(std::int64_t rows) const {
    if (recodeLacks()) {
        return std::nullopt;
    }
    return recoded(leadingNumbers(editor.rcSource->name, rows), editor);
}

bool StudioState::runRecode() {
    if (const std::optional<std::string> lacking = recodeLacks()) {
        editor.rcMessage.set(*lacking);
        return false;
    }
    const std::string source = editor.rcSource->name;
    const std::string detail = recodeDetail(editor);
    const TextTable::Column cells =
        DerivedValueFormatter::column(*recodePreview(dataset().rowCount()));
    const bool replaces = editor.rcReplace.get();
    const bool isUnnamed = UnicodeText::trimmed(editor.rcName.get()).empty();
    const std::string name =
        replaces ? source : uniqueHeaderName(isUnnamed ? source + " Recoded" : editor.rcName.get());
    if (replaces) {
        replaceColumnValues(source, cells, "Replaced by " + detail);
    } else {
        appendDerivedVariable({.name = name,
                               .values = cells,
                               .assignedType = dataset().variable(source)->assignedType,
                               .warning = "Created by " + detail});
        editor.rcName.set(name);
    }
    if (editor.rcMode.get() != "reverse") {
        logSettings(name, recodeSettings(editor));
    }
    log(replaces ? "Recoded " + source + " in place: " + detail + "."
                 : "Recoded " + source + " into " + name + ": " + detail + ".");
    editor.rcMessage.set(replaces ? source + " was replaced in place (" + detail + ")."
                                  : name + " was added (" + detail + ").");
    refreshAnalysisDefaults();
    return true;
}

std::vector<std::string> StudioState::computeSources() const {
    if (isPair(editor)) {
        return {editor.cvVarA->name, editor.cvVarB->name};
    }
    std::vector<std::string> names;
    for (const std::string& header : dataset().headers) {
        if (editor.cvSources->contains(header)) {
            names.push_back(header);
        }
    }
    return names;
}

std::optional<std::string> StudioState::computeLacks() const {
    if (isPair(editor)) {
        const bool hasBoth = dataset().columnIndex(editor.cvVarA->name) &&
                             dataset().columnIndex(editor.cvVarB->name);
        return hasBoth ? std::nullopt : std::optional("Pick two variables to combine.");
    }
    return computeSources().empty() ? std::optional("Select at least one source variable.")
                                    : std::nullopt;
}

std::optional<Numbers> StudioState::computePreview(std::int64_t rows) const {
    if (computeLacks()) {
        return std::nullopt;
    }
    if (isPair(editor)) {
        return DataTransforms::pairCombine(leadingNumbers(editor.cvVarA->name, rows),
                                           leadingNumbers(editor.cvVarB->name, rows),
                                           editor.cvPairOp.get());
    }
    std::vector<NumericColumn> columns;
    for (const std::string& name : computeSources()) {
        columns.push_back(leadingNumbers(name, rows));
    }
    return DataTransforms::rowAggregate(columns, editor.cvAggOp.get(),
                                        editor.cvMinCompletion.get());
}

bool StudioState::runCompute() {
    if (const std::optional<std::string> lacking = computeLacks()) {
        editor.cvMessage.set(*lacking);
        return false;
    }
    const std::string detail = isPair(editor)
                                   ? std::string(displayName(editor.cvPairOp.get())) + " of " +
                                         editor.cvVarA->name + " and " + editor.cvVarB->name
                                   : std::string(displayName(editor.cvAggOp.get())) + " of " +
                                         joinedText(computeSources());
    finishCompute(*computePreview(dataset().rowCount()), detail);
    return true;
}

void StudioState::finishCompute(const Numbers& values, const std::string& detail) {
    const std::string name = uniqueHeaderName(editor.cvName.get());
    appendDerivedVariable({.name = name,
                           .values = DerivedValueFormatter::column(values),
                           .assignedType = VariableKind::outcome,
                           .warning = "Computed as " + detail + "."});
    editor.cvName.set(name);
    selectedDescriptiveVariableName.set({name});
    const bool asksForCompletion = !isPair(editor) && editor.cvAggOp.get() != AggregateOp::count &&
                                   editor.cvMinCompletion.get() > 0.0;
    if (asksForCompletion) {
        logSettings(name, LogText::percent(editor.cvMinCompletion.get()) + " minimum completion");
    }
    log(name + " = " + detail + ".");
    editor.cvMessage.set(name + " was added (" + detail + ").");
    refreshAnalysisDefaults();
}

}  // namespace sorvane
