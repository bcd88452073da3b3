#include <QApplication>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneMac/Shell/MainWindow.h"

namespace sorvane {

namespace {

/// A window that shows nothing, on the data of a file.
struct OpenWindow {
    explicit OpenWindow(const std::filesystem::path& file) : state("Resources"), screens(state) {
        Theme::apply(application, Appearance::light);
        window = std::make_unique<MainWindow>(state, screens);
        state.importData(file);
        window->show();
    }

    int count = 1;
    char name[6] = "bench";
    char* names[2] = {name, nullptr};
    QApplication application{count, names};
    StudioState state;
    StudioScreens screens;
    std::unique_ptr<MainWindow> window;
};

/// Goes to the screen after something in the table changed, so that all it shows is made anew.
Workload switchTo(StudioScreen screen,
                  const std::string& size,
                  double targetSeconds,
                  const std::function<std::filesystem::path()>& file) {
    return {.name = "switch_" + std::string(rawValue(screen)),
            .size = size,
            .targetSeconds = targetSeconds,
            .prepare = [screen, file] {
                qputenv("QT_QPA_PLATFORM", "offscreen");
                qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
                auto open = std::make_shared<OpenWindow>(file());
                return Job{.run =
                               [open, screen] {
                                   open->state.selection.set(StudioScreen::userGuide);
                                   QCoreApplication::processEvents();
                                   open->state.data.dataset.edit([](ImportedDataset&) {});
                                   open->state.selection.set(screen);
                                   QCoreApplication::processEvents();
                               },
                           .amount = 1.0,
                           .unit = "screens"};
            }};
}

}  // namespace

std::vector<Workload> windowWorkloads() {
    using enum StudioScreen;
    std::vector<Workload> workloads;
    for (const StudioScreen screen :
         {overview, importData, dataPreview, instrumentMap, variableTypes, scalesReliability,
          descriptives, correlation, inferential, multilevel}) {
        workloads.push_back(switchTo(screen, "sample", 0.05, [] {
            return std::filesystem::path("Resources/SampleEIStudy.csv");
        }));
        workloads.push_back(
            switchTo(screen, "1e6x20", 0.2, [] { return WorkloadData::file("likert_1e6.csv"); }));
    }
    return workloads;
}

}  // namespace sorvane
