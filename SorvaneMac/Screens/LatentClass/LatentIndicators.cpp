#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

namespace {

constexpr std::int64_t casesPerProfile = 3;
constexpr std::int64_t casesPerClass = 5;
constexpr std::size_t fewestIndicators = 2;
constexpr std::int64_t maxIterations = 200;
constexpr std::int64_t randomStarts = 12;
constexpr std::uint64_t seed = 1;

bool hasCategories(LatentMixtureMode mode) {
    return mode == LatentMixtureMode::classAnalysis;
}

}  // namespace

std::optional<LatentClassResult> LatentIndicators::fit(std::int64_t classCount,
                                                       Progress progress) const {
    const LatentClassOptions options{.variableNames = names,
                                     .classCount = classCount,
                                     .maxIterations = maxIterations,
                                     .randomStarts = randomStarts,
                                     .seed = seed,
                                     .progress = std::move(progress)};
    if (!hasCategories(mode)) {
        return LatentClassModel::fitProfile(numbers, options);
    }
    std::vector<const TextColumn*> columns;
    for (const std::shared_ptr<const TextColumn>& column : texts) {
        columns.push_back(column.get());
    }
    return LatentClassModel::fitClass(columns, options);
}

VariableLists::List LatentIndicators::candidates(const ImportedDataset& dataset,
                                                 LatentMixtureMode mode) {
    return hasCategories(mode)
               ? SuitedVariables::withFewCategories(SuitedVariables::analyzed(dataset))
               : VariableLists::numericVariables(dataset);
}

std::vector<std::string> LatentIndicators::chosen(const ImportedDataset& dataset,
                                                  const LatentClassFields& fields,
                                                  LatentMixtureMode mode) {
    return FormControls::chosen(fields.lcItems.get(), candidates(dataset, mode));
}

LatentIndicators LatentIndicators::of(const ImportedDataset& dataset,
                                      const LatentClassFields& fields,
                                      LatentMixtureMode mode) {
    LatentIndicators indicators{.mode = mode, .names = chosen(dataset, fields, mode)};
    for (const std::string& name : indicators.names) {
        if (hasCategories(mode)) {
            indicators.texts.push_back(Categories::cells(dataset, name));
        } else {
            indicators.numbers.push_back(dataset.numericColumn(name));
        }
    }
    return indicators;
}

std::optional<Gate> LatentIndicators::gate(const ImportedDataset& dataset,
                                           const LatentClassFields& fields,
                                           LatentMixtureMode mode) {
    if (std::optional<Gate> gone = SelectionGates::goneColumn(
            fields.lcItems, SuitedVariables::analyzed(dataset), "analyzed columns")) {
        return gone;
    }
    if (chosen(dataset, fields, mode).size() >= fewestIndicators) {
        return std::nullopt;
    }
    return Gate{.title = "Select at least two indicators",
                .lead = "",
                .text = hasCategories(mode)
                            ? "Check two or more columns with two to eight answer categories in "
                              "the Setup panel."
                            : "Check two or more numeric columns in the Setup panel."};
}

std::optional<Gate> LatentIndicators::tooFewCases(const ImportedDataset& dataset,
                                                  const LatentClassFields& fields,
                                                  LatentMixtureMode mode) {
    const std::vector<std::string> items = chosen(dataset, fields, mode);
    const std::int64_t count = fields.lcClassCount.get();
    const std::int64_t wanted = count * (hasCategories(mode) ? casesPerClass : casesPerProfile);
    const bool isEnough = hasCategories(mode)
                              ? Categories::hasCompleteRows(dataset, wanted, {}, items)
                              : Categories::hasCompleteRows(dataset, wanted, items);
    if (isEnough) {
        return std::nullopt;
    }
    return Gate{.title = "There are too few complete cases",
                .lead = "",
                .text = "Need at least " + ResultText::count(wanted) + " complete cases for a " +
                        ResultText::count(count) + "-class " +
                        (hasCategories(mode) ? "LCA." : "profile model.")};
}

}  // namespace sorvane
