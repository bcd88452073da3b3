#pragma once

#include <functional>
#include <memory>

#include "SorvaneMac/Platform/FileDialogs.h"
#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

struct ReviewDesk;

/// Whether agreeing loses something, so that it must not happen by a stray key.
enum class QuestionRisk { losesWork, none };

/// Something that the user must agree to first.
struct Question {
    QString title;
    QString text;
    /// The button that does it; the other one does not.
    QString confirmLabel;
    QString cancelLabel = "Cancel";
    QuestionRisk risk = QuestionRisk::losesWork;
};

/// Asks with an alert over the window.
bool askQuestion(QWidget* parent, const Question& question);

/// What is to become of changes that are not saved.
enum class SaveAnswer { save, discard, cancel };

SaveAnswer askToSaveChanges(QWidget* parent, const QString& name);

/// What every view of the window works on.
struct Workspace {
    StudioState& state;
    StudioScreens& screens;
    FileDialogs dialogs = FileDialogs::ofPlatform();
    std::function<bool(QWidget*, const Question&)> confirm = &askQuestion;
    std::function<SaveAnswer(QWidget*, const QString& name)> askToSave = &askToSaveChanges;
    /// Brings what is still being typed, in the report or a cell, into the state.
    std::function<void()> commitEdits = [] {
    };
    /// By which findings leave the window.
    std::shared_ptr<ReviewDesk> desk{};
};

/// Asks for a file and imports it. This and the others below go through the guard of an assembled
/// report.
void importFromDialog(QWidget* parent, Workspace& workspace);
void openSample(Workspace& workspace);
void openBlankGrid(Workspace& workspace);
/// Asks for a pasted table and imports it.
void pasteFromDialog(QWidget* parent, Workspace& workspace);

/// Asks for a file and writes the working table into it as comma-separated text.
void exportDatasetFromDialog(QWidget* parent, Workspace& workspace);

/// Asks whether the report may be lost, and does or drops what is held back.
void confirmPendingImport(QWidget* parent, Workspace& workspace);

}  // namespace sorvane
