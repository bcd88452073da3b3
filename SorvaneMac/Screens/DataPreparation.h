#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// What the forms that change the table share: the run with what it said, the way back, the
/// preview and the log.
namespace sorvane::DataPreparation {

constexpr std::int64_t previewRows = 12;

struct Run {
    std::string label;
    std::optional<Gate> gate;
    /// Where the operation says what it did.
    const Field<std::optional<std::string>>* message = nullptr;
    std::function<void()> run;
};

/// Adds the run button, what is missing or what was done last, and the way back.
void addRun(SetupForm& form, StudioState& state, Run run);
/// Adds what was done last, and the button that takes back the last change of the data.
void addOutcome(SetupForm& form,
                StudioState& state,
                const Field<std::optional<std::string>>& message);
/// Adds that button alone, where there is something to take back.
void addUndo(SetupForm& form, StudioState& state);

/// Adds a card of the first rows: the sources as they stand, and the new values.
void addPreview(ScreenContent& content,
                const ImportedDataset& dataset,
                const std::vector<std::string>& sources,
                const std::optional<std::vector<std::optional<double>>>& values);

/// What has been done to the table so far.
Card logCard(const StudioState& state);

}  // namespace sorvane::DataPreparation
