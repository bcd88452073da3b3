#include <benchmark/benchmark.h>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Models/LatentClassModel.h"

namespace sorvane {

namespace {

std::vector<std::string> numbered(const std::string& stem) {
    std::vector<std::string> names;
    for (const char* digit : {"1", "2", "3", "4", "5", "6"}) {
        names.push_back(stem + digit);
    }
    return names;
}

std::shared_ptr<const ImportedDataset> read(const std::string& size) {
    return std::make_shared<ImportedDataset>(
        SpreadsheetImporter().importData(WorkloadData::file("mix_" + size + ".csv")));
}

/// Calls `fit` with each number of classes.
template <typename Fit>
void sweep(const std::vector<std::string>& names, const Fit& fit) {
    for (auto classes = LatentClassModel::fewestClasses; classes <= LatentClassModel::mostClasses;
         ++classes) {
        auto result = fit(LatentClassOptions{.variableNames = names, .classCount = classes});
        benchmark::DoNotOptimize(result);
    }
}

Workload profiles(const std::string& size, double targetSeconds) {
    return {.name = "lpa", .size = size, .targetSeconds = targetSeconds, .prepare = [size] {
                const auto dataset = read(size);
                const std::vector<std::string> names = numbered("v");
                std::vector<NumericColumn> columns;
                for (const std::string& name : names) {
                    columns.push_back(dataset->numericColumn(name));
                }
                const auto run = [names, columns] {
                    sweep(names, [&columns](const LatentClassOptions& options) {
                        return LatentClassModel::fitProfile(columns, options);
                    });
                };
                return Job{
                    .run = run, .amount = static_cast<double>(dataset->rowCount()), .unit = "rows"};
            }};
}

Workload classes(const std::string& size, double targetSeconds) {
    return {.name = "lca", .size = size, .targetSeconds = targetSeconds, .prepare = [size] {
                const auto dataset = read(size);
                const std::vector<std::string> names = numbered("b");
                std::vector<const TextColumn*> columns;
                for (const std::string& name : names) {
                    columns.push_back(&dataset->rows.column(*dataset->columnIndex(name)));
                }
                const auto run = [dataset, names, columns] {
                    sweep(names, [&columns](const LatentClassOptions& options) {
                        return LatentClassModel::fitClass(columns, options);
                    });
                };
                return Job{
                    .run = run, .amount = static_cast<double>(dataset->rowCount()), .unit = "rows"};
            }};
}

}  // namespace

std::vector<Workload> latentClassWorkloads() {
    return {profiles("1e3", 0.3), profiles("5e3", 1.2), classes("1e3", 0.05)};
}

}  // namespace sorvane
