#pragma once

#include <functional>

#include "SorvaneMac/Platform/FileDialogs.h"
#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Something that the user must agree to first.
struct Question {
    QString title;
    QString text;
    /// The button that does it; the other one cancels.
    QString confirmLabel;
};

/// Asks with an alert over the window.
bool askQuestion(QWidget* parent, const Question& question);

/// What every view of the window works on.
struct Workspace {
    StudioState& state;
    StudioScreens& screens;
    FileDialogs dialogs = FileDialogs::ofPlatform();
    std::function<bool(QWidget*, const Question&)> confirm = &askQuestion;
    /// Brings edits of the report that are still in the editor into the state.
    std::function<void()> commitEdits = [] {
    };
};

/// Asks for a file and imports it, through the guard of an assembled report.
void importFromDialog(QWidget* parent, Workspace& workspace);
/// Imports a file; asks first where an assembled report would be lost.
void importGuarded(QWidget* parent, Workspace& workspace, const std::filesystem::path& file);
/// Opens the sample study; asks first where an assembled report would be lost.
void openSample(QWidget* parent, Workspace& workspace);
/// Starts a blank grid; asks first where an assembled report would be lost.
void openBlankGrid(QWidget* parent, Workspace& workspace);
/// Asks for a pasted table and imports it, through the same guard.
void pasteFromDialog(QWidget* parent, Workspace& workspace);

}  // namespace sorvane
