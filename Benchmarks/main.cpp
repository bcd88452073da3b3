#include <algorithm>
#include <benchmark/benchmark.h>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "Benchmarks/Workload.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

/// Short jobs repeat until this time has passed; the median is of so many such measurements.
constexpr double secondsPerMeasurement = 0.2;
constexpr int measurements = 5;

enum class Layout { forReading, tabSeparated };

/// What a child process reports of its workload.
struct Measured {
    double seconds = 0.0;
    double perSecond = 0.0;
    double peakMebibytes = 0.0;
    char unit[16] = {};
};

/// Keeps the real time of each measurement and prints nothing.
class TimeKeeper : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                seconds_.push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
            }
        }
    }
    double medianSeconds() {
        const auto middle = seconds_.begin() + static_cast<std::ptrdiff_t>(seconds_.size() / 2);
        std::nth_element(seconds_.begin(), middle, seconds_.end());
        return middle == seconds_.end() ? 0.0 : *middle;
    }

private:
    std::vector<double> seconds_;
};

Measured measure(const Workload& workload) {
    const Job job = workload.prepare();
    benchmark::RegisterBenchmark(workload.name.c_str(),
                                 [&job](benchmark::State& state) {
                                     for ([[maybe_unused]] const auto& step : state) {
                                         job.run();
                                     }
                                 })
        ->MinTime(secondsPerMeasurement)
        ->Repetitions(measurements)
        ->UseRealTime();
    TimeKeeper times;
    benchmark::RunSpecifiedBenchmarks(&times);

    Measured measured;
    measured.seconds = times.medianSeconds();
    measured.perSecond = job.amount / measured.seconds;
    std::copy_n(job.unit.data(), std::min(job.unit.size(), std::size(measured.unit) - 1),
                measured.unit);
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    measured.peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return measured;
}

/// Measures in a process of its own, so that the peak of memory is this workload's and no other's.
/// Absent when that process fails; it has said why.
std::optional<Measured> measureApart(const Workload& workload) {
    int ends[2] = {};
    if (pipe(ends) != 0) {
        return std::nullopt;
    }
    const pid_t child = fork();
    if (child == 0) {
        bool wrote = false;
        try {
            const Measured measured = measure(workload);
            wrote = write(ends[1], &measured, sizeof measured) == sizeof measured;
        } catch (const std::exception& error) {
            std::cerr << workload.name << ": " << error.what() << '\n';
        }
        _exit(wrote ? 0 : 1);
    }
    close(ends[1]);
    Measured measured;
    const bool came = child > 0 && read(ends[0], &measured, sizeof measured) == sizeof measured;
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    return came ? std::optional(measured) : std::nullopt;
}

std::string secondsText(double seconds) {
    return seconds < 1.0 ? NumberText::general(seconds * 1e3, 3) + " ms"
                         : NumberText::general(seconds, 3) + " s";
}

std::string throughputText(const Measured& measured) {
    const bool inMillions = measured.perSecond >= 1e6;
    std::string text = inMillions ? NumberText::general(measured.perSecond / 1e6, 3) + " M"
                                  : NumberText::fixed(measured.perSecond, 0);
    return text + " " + measured.unit + "/s";
}

void printLine(const std::vector<std::string>& cells, Layout layout) {
    constexpr std::size_t width[] = {14, 7, 12, 12, 9, 20, 10};
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::cout << cells[i];
        if (layout == Layout::tabSeparated) {
            std::cout << (i + 1 < cells.size() ? "\t" : "");
        } else {
            std::cout << std::string(
                std::max<std::size_t>(width[i], cells[i].size() + 1) - cells[i].size(), ' ');
        }
    }
    std::cout << std::endl;
}

void print(const Workload& workload, const Measured& measured, Layout layout) {
    if (layout == Layout::tabSeparated) {
        printLine({workload.name, workload.size, NumberText::general(measured.seconds, 6),
                   NumberText::general(measured.peakMebibytes, 4)},
                  layout);
        return;
    }
    printLine({workload.name, workload.size, secondsText(measured.seconds),
               secondsText(workload.targetSeconds),
               NumberText::general(measured.seconds / workload.targetSeconds, 2),
               throughputText(measured), NumberText::fixed(measured.peakMebibytes, 0) + " MiB"},
              layout);
}

std::vector<Workload> allWorkloads() {
    std::vector<Workload> all;
    for (const auto& some :
         {importWorkloads, analysisWorkloads, latentClassWorkloads, modelFamilyWorkloads,
          multilevelWorkloads, editingWorkloads, preparationWorkloads, projectWorkloads,
          reportWorkloads, surveyWorkloads, windowWorkloads}) {
        std::ranges::move(some(), std::back_inserter(all));
    }
    return all;
}

/// Words: a pattern that names hold, and "--tsv" for tab-separated lines. Returns the exit status.
int run(const std::vector<std::string>& words) {
    std::string pattern;
    Layout layout = Layout::forReading;
    for (const std::string& word : words) {
        if (word == "--tsv") {
            layout = Layout::tabSeparated;
        } else {
            pattern = word;
        }
    }
    if (layout == Layout::forReading) {
        printLine({"workload", "size", "seconds", "target", "x target", "throughput", "peak"},
                  layout);
    }
    int failures = 0;
    int found = 0;
    for (const Workload& workload : allWorkloads()) {
        if ((workload.name + "/" + workload.size).find(pattern) == std::string::npos) {
            continue;
        }
        ++found;
        if (const std::optional<Measured> measured = measureApart(workload)) {
            print(workload, *measured, layout);
        } else {
            ++failures;
        }
    }
    if (found == 0) {
        std::cerr << "No workload's name holds \"" << pattern << "\".\n";
    }
    return failures == 0 && found > 0 ? 0 : 1;
}

}  // namespace

}  // namespace sorvane

int main(int argc, char** argv) {
    return sorvane::run({argv + 1, argv + argc});
}
