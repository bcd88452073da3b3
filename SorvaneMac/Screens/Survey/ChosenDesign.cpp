#include "SorvaneMac/Screens/Survey/ChosenDesign.h"

#include <cmath>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"

namespace sorvane {

namespace {

constexpr double percent = 100.0;

/// Null for an unknown column, and a blank name.
ChosenDesign::Column columnOf(const ImportedDataset& dataset, const std::string& name) {
    const std::optional<std::size_t> index = dataset.columnIndex(name);
    return index ? dataset.rows.sharedColumn(*index) : nullptr;
}

/// One number per row, NaN where a cell has none.
std::vector<double> numbers(const ChosenDesign::Column& cells) {
    const NumericColumn column(cells);
    std::vector<double> result(column.size());
    for (std::size_t row = 0; row < result.size(); ++row) {
        result[row] = column[row].value_or(std::nan(""));
    }
    return result;
}

std::vector<std::string> replicateNames(const ImportedDataset& dataset,
                                        const SurveyFields& fields) {
    return FormControls::chosen(
        fields.svReplicates.get(),
        VariableLists::without(SurveyColumns::possibleWeights(dataset), {fields.svWeight->name}));
}

/// One number stands for all replicates.
std::vector<double> scalesOf(const SurveyFields& fields, std::size_t replicates) {
    std::vector<double> given = SurveyColumns::replicateScales(fields.svReplicateScale.get())
                                    .value_or(std::vector<double>());
    if (given.size() == 1) {
        given.assign(replicates, given.front());
    }
    return given;
}

}  // namespace

ChosenDesign ChosenDesign::of(const ImportedDataset& dataset, const SurveyFields& fields) {
    ChosenDesign chosen{
        .named = {.weight = fields.svWeight->name,
                  .strata = fields.svStrata->name,
                  .clusters = fields.svCluster->name,
                  .fpc = fields.svFpc->name},
        .weight = columnOf(dataset, fields.svWeight->name),
        .strata = columnOf(dataset, fields.svStrata->name),
        .clusters = columnOf(dataset, fields.svCluster->name),
        .fpc = columnOf(dataset, fields.svFpc->name),
        .confidenceLevel = static_cast<double>(fields.svConfidence.get()) / percent};
    for (const std::string& name : replicateNames(dataset, fields)) {
        chosen.replicates.push_back(columnOf(dataset, name));
    }
    if (!chosen.replicates.empty()) {
        chosen.replicateScale = scalesOf(fields, chosen.replicates.size());
        chosen.named.replicateCount = std::ssize(chosen.replicates);
        chosen.named.replicateType = fields.svReplicateType.get();
        chosen.named.fayRho = fields.svFayRho.get();
        chosen.named.isScaled = !chosen.replicateScale.empty();
    }
    return chosen;
}

SurveyDesign ChosenDesign::design() const {
    SurveyDesign design{.weights = numbers(weight), .confidenceLevel = confidenceLevel};
    if (strata) {
        design.strata = Categories::cells(strata);
    }
    if (clusters) {
        design.clusters = Categories::cells(clusters);
    }
    if (fpc) {
        design.fpc = numbers(fpc);
    }
    if (!replicates.empty()) {
        ReplicateWeights weights{.type = named.replicateType, .fayRho = named.fayRho};
        for (const Column& each : replicates) {
            weights.weights.push_back(numbers(each));
        }
        if (!replicateScale.empty()) {
            weights.replicateScale = replicateScale;
        }
        design.replicateWeights = std::move(weights);
    }
    return design;
}

SurveyDesignUsed ChosenDesign::used(const SurveyDesign& design) const {
    const SampledUnits units = SampledUnits::of(design);
    SurveyDesignUsed used = named;
    used.stratumCount = static_cast<std::int64_t>(units.stratumCount);
    used.psuCount = std::ssize(units.stratumOfUnit);
    return used;
}

}  // namespace sorvane
