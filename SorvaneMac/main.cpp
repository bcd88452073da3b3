#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QApplication>
#include <QByteArray>
#include <QEventLoop>

#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Platform/ResourceDirectory.h"
#include "SorvaneMac/Platform/SettingsDefaults.h"
#include "SorvaneMac/Platform/SupportDirectory.h"
#include "SorvaneMac/Platform/ThreadTaskRunner.h"
#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/Shell/ChartImages.h"
#include "SorvaneMac/Shell/ReviewDesk.h"
#include "SorvaneMac/Shell/ScriptedReview.h"
#include "SorvaneMac/Shell/Window.h"

namespace {

using namespace sorvane;  // NOLINT(google-build-using-namespace)

/// What follows an option such as "--project"; absent without the option.
std::optional<std::string> valueAfter(const std::vector<std::string>& words,
                                      const std::string& option) {
    for (std::size_t at = 0; at + 1 < words.size(); ++at) {
        if (words[at] == option) {
            return words[at + 1];
        }
    }
    return std::nullopt;
}

constexpr std::string_view usage =
    "sorvane [FILE]                              opens the window, on a project or data file\n"
    "sorvane call PROCEDURE [--data FILE] [--pretty] [ARGS.json]\n"
    "                                            calls a procedure by name\n"
    "sorvane procedures                          lists them with their arguments\n"
    "sorvane describe FILE [--rows N]            prints what an import finds\n"
    "sorvane run SCRIPT.json [--out DIR]         runs a studio script\n"
    "sorvane operations                          lists what a script's `do` can call\n"
    "sorvane --screenshots DIR [--project FILE | --script SCRIPT.json]\n"
    "        [--size WIDTHxHEIGHT] [--scale 1..2]\n"
    "                                            draws every screen, light and dark\n"
    "sorvane --help, sorvane --version\n";

constexpr std::string_view labShell = "-BriselNavigationSplitShellSpike";

/// What `--screenshots` asks for; absent where the folder, size or scale cannot be read.
std::optional<ScreenshotRequest> screenshotRequest(const std::vector<std::string>& words) {
    ScreenshotRequest request;
    const std::optional<std::string> folder = valueAfter(words, "--screenshots");
    const QStringList size =
        QString::fromStdString(valueAfter(words, "--size").value_or("1280x800")).split('x');
    bool isWidth = false;
    bool isHeight = false;
    bool isScale = false;
    request.width = size.front().toInt(&isWidth);
    request.height = size.back().toInt(&isHeight);
    request.scale =
        QString::fromStdString(valueAfter(words, "--scale").value_or("1")).toDouble(&isScale);
    if (!folder || size.size() != 2 || !isWidth || !isHeight || !isScale) {
        return std::nullopt;
    }
    request.folder = *folder;
    request.file = valueAfter(words, "--project");
    request.isWorkspaceReady = valueAfter(words, "--script").has_value();
    return request;
}

bool isSet(const char* variable) {
    return !qEnvironmentVariableIsEmpty(variable);
}

/// What stands against opening a window on these words: the exit status and a sentence.
std::optional<std::pair<int, std::string>> objection(const std::vector<std::string>& words) {
    if (!words.empty() && !words.front().starts_with("-") &&
        !std::filesystem::exists(words.front())) {
        return std::pair(2, "There is no command and no file \"" + words.front() +
                                "\"; `sorvane --help` lists the commands.");
    }
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM")) {
        return std::pair(1, std::string("There is no display to open a window on; `sorvane --help` "
                                        "lists what needs none."));
    }
    return std::nullopt;
}

/// Without a window the toolkit's own remarks are noise between the answers.
void passOnFailuresAlone(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::cerr << message.toStdString() << '\n';
    }
}

std::unique_ptr<TextGenerator> generatorOf(StudioState& state) {
    return std::make_unique<LoopbackTextGenerator>([&state] { return generatorSettings(state); });
}

void letEventsPass(const std::function<bool()>& holds) {
    while (!holds()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

ProgramParts programParts() {
    return {.resources = resourceDirectory(),
            .drawFigure = &chartPng,
            .drafting = {.makeGenerator = &generatorOf, .waitUntil = &letEventsPass},
            .liveReview = &offerLiveReview};
}

int runCommandLine(const std::vector<std::string>& words, int& count, char** arguments) {
    // A script may draw figures and print pages, which takes the toolkit but no display.
    std::optional<QApplication> application;
    if (words.front() == "run") {
        qInstallMessageHandler(&passOnFailuresAlone);
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application.emplace(count, arguments);
    }
    return static_cast<int>(Commands::run(words, programParts(),
                                          {.in = std::cin, .out = std::cout, .error = std::cerr}));
}

int takePictures(QApplication& application,
                 const std::vector<std::string>& words,
                 const ScreenshotRequest& request) {
    StudioState state(resourceDirectory());
    StudioScreens screens(state);
    if (const std::optional<std::string> script = valueAfter(words, "--script")) {
        const ExitStatus status =
            performScript(state, screens, {.script = *script, .output = request.folder},
                          programParts(), {.in = std::cin, .out = std::cout, .error = std::cerr});
        if (status != ExitStatus::success) {
            return static_cast<int>(status);
        }
    }
    return drawScreenshots(application, state, screens, request);
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (!words.empty() && Commands::isCommand(words.front())) {
        return runCommandLine(words, count, arguments);
    }
    if (!words.empty() && (words.front() == "--help" || words.front() == "help")) {
        std::cout << usage;
        return 0;
    }
    if (!words.empty() && words.front() == "--version") {
        std::cout << "Sorvane 0.1.0\n";
        return 0;
    }
    const bool pictures = !words.empty() && words.front() == "--screenshots";
    const std::optional<ScreenshotRequest> request =
        pictures ? screenshotRequest(words) : std::nullopt;
    if (pictures && !request) {
        std::cerr << "Name a folder, and a size such as 1280x800 or a scale from 1 to 2: sorvane "
                     "--screenshots DIR --size 1280x800 --scale 1\n";
        return 2;
    }
    if (const auto reason = pictures ? std::nullopt : objection(words)) {
        std::cerr << reason->second << '\n';
        return reason->first;
    }
    if (pictures) {
        qInstallMessageHandler(&passOnFailuresAlone);
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(count, arguments);
    if (request) {
        return takePictures(application, words, *request);
    }
    StudioState state(resourceDirectory(), std::make_unique<ThreadTaskRunner>(),
                      settingsDefaults());
    state.keepAutosaveIn(supportDirectory());
    StudioScreens screens(state);
    WindowRequest window;
    for (const std::string& word : words) {
        if (word == labShell) {
            window.form = WindowForm::splitLab;
        } else if (!word.starts_with("-")) {
            window.file = word;
        }
    }
    return openWindow(application, state, screens, window);
}
