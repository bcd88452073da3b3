#include <stdexcept>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

std::shared_ptr<StudioState> imported(const std::string& stem, const std::string& size) {
    auto state = std::make_shared<StudioState>("Resources");
    state->importData(WorkloadData::file(stem + "_" + size + ".csv"));
    return state;
}

void require(bool succeeded, const StudioState& state) {
    if (!succeeded) {
        throw std::runtime_error(state.projectError->value_or("The project was not there."));
    }
}

std::filesystem::path projectFile(const std::string& stem, const std::string& size) {
    std::filesystem::create_directories("bench-data");
    return "bench-data/" + stem + "_" + size + ".svp";
}

/// From the workspace to the file, flushed to disk.
Workload saveOf(const std::string& stem, const std::string& size, double targetSeconds) {
    return {.name = "project_save", .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                const std::filesystem::path file = projectFile(stem, size);
                const auto state = imported(stem, size);
                require(state->saveProject(file), *state);
                return Job{.run = [state, file] { require(state->saveProject(file), *state); },
                           .amount = static_cast<double>(std::filesystem::file_size(file)),
                           .unit = "bytes"};
            }};
}

/// From the file to the workspace, its columns classified.
Workload openOf(const std::string& stem, const std::string& size, double targetSeconds) {
    return {.name = "project_open", .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                const std::filesystem::path file = projectFile(stem, size);
                // A file of a former run leaves the import out of the peak of memory.
                if (!std::filesystem::exists(file)) {
                    const auto state = imported(stem, size);
                    require(state->saveProject(file), *state);
                }
                const auto state = std::make_shared<StudioState>("Resources");
                return Job{.run = [state, file] { require(state->openProject(file), *state); },
                           .amount = static_cast<double>(std::filesystem::file_size(file)),
                           .unit = "bytes"};
            }};
}

/// What is waited for at the window while an autosave is handed over.
Workload autosaveOf(const std::string& stem, const std::string& size, double targetSeconds) {
    return {.name = "autosave_wait", .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                const auto state = imported(stem, size);
                state->keepAutosaveIn("bench-data");
                return Job{
                    .run = [state] { state->autosave(); }, .amount = 1.0, .unit = "autosaves"};
            }};
}

}  // namespace

std::vector<Workload> projectWorkloads() {
    return {saveOf("proj", "1e4", 0.012),      saveOf("proj", "1e5", 0.12),
            saveOf("likert", "1e6", 2.0),      openOf("proj", "1e4", 0.018),
            openOf("proj", "1e5", 0.18),       openOf("likert", "1e6", 2.0),
            autosaveOf("likert", "1e6", 0.016)};
}

}  // namespace sorvane
