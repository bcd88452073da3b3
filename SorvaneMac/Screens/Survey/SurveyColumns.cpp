#include "SorvaneMac/Screens/Survey/SurveyColumns.h"

#include <algorithm>
#include <boost/describe/enum_from_string.hpp>
#include <cmath>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::SurveyColumns {

namespace {

using VariableLists::List;

constexpr std::int64_t mostGroups = 60;

void addBlankRows(std::vector<std::string>& cautions,
                  const TextColumn* column,
                  std::string_view what) {
    if (!column) {
        return;
    }
    std::int64_t blank = 0;
    for (std::size_t row = 0; row < column->size(); ++row) {
        blank += (*column)[row].empty() ? 1 : 0;
    }
    if (blank > 0) {
        const std::string unit(what);
        cautions.push_back(DatasetText::counted(blank, "row") + " without a " + unit +
                           (blank == 1 ? " was" : " were") + " taken as a " + unit +
                           (blank == 1 ? " of its own" : " of their own") +
                           "; the documentation of the design should say where they belong.");
    }
}

/// Population counts that are smaller than the sample, or differ within a stratum.
void addCorrection(std::vector<std::string>& cautions, const SurveyDesign& design) {
    const SampledUnits units = SampledUnits::of(design);
    const std::vector<std::int64_t> sampled = units.unitsPerStratum();
    std::vector<double> first(units.stratumCount, std::nan(""));
    bool differ = false;
    std::vector<bool> isTooSmall(units.stratumCount, false);
    for (std::size_t row = 0; row < design.weights.size(); ++row) {
        const std::uint32_t stratum = units.stratumOfRow[row];
        const double count = (*design.fpc)[row];
        differ = differ || (!std::isnan(first[stratum]) && first[stratum] != count);
        first[stratum] = std::isnan(first[stratum]) ? count : first[stratum];
        isTooSmall[stratum] = count < static_cast<double>(sampled[stratum]);
    }
    if (differ) {
        cautions.emplace_back(
            "The finite population correction differs within a stratum, where one count of PSUs is "
            "expected.");
    }
    const auto small = std::ranges::count(isTooSmall, true);
    if (small > 0) {
        cautions.push_back(
            "In " + ResultText::count(small) +
            " stratum/strata the population is said to have fewer PSUs than were sampled; they "
            "contribute no variance. Check that the correction counts PSUs of the population.");
    }
}

}  // namespace

std::optional<std::vector<double>> replicateScales(std::string_view text) {
    std::vector<double> numbers;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(",; \t\n"), text.size());
        const std::string_view word = UnicodeText::trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (word.empty()) {
            continue;
        }
        const std::optional<double> number = NumberText::parse(word);
        if (!number || !(*number >= 0.0)) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    return numbers;
}

List possibleWeights(const ImportedDataset& dataset) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        if (variable.numericSummary && variable.assignedType != VariableKind::exclude) {
            list.push_back(&variable);
        }
    }
    return list;
}

List possibleLabels(const ImportedDataset& dataset) {
    List list;
    for (const DataVariable& variable : dataset.variables) {
        if (variable.assignedType != VariableKind::exclude && variable.uniqueCount > 0) {
            list.push_back(&variable);
        }
    }
    return list;
}

List possibleGroups(const ImportedDataset& dataset) {
    List list = possibleLabels(dataset);
    std::erase_if(list, [](const DataVariable* variable) {
        return variable->uniqueCount < 2 || variable->uniqueCount > mostGroups;
    });
    return list;
}

bool isPositive(const DataVariable& variable) {
    return variable.numericSummary->minimum > 0.0;
}

std::optional<WeightedEstimand> estimandOf(const SurveyFields& fields) {
    WeightedEstimand estimand{};
    return boost::describe::enum_from_string(fields.svEstimand->c_str(), estimand)
               ? std::optional(estimand)
               : std::nullopt;
}

bool isMoreThanWeights(const SurveyDesign& design) {
    return design.strata || design.clusters || design.fpc || design.replicateWeights;
}

SurveyDesign weightsAlone(const SurveyDesign& design) {
    return {.weights = design.weights, .confidenceLevel = design.confidenceLevel};
}

SurveyDesign unweighted(const SurveyDesign& design) {
    return {.weights = std::vector<double>(design.weights.size(), 1.0),
            .confidenceLevel = design.confidenceLevel};
}

std::vector<std::string> designNotes(const ImportedDataset& dataset, const SurveyFields& fields) {
    if (dataset.headers.empty()) {
        return {};
    }
    const auto labels = [&dataset](const Field<VariableName>& field) {
        return dataset.columnIndex(field->name) ? Categories::cells(dataset, field->name) : nullptr;
    };
    SurveyDesign design{
        .weights = std::vector<double>(static_cast<std::size_t>(dataset.rowCount()), 1.0),
        .strata = labels(fields.svStrata),
        .clusters = labels(fields.svCluster)};
    if (!fields.svReplicates->empty()) {
        design.replicateWeights.emplace();
    }
    std::vector<std::string> notes;
    for (AnalysisReadinessIssue& issue : design.readinessIssues()) {
        notes.push_back(std::move(issue.message));
    }
    return notes;
}

std::vector<std::string> cautions(const SurveyDesign& design) {
    std::vector<std::string> cautions;
    addBlankRows(cautions, design.strata.get(), "stratum");
    addBlankRows(cautions, design.clusters.get(), "PSU");
    if (design.fpc && design.replicateWeights) {
        cautions.emplace_back(
            "The finite population correction is not applied to replicate variances; replicate "
            "weights bring their own.");
    } else if (design.fpc) {
        addCorrection(cautions, design);
    }
    return cautions;
}

}  // namespace sorvane::SurveyColumns
