#include "SorvaneMac/Shell/Window.h"

#include <iostream>
#include <system_error>

#include <QApplication>
#include <QPixmap>

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Shell/AutosaveSchedule.h"
#include "SorvaneMac/Shell/ChartImages.h"
#include "SorvaneMac/Shell/MainWindow.h"
#include "SorvaneMac/Shell/ProjectActions.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

void prepare(QApplication& application) {
    QApplication::setApplicationName("Sorvane");
    QApplication::setApplicationVersion("0.1.0");
    Theme::apply(application, Appearance::system);
}

constexpr std::string_view windowKey = "sv.window";

/// The window of the last session; absent where there was none, or where what was kept of it cannot
/// be read.
std::optional<WindowMemory> lastWindow(const UserDefaults& defaults) {
    try {
        return fromJson<std::optional<WindowMemory>>(defaults.value(windowKey));
    } catch (const RecordJsonError&) {
        return std::nullopt;
    }
}

/// Stages what the analysis screens find, so that the report has something to show.
void stageFindings(Workspace& workspace) {
    for (const StudioScreen screen : {StudioScreen::scalesReliability, StudioScreen::descriptives,
                                      StudioScreen::correlation, StudioScreen::regression}) {
        workspace.screens.appear(screen);
        workspace.screens.at(screen).run();
        for (const Finding& finding : workspace.screens.content(screen).findings) {
            ReportItem item = finding.item;
            if (finding.figure) {
                item.figure = chartPng(*finding.figure);
            }
            workspace.state.addToReport(item);
        }
    }
}

class Photographer {
public:
    Photographer(MainWindow& window, const std::filesystem::path& folder)
        : window_(window), folder_(folder) {}

    bool take(std::string_view name) {
        const std::pair<Appearance, const char*> looks[] = {{Appearance::light, ""},
                                                            {Appearance::dark, "-dark"}};
        for (const auto& look : looks) {
            if (window_.appearance() != look.first) {
                window_.setAppearance(look.first);
            }
            window_.refreshNow();
            // Layouts settle with the events that they post, and scroll bars with those of layouts.
            for (int pass = 0; pass < 3; ++pass) {
                QCoreApplication::processEvents();
            }
            const QString file = qtText(name) + look.second + ".png";
            if (!window_.grab().save(fromPath(folder_ / utf8(file)))) {
                std::cerr << "Could not write " << utf8(file) << ".\n";
                return false;
            }
        }
        return true;
    }

private:
    MainWindow& window_;
    std::filesystem::path folder_;
};

bool takeAll(MainWindow& window, Photographer& photographer) {
    Workspace& workspace = window.workspace();
    for (const StudioScreen screen : allStudioScreens()) {
        workspace.state.selection.set(screen);
        if (!photographer.take(rawValue(screen))) {
            return false;
        }
    }
    return true;
}

/// Opens the file, or the sample study where absent, and puts findings and a report into it.
bool fill(MainWindow& window, const std::optional<std::filesystem::path>& file) {
    Workspace& workspace = window.workspace();
    if (file) {
        openFile(&window, workspace, *file);
    } else {
        workspace.state.resetToSample();
    }
    for (const auto* error : {&workspace.state.data.importError, &workspace.state.projectError}) {
        if (error->get()) {
            std::cerr << *error->get() << "\n";
            return false;
        }
    }
    stageFindings(workspace);
    workspace.state.assembleReport();
    return true;
}

}  // namespace

int openWindow(QApplication& application,
               StudioState& state,
               StudioScreens& screens,
               const WindowRequest& request) {
    prepare(application);
    MainWindow window(state, screens, request.form);
    if (const std::optional<WindowMemory> memory = lastWindow(state.defaults())) {
        window.recall(*memory);
    }
    window.show();
    const AutosaveSchedule autosaves(state);
    // Before a file is opened, whose own autosave would take the place of the last session's.
    const bool isResumed = offerLastSession(&window, window.workspace());
    if (request.file && !isResumed) {
        openFile(&window, window.workspace(), *request.file);
    }
    const int status = QApplication::exec();
    state.defaults().set(windowKey, toJson(window.memory()));
    return status;
}

int drawScreenshots(QApplication& application,
                    StudioState& state,
                    StudioScreens& screens,
                    const ScreenshotRequest& request) {
    prepare(application);
    std::error_code failure;
    std::filesystem::create_directories(request.folder, failure);
    if (failure) {
        std::cerr << "Could not make the folder: " << failure.message() << "\n";
        return 1;
    }
    MainWindow window(state, screens);
    window.resize(request.width, request.height);
    window.setScale(request.scale);
    // Scroll bars and layouts are those of a window that stands, seen or not.
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    Photographer photographer(window, request.folder);
    if (!request.isWorkspaceReady && !(photographer.take("start") && fill(window, request.file))) {
        return 1;
    }
    return takeAll(window, photographer) ? 0 : 1;
}

}  // namespace sorvane
