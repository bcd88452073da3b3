#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "Benchmarks/Workload.h"
#include "Benchmarks/WorkloadData.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"

namespace sorvane {

namespace {

using Fit = std::optional<MultilevelResult> (*)(const MultilevelData&, const MultilevelOptions&);

/// A model of y, and the file's columns that it takes.
struct Model {
    std::string name;
    std::string stem;
    std::string cluster;
    std::string cluster2;
    MultilevelOptions options;
    Fit fit = MultilevelModel::fit;
};

MultilevelData columns(const ImportedDataset& dataset, const Model& model) {
    const auto texts = [&dataset](const std::string& name) {
        const std::optional<std::size_t> column = dataset.columnIndex(name);
        return column ? dataset.rows.sharedColumn(*column) : nullptr;
    };
    MultilevelData result{.outcome = dataset.numericColumn("y"),
                          .cluster = texts(model.cluster),
                          .cluster2 = texts(model.cluster2)};
    for (const std::string& predictor : model.options.fixedNames) {
        result.fixedPredictors.push_back(dataset.numericColumn(predictor));
    }
    return result;
}

Workload fitting(const Model& model, const std::string& size, double targetSeconds) {
    return {.name = model.name, .size = size, .targetSeconds = targetSeconds, .prepare = [=] {
                const std::filesystem::path file =
                    WorkloadData::file(model.stem + "_" + size + ".csv");
                const auto data = std::make_shared<MultilevelData>(
                    columns(SpreadsheetImporter().importData(file), model));
                return Job{.run =
                               [model, data] {
                                   auto result = model.fit(*data, model.options);
                                   benchmark::DoNotOptimize(result);
                               },
                           .amount = static_cast<double>(data->outcome.size()),
                           .unit = "rows"};
            }};
}

}  // namespace

std::vector<Workload> multilevelWorkloads() {
    const MultilevelOptions intercepts{.fixedNames = {"x1", "x2", "x3"},
                                       .dfMethod = MultilevelDFMethod::satterthwaite};
    MultilevelOptions slopes = intercepts;
    slopes.randomSlopeName = "x1";
    MultilevelOptions exact = slopes;
    exact.dfMethod = MultilevelDFMethod::kenwardRoger;
    const MultilevelOptions two{.fixedNames = {"x1", "x2"},
                                .dfMethod = MultilevelDFMethod::satterthwaite};
    const Model schools{"lmm_ri", "lmm_ri", "school", {}, intercepts};
    const Model slopesOfSchools{"lmm_slope", "lmm_rs", "school", {}, exact};
    const Model largeSchools{"lmm_huge", "lmm_huge", "school", {}, slopes};
    const Model answers{"lmm_cross", "lmm_cross", "subject", "item", two};
    const Model cures{"glmm_agq15", "glmm", "clinic", {}, two, MultilevelGLMM::fitLogisticRI};
    return {fitting(schools, "1e4", 0.003),
            fitting(schools, "1e5", 0.02),
            fitting(slopesOfSchools, "2e3", 0.01),
            fitting(slopesOfSchools, "1e4", 0.03),
            fitting(largeSchools, "1e4", 0.003),
            fitting(largeSchools, "1e5", 0.02),
            fitting(answers, "5e3", 0.03),
            fitting(answers, "2e4", 0.2),
            fitting(answers, "6e4", 1.5),
            fitting(cures, "2e3", 0.08),
            fitting(cures, "1e4", 0.4)};
}

}  // namespace sorvane
