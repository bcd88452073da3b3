#include "SorvaneMac/Screens/DataPreparation.h"

#include <algorithm>

#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::DataPreparation {

namespace {

/// More sources than this are not shown in a preview.
constexpr std::size_t shownSources = 6;

std::string cellText(std::string_view cell) {
    return cell.empty() ? "(blank)" : std::string(cell);
}

}  // namespace

void addRun(SetupForm& form, StudioState& state, Run run) {
    OptionControls::addRun(form, std::move(run.label), run.gate, std::move(run.run));
    addOutcome(form, state, *run.message);
}

void addOutcome(SetupForm& form,
                StudioState& state,
                const Field<std::optional<std::string>>& message) {
    if (message.get()) {
        form.controls.emplace_back(NoteControl{*message.get(), false});
    }
    addUndo(form, state);
}

void addUndo(SetupForm& form, StudioState& state) {
    if (const std::optional<std::string> lost = state.undoLoses()) {
        form.controls.emplace_back(NoteControl{*lost});
    }
    if (state.canUndoDataChange()) {
        form.controls.emplace_back(ButtonControl{
            .label = "Undo the " + state.data.dataChangeUndoLabel.get(), .press = [&state] {
                state.undoLastDataChange();
            }});
    }
}

void addPreview(ScreenContent& content,
                const ImportedDataset& dataset,
                const std::vector<std::string>& sources,
                const std::optional<std::vector<std::optional<double>>>& values) {
    if (!values) {
        return;
    }
    const std::size_t shown = std::min(sources.size(), shownSources);
    ReportTable table;
    table.title = "First rows";
    table.headers = {"Row"};
    table.headers.insert(table.headers.end(), sources.begin(),
                         sources.begin() + static_cast<std::ptrdiff_t>(shown));
    table.headers.emplace_back("New value");
    const std::size_t rows = std::min<std::size_t>(
        {values->size(), dataset.rows.rowCount(), static_cast<std::size_t>(previewRows)});
    for (std::size_t row = 0; row < rows; ++row) {
        std::vector<std::string> line = {ResultText::count(static_cast<std::int64_t>(row) + 1)};
        for (std::size_t i = 0; i < shown; ++i) {
            line.push_back(cellText(dataset.rows.cell(row, *dataset.columnIndex(sources[i]))));
        }
        const std::optional<double>& value = (*values)[row];
        line.push_back(value ? DerivedValueFormatter::text(*value) : "(missing)");
        table.rows.push_back(std::move(line));
    }
    if (shown < sources.size()) {
        table.note = "The first " + ResultText::count(static_cast<std::int64_t>(shown)) + " of " +
                     ResultText::count(static_cast<std::int64_t>(sources.size())) +
                     " sources are shown.";
    }
    content.cards.push_back({.title = "Preview",
                             .subtitle = "What the new values would be; nothing is changed yet.",
                             .tables = {std::move(table)}});
}

Card logCard(const StudioState& state) {
    return {.title = "What was done so far",
            .subtitle = "The log of this table, in the order of the work.",
            .paragraphs = state.data.transformationLog.get()};
}

}  // namespace sorvane::DataPreparation
