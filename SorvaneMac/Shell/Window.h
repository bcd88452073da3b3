#pragma once

#include <filesystem>
#include <optional>

#include "SorvaneMac/Shell/MainWindow.h"

class QApplication;

namespace sorvane {

class StudioScreens;
class StudioState;

struct WindowRequest {
    /// A project or a data file, opened once the window stands.
    std::optional<std::filesystem::path> file;
    WindowForm form = WindowForm::workbench;
};

/// Opens the window as the last session left it and stays until it is closed.
///
/// Returns    the exit status of the program
int openWindow(QApplication& application,
               StudioState& state,
               StudioScreens& screens,
               const WindowRequest& request);

struct ScreenshotRequest {
    std::filesystem::path folder;
    /// The project or the data to show; the sample study where absent.
    std::optional<std::filesystem::path> file;
    /// Whether to show the workspace as it stands, without opening or running anything.
    bool isWorkspaceReady = false;
    int width = 1280;
    int height = 800;
    /// 1 to 2, the size of text and controls.
    double scale = 1.0;
};

/// Draws the start page and every screen into PNG files, light and dark, with results of the
/// sample study or of the file given.
///
/// Failure    status 1 when the folder cannot be written or the file not opened, with the
///            sentence on standard error
int drawScreenshots(QApplication& application,
                    StudioState& state,
                    StudioScreens& screens,
                    const ScreenshotRequest& request);

}  // namespace sorvane
