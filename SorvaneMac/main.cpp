#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <QApplication>
#include <QByteArray>

#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Platform/ResourceDirectory.h"
#include "SorvaneMac/Platform/ThreadTaskRunner.h"
#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/Shell/ChartImages.h"
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

int runCommandLine(const std::vector<std::string>& words, int& count, char** arguments) {
    // A script may draw figures and print pages, which takes the toolkit but no display.
    std::optional<QApplication> application;
    if (words.front() == "run") {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application.emplace(count, arguments);
    }
    const ProgramParts program{.resources = resourceDirectory(), .drawFigure = &chartPng};
    return static_cast<int>(
        Commands::run(words, program, {.in = std::cin, .out = std::cout, .error = std::cerr}));
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (!words.empty() && Commands::isCommand(words.front())) {
        return runCommandLine(words, count, arguments);
    }
    const std::optional<std::string> pictures = valueAfter(words, "--screenshots");
    if (pictures) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(count, arguments);
    StudioState state(resourceDirectory(), std::make_unique<ThreadTaskRunner>());
    StudioScreens screens(state);
    if (pictures) {
        return drawScreenshots(application, state, screens, *pictures,
                               valueAfter(words, "--project"));
    }
    std::optional<std::filesystem::path> file;
    if (!words.empty()) {
        file = words.front();
    }
    return openWindow(application, state, screens, file);
}
