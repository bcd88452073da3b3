#include <benchmark/benchmark.h>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"

namespace sorvane {

namespace {

Workload importOf(const std::string& name,
                  const std::string& dataFile,
                  const std::string& size,
                  double targetSeconds) {
    return {.name = name, .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                const std::filesystem::path file = WorkloadData::file(dataFile);
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
    return {importOf("csv_likert", "likert_1e5.csv", "1e5", 0.025),
            importOf("csv_likert", "likert_1e6.csv", "1e6", 0.2),
            importOf("csv_numeric", "reg_1e5.csv", "1e5", 0.07),
            importOf("csv_numeric", "reg_1e6.csv", "1e6", 0.7),
            importOf("csv_wide", "wide_500.csv", "500", 0.025),
            importOf("csv_wide", "wide_2000.csv", "2000", 0.09),
            importOf("csv_text", "text_2e4.csv", "2e4", 0.035),
            importOf("csv_text", "text_2e5.csv", "2e5", 0.3),
            importOf("sav_byte", "stat_1e5_byte.sav", "1e5", 0.08),
            importOf("sav_byte", "stat_5e5_byte.sav", "5e5", 0.4),
            importOf("sav_none", "stat_1e5_none.sav", "1e5", 0.08),
            importOf("sav_none", "stat_5e5_none.sav", "5e5", 0.4),
            importOf("dta_118", "stat_1e5.dta", "1e5", 0.08),
            importOf("dta_118", "stat_5e5.dta", "5e5", 0.4),
            importOf("xlsx", "xlsx_1e4.xlsx", "1e4", 0.05),
            importOf("xlsx", "xlsx_5e4.xlsx", "5e4", 0.25)};
}

}  // namespace sorvane
