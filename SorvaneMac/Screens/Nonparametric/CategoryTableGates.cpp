#include "SorvaneMac/Screens/Nonparametric/CategoryTableGates.h"

#include <algorithm>
#include <array>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::CategoryTableGates {

namespace {

Gate tableStopped(std::string reason) {
    return {.title = "Could not build the contingency table for the current selection.",
            .lead = "",
            .text = std::move(reason)};
}

/// The categories of one column among the rows that have one in both.
std::vector<std::string> pairedCategories(const ImportedDataset& dataset,
                                          const Field<VariableName>& field,
                                          const Field<VariableName>& other) {
    const std::array<std::string, 2> names = {field->name, other->name};
    return Categories::completeRows(dataset, {}, names).categories;
}

/// "gender has 3 categories"
std::string countWords(const std::string& column, const std::vector<std::string>& categories) {
    return column + " has " + ResultText::count(static_cast<std::int64_t>(categories.size())) +
           (categories.size() == 1 ? " category" : " categories");
}

}  // namespace

std::optional<Gate> unsuitableFields(const ImportedDataset& dataset,
                                     const NonparametricFields& fields,
                                     std::string_view pickTwo) {
    const VariableLists::List groupings = VariableLists::anovaGroupingVariables(dataset);
    for (const Field<VariableName>* field : {&fields.npRowCat, &fields.npColCat}) {
        if (std::optional<Gate> gone =
                SelectionGates::goneColumn(*field, groupings, "grouping columns")) {
            return gone;
        }
    }
    if (fields.npRowCat->isBlank() || fields.npColCat->isBlank() ||
        fields.npRowCat.get() == fields.npColCat.get()) {
        return tableStopped(std::string(pickTwo));
    }
    const std::array<std::string, 2> names = {fields.npRowCat->name, fields.npColCat->name};
    if (!Categories::hasCompleteRows(dataset, 1, {}, names)) {
        return noTable();
    }
    return std::nullopt;
}

std::optional<Gate> notTwoByTwo(const ImportedDataset& dataset, const NonparametricFields& fields) {
    const auto rows = pairedCategories(dataset, fields.npRowCat, fields.npColCat);
    const auto columns = pairedCategories(dataset, fields.npColCat, fields.npRowCat);
    if (rows.size() == 2 && columns.size() == 2) {
        return std::nullopt;
    }
    return needsTwoByTwo(countWords(fields.npRowCat->name, rows) + " and " +
                         countWords(fields.npColCat->name, columns) +
                         ". Pick fields with two categories each, or use the chi-square test.");
}

std::optional<Gate> notPairedBinary(const ImportedDataset& dataset,
                                    const NonparametricFields& fields) {
    std::vector<std::string> first = pairedCategories(dataset, fields.npRowCat, fields.npColCat);
    std::vector<std::string> second = pairedCategories(dataset, fields.npColCat, fields.npRowCat);
    if (first.size() != 2 || second.size() != 2) {
        return needsPairedBinary(countWords(fields.npRowCat->name, first) + " and " +
                                 countWords(fields.npColCat->name, second) +
                                 ". Need paired observations on the same cases.");
    }
    std::sort(first.begin(), first.end());
    std::sort(second.begin(), second.end());
    if (first != second) {
        return needsPairedBinary(
            "The two fields do not have the same two values. Need paired observations on the "
            "same cases.");
    }
    return std::nullopt;
}

std::optional<Gate> singleCategory(const ImportedDataset& dataset,
                                   const NonparametricFields& fields) {
    if (pairedCategories(dataset, fields.npRowCat, fields.npColCat).size() >= 2 &&
        pairedCategories(dataset, fields.npColCat, fields.npRowCat).size() >= 2) {
        return std::nullopt;
    }
    return tableStopped(
        "One variable has only a single observed category; the table has no cross dimension to "
        "compare.");
}

Gate noTable() {
    return tableStopped(
        "No case has a category in both fields. Pick fields that were answered by the same "
        "cases.");
}

Gate needsTwoByTwo(std::string reason) {
    return {.title = "Fisher exact needs a 2x2 table: both fields must be binary.",
            .lead = "",
            .text = std::move(reason)};
}

Gate needsPairedBinary(std::string reason) {
    return {.title = "McNemar needs a paired binary outcome (two values) on the same cases.",
            .lead = "",
            .text = std::move(reason)};
}

}  // namespace sorvane::CategoryTableGates
