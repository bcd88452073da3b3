#include <benchmark/benchmark.h>
#include <cmath>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"
#include "SorvaneCore/Survey/WeightedEstimators.h"

namespace sorvane {

namespace {

constexpr std::int64_t replicateCount = 200;

std::shared_ptr<const ImportedDataset> read(const std::string& file) {
    return std::make_shared<ImportedDataset>(
        SpreadsheetImporter().importData(WorkloadData::file(file)));
}

std::vector<double> numbers(const ImportedDataset& dataset, const std::string& name) {
    const NumericColumn column = dataset.numericColumn(name);
    std::vector<double> result;
    for (std::size_t row = 0; row < column.size(); ++row) {
        result.push_back(column[row].value_or(std::nan("")));
    }
    return result;
}

Job meanJob(const ImportedDataset& dataset, SurveyDesign design) {
    const auto run = [values = dataset.numericColumn("y1"), design = std::move(design)] {
        auto estimate = WeightedEstimators::mean(values, design);
        benchmark::DoNotOptimize(estimate);
    };
    return {.run = run, .amount = static_cast<double>(dataset.rowCount()), .unit = "rows"};
}

Workload replicates(const std::string& size, double targetSeconds) {
    return {.name = "svy_rep200", .size = size, .targetSeconds = targetSeconds, .prepare = [size] {
                const auto dataset = read("svy_" + size + ".csv");
                SurveyDesign design{.weights = numbers(*dataset, "w")};
                ReplicateWeights weights{.type = ReplicateType::balancedRepeatedReplication};
                for (std::int64_t r = 1; r <= replicateCount; ++r) {
                    weights.weights.push_back(numbers(*dataset, "rw" + std::to_string(r)));
                }
                design.replicateWeights = std::move(weights);
                return meanJob(*dataset, std::move(design));
            }};
}

Workload linearization(const std::string& size, double targetSeconds) {
    return {.name = "svy_taylor", .size = size, .targetSeconds = targetSeconds, .prepare = [size] {
                const auto dataset = read("svy_" + size + ".csv");
                const auto texts = [&dataset](std::string_view name) {
                    return dataset->rows.sharedColumn(*dataset->columnIndex(name));
                };
                return meanJob(*dataset, {.weights = numbers(*dataset, "w"),
                                          .strata = texts("stratum"),
                                          .clusters = texts("psu")});
            }};
}

/// Twenty copies after ten sweeps each, six of ten columns incomplete.
Workload imputation(const std::string& size, double targetSeconds) {
    return {.name = "mice", .size = size, .targetSeconds = targetSeconds, .prepare = [size] {
                const auto dataset = read("mice_" + size + ".csv");
                std::vector<NumericColumn> columns;
                for (const std::string& name : dataset->headers) {
                    columns.push_back(dataset->numericColumn(name));
                }
                const auto run = [columns, names = dataset->headers] {
                    auto result =
                        MultipleImputation::impute(columns, {.variableNames = names, .m = 20});
                    benchmark::DoNotOptimize(result);
                };
                return Job{
                    .run = run, .amount = static_cast<double>(dataset->rowCount()), .unit = "rows"};
            }};
}

}  // namespace

std::vector<Workload> surveyWorkloads() {
    return {replicates("1e4", 0.004),   replicates("1e5", 0.05), linearization("1e4", 0.002),
            linearization("1e5", 0.01), imputation("2e3", 0.3),  imputation("2e4", 2.5)};
}

}  // namespace sorvane
