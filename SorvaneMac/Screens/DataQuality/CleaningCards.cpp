#include <algorithm>

#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneMac/Screens/DataQuality/DataQualityCards.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::DataQualityCards {

namespace {

using DatasetText::counted;
using ResultText::count;

constexpr std::size_t shownRows = 15;
constexpr std::size_t shownGroups = 10;
constexpr std::size_t shownMembers = 12;

std::string numberText(const std::optional<double>& value) {
    return value ? DerivedValueFormatter::text(*value) : "--";
}

std::string rowNumber(std::int64_t index) {
    return count(index + 1);
}

/// The first flagged rows with what stands in them.
ReportTable rowTable(std::string title,
                     const std::vector<std::int64_t>& rows,
                     const TextColumn& cells) {
    ReportTable table{.headers = {"Row", "Value"}, .title = std::move(title)};
    for (std::size_t i = 0; i < std::min(shownRows, rows.size()); ++i) {
        table.rows.push_back(
            {rowNumber(rows[i]), std::string(cells[static_cast<std::size_t>(rows[i])])});
    }
    if (rows.size() > shownRows) {
        table.note = "The first " + count(shownRows) + " of " +
                     count(static_cast<std::int64_t>(rows.size())) + " rows.";
    }
    return table;
}

}  // namespace

Card outOfRange(const OutOfRangeReport& report,
                const std::string& variable,
                const TextColumn& cells) {
    Card card{.title = "Values out of range",
              .subtitle = variable + "; a value equal to a bound is in range",
              .facts = {{"Smallest observed", numberText(report.observedMin)},
                        {"Largest observed", numberText(report.observedMax)},
                        {"Below the lowest valid value", count(report.belowCount)},
                        {"Above the highest valid value", count(report.aboveCount)}}};
    std::vector<std::int64_t> flagged = report.belowIndices;
    flagged.insert(flagged.end(), report.aboveIndices.begin(), report.aboveIndices.end());
    std::ranges::sort(flagged);
    if (!flagged.empty()) {
        card.tables = {rowTable("Out-of-range values", flagged, cells)};
    }
    return card;
}

Card outliers(const OutlierReport& report, const std::string& variable, const TextColumn& cells) {
    const bool isByQuartiles = report.method == OutlierMethod::iqr;
    Card card{.title = "Outliers",
              .subtitle =
                  variable + (isByQuartiles ? "; beyond 1.5 interquartile ranges from the quartiles"
                                            : "; more than 3 standard deviations from the mean"),
              .facts = {{"Lower fence", numberText(report.lowerFence)},
                        {"Upper fence", numberText(report.upperFence)},
                        {"Flagged", counted(report.flaggedCount, "value")}}};
    if (report.flaggedCount > 0) {
        card.tables = {rowTable("Flagged values", report.flaggedIndices, cells)};
        card.cautions = {"A flagged value may be an honest one; look it up before it is changed."};
    }
    return card;
}

Card duplicates(const DuplicateReport& report, const std::vector<std::string>& keys) {
    Card card{.title = "Duplicate rows",
              .subtitle = keys.empty() ? "Rows that are the same in every cell"
                                       : "Rows with the same " + ResultText::listed(keys)};
    if (report.groups.empty()) {
        card.paragraphs = {"No two rows are the same."};
        return card;
    }
    card.paragraphs = {counted(report.totalDuplicateRows, "row") + " in " +
                       counted(report.duplicateGroupCount, "group") + " of equal rows."};
    ReportTable table{.headers = {"Group", "Rows", "Row numbers"}, .title = "Equal rows"};
    for (std::size_t i = 0; i < std::min(shownGroups, report.groups.size()); ++i) {
        const std::vector<std::int64_t>& group = report.groups[i];
        std::string members;
        for (std::size_t j = 0; j < std::min(shownMembers, group.size()); ++j) {
            members += (members.empty() ? "" : ", ") + rowNumber(group[j]);
        }
        members += group.size() > shownMembers ? ", …" : "";
        table.rows.push_back({rowNumber(static_cast<std::int64_t>(i)),
                              count(static_cast<std::int64_t>(group.size())), members});
    }
    if (report.groups.size() > shownGroups) {
        table.note = "The first " + count(shownGroups) + " of " +
                     count(report.duplicateGroupCount) + " groups.";
    }
    card.tables = {std::move(table)};
    return card;
}

}  // namespace sorvane::DataQualityCards
