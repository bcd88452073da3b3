#include "SorvaneMac/Screens/RespondentProfile.h"

#include <numeric>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::RespondentProfile {

namespace {

constexpr std::string_view indent = "\u2003";

/// The counts of one table column: of a group, or of all.
using Counts = std::vector<std::int64_t>;

void addFigures(std::vector<std::string>& row, std::int64_t count, std::int64_t answered) {
    row.push_back(ResultText::count(count));
    row.push_back(answered > 0
                      ? svFmt(100.0 * static_cast<double>(count) / static_cast<double>(answered), 1)
                      : "--");
}

void addCharacteristic(ReportTable& table,
                       const Categories::CrossCounts& counts,
                       const std::string& name) {
    table.rows.emplace_back(table.headers.size());
    table.rows.back().front() = name;
    std::vector<Counts> columns = counts.byGroup;
    columns.push_back(counts.all);
    for (std::size_t category = 0; category < counts.categories.size(); ++category) {
        std::vector<std::string> row = {std::string(indent) + counts.categories[category]};
        for (const Counts& column : columns) {
            // The last count is of the missing ones.
            addFigures(row, column[category],
                       std::accumulate(column.begin(), column.end() - 1, std::int64_t{0}));
        }
        table.rows.push_back(std::move(row));
    }
    if (counts.all.back() > 0) {
        std::vector<std::string> row = {std::string(indent) + "Missing"};
        for (const Counts& column : columns) {
            row.push_back(ResultText::count(column.back()));
            row.emplace_back();
        }
        table.rows.push_back(std::move(row));
    }
}

}  // namespace

ReportTable table(const ImportedDataset& dataset,
                  const std::vector<std::string>& characteristics,
                  const std::string& group) {
    const std::vector<std::string> groups = Categories::of(dataset, group);
    ReportTable table;
    table.headers = {"Characteristic"};
    for (std::size_t column = 0; column <= groups.size(); ++column) {
        table.headers.insert(table.headers.end(), {"n", "%"});
    }
    if (!groups.empty()) {
        table.groupHeaders = std::vector<ReportGroupHeader>{{"", 1}};
        for (const std::string& each : groups) {
            table.groupHeaders->push_back({each, 2});
        }
        table.groupHeaders->push_back({"Total", 2});
    }
    for (const std::string& name : characteristics) {
        addCharacteristic(table, Categories::crossCounts(dataset, name, group), name);
    }
    table.note = "N = " + ResultText::count(dataset.rowCount()) +
                 ". Percentages are of the respondents with an answer.";
    return table;
}

Finding finding(const ImportedDataset& dataset,
                const std::vector<std::string>& characteristics,
                const std::string& group) {
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Characteristics of the Respondents";
    item.apaSummary = "The sample comprised " + ResultText::count(dataset.rowCount()) +
                      " respondents. The table shows their characteristics" +
                      (group.empty() ? "." : " by " + group + ".");
    item.table = table(dataset, characteristics, group);
    return {.item = std::move(item), .figure = std::nullopt};
}

}  // namespace sorvane::RespondentProfile
