#pragma once

#include <filesystem>
#include <optional>

class QApplication;

namespace sorvane {

class StudioScreens;
class StudioState;

/// Opens the window, imports the file where one is given, and stays until it is closed.
///
/// Returns    the exit status of the program
int openWindow(QApplication& application,
               StudioState& state,
               StudioScreens& screens,
               const std::optional<std::filesystem::path>& file);

/// Draws the start page and every screen into PNG files, light and dark, with results of the
/// sample study or of the file given.
///
/// Failure    status 1 when the folder cannot be written or the file not imported, with the
///            sentence on standard error
int drawScreenshots(QApplication& application,
                    StudioState& state,
                    StudioScreens& screens,
                    const std::filesystem::path& folder,
                    const std::optional<std::filesystem::path>& file);

}  // namespace sorvane
