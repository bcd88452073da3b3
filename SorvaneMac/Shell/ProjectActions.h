#pragma once

#include <filesystem>

#include "SorvaneMac/Shell/Workspace.h"

namespace sorvane {

/// Opens a project or imports a data file, by the file's extension.
void openFile(QWidget* parent, Workspace& workspace, const std::filesystem::path& file);
/// Asks for a project and opens it. This and `openProject` ask first where changes would be lost.
void openProjectFromDialog(QWidget* parent, Workspace& workspace);
void openProject(QWidget* parent, Workspace& workspace, const std::filesystem::path& file);

/// Saves where the project was saved or opened; asks for a place where there is none yet.
///
/// Returns    whether it was saved
bool saveProject(QWidget* parent, Workspace& workspace);
/// Asks for a place and saves there.
bool saveProjectAs(QWidget* parent, Workspace& workspace);

/// Whether what is in the workspace may go: where changes are not saved, asks whether to save them.
bool mayLeave(QWidget* parent, Workspace& workspace);
/// Where the last session left work and nothing is loaded yet, asks whether to take it up.
///
/// Returns    whether it was taken up
bool offerLastSession(QWidget* parent, Workspace& workspace);

}  // namespace sorvane
