#include <benchmark/benchmark.h>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"

namespace sorvane {

namespace {

Workload importOf(const std::string& name,
                  const std::string& stem,
                  const std::string& size,
                  double targetSeconds) {
    return {.name = name, .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                const std::filesystem::path file = WorkloadData::file(stem + "_" + size + ".csv");
                return Job{.run =
                               [file] {
                                   ImportedDataset dataset = SpreadsheetImporter().importData(file);
                                   benchmark::DoNotOptimize(dataset);
                               },
                           .amount = static_cast<double>(std::filesystem::file_size(file)),
                           .unit = "bytes"};
            }};
}

}  // namespace

std::vector<Workload> importWorkloads() {
    return {importOf("csv_likert", "likert", "1e5", 0.025),
            importOf("csv_likert", "likert", "1e6", 0.2),
            importOf("csv_numeric", "reg", "1e5", 0.07),
            importOf("csv_numeric", "reg", "1e6", 0.7),
            importOf("csv_wide", "wide", "500", 0.025),
            importOf("csv_wide", "wide", "2000", 0.09),
            importOf("csv_text", "text", "2e4", 0.035),
            importOf("csv_text", "text", "2e5", 0.3)};
}

}  // namespace sorvane
