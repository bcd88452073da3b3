#include <algorithm>
#include <cmath>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataQuality/DataQualityCards.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::DataQualityCards {

namespace {

using ResultText::count;

constexpr double significanceLevel = 0.05;
constexpr std::size_t shownPatterns = 20;
/// More variables than this would not fit beside one another.
constexpr std::size_t shownVariables = 12;

const char* const onNumbers = "Missing-data diagnostics run on numeric variables.";
const char* const legend = "✓ present · — missing";

std::string percentText(double percent) {
    return svFmt(percent, 1) + "%";
}

/// The positions of the variables that lack values, the first ones.
std::vector<std::size_t> incompleteVariables(const MissingDataSummary& summary) {
    std::vector<std::size_t> positions;
    for (std::size_t j = 0; j < summary.perVariable.size(); ++j) {
        if (summary.perVariable[j].missingCount > 0 && positions.size() < shownVariables) {
            positions.push_back(j);
        }
    }
    return positions;
}

ReportTable variableTable(const MissingDataSummary& summary) {
    ReportTable table{.headers = {"Variable", "Missing", "Percent"},
                      .title = "Per-variable missingness"};
    for (const VariableMissingness& variable : summary.perVariable) {
        table.rows.push_back(
            {variable.name, count(variable.missingCount), percentText(variable.missingPercent)});
    }
    return table;
}

std::string patternNote(const MissingDataSummary& summary, std::size_t variables) {
    std::string note = std::string(legend) + ".";
    if (summary.patterns.size() > shownPatterns) {
        note += " The " + count(shownPatterns) + " commonest of " +
                count(summary.distinctPatternCount) + " patterns.";
    }
    const auto incomplete = std::ranges::count_if(
        summary.perVariable, [](const auto& variable) { return variable.missingCount > 0; });
    if (static_cast<std::size_t>(incomplete) > variables) {
        note += " The first " + count(static_cast<std::int64_t>(variables)) + " of " +
                count(incomplete) + " variables with missing values.";
    } else if (variables < summary.perVariable.size()) {
        note += " Variables without missing values are left out.";
    }
    return note;
}

ReportTable patternTable(const MissingDataSummary& summary) {
    const std::vector<std::size_t> shown = incompleteVariables(summary);
    ReportTable table{.headers = {"Rows", "Percent"}, .title = "Missing-data patterns"};
    for (const std::size_t j : shown) {
        table.headers.push_back(summary.perVariable[j].name);
    }
    for (std::size_t i = 0; i < std::min(shownPatterns, summary.patterns.size()); ++i) {
        const MissingPattern& pattern = summary.patterns[i];
        const double share =
            100.0 * static_cast<double>(pattern.count) / static_cast<double>(summary.nRows);
        std::vector<std::string> row = {count(pattern.count), percentText(share)};
        for (const std::size_t j : shown) {
            row.emplace_back(pattern.present[j] ? "✓" : "—");
        }
        table.rows.push_back(std::move(row));
    }
    table.note = patternNote(summary, shown.size());
    return table;
}

std::string statisticText(const LittleMCARResult& test) {
    return " Little's MCAR: chi-square = " + svFmt(test.statistic, 2) +
           ", df = " + count(test.degreesOfFreedom) + ", " + ResultText::pSentence(test.pValue) +
           ".";
}

EvidenceLine verdict(const std::optional<LittleMCARResult>& test) {
    if (!test || !std::isfinite(test->pValue)) {
        return {.tone = EvidenceTone::unavailable,
                .title = "Little's MCAR: not estimable",
                .detail =
                    "The MCAR test could not be computed here (too few complete patterns or a "
                    "singular covariance). This is not evidence of MCAR; treat the missingness "
                    "cautiously and prefer multiple imputation over listwise deletion."};
    }
    if (test->pValue >= significanceLevel) {
        return {.tone = EvidenceTone::met,
                .title = "Missingness looks completely random",
                .detail =
                    "Consistent with Missing Completely At Random. Listwise deletion is less "
                    "likely to bias estimates, though it still costs power." +
                    statisticText(*test)};
    }
    return {.tone = EvidenceTone::caution,
            .title = "Missingness likely depends on the data",
            .detail =
                "Little's MCAR test is rejected, so missingness may depend on the data "
                "(MAR/MNAR). Prefer multiple imputation over listwise deletion." +
                statisticText(*test)};
}

std::string sentenceOf(const Missingness& found) {
    const MissingDataSummary& summary = found.summary;
    std::string text = "Of " + count(summary.totalCells) + " values of " +
                       count(summary.nVariables) + " numeric variables, " +
                       count(summary.missingCells) + " (" +
                       percentText(summary.missingCellPercent) + ") were missing; " +
                       count(summary.completeCases) + " of " + count(summary.nRows) + " cases (" +
                       percentText(summary.completeCasePercent) + ") were complete.";
    if (found.test && std::isfinite(found.test->pValue)) {
        text += " Little's test of values missing completely at random gave χ²(" +
                count(found.test->degreesOfFreedom) + ") = " + svFmt(found.test->statistic, 2) +
                ", " + ResultText::pSentence(found.test->pValue) + ".";
    }
    return summary.missingCells == 0 ? text + " Every numeric field is complete." : text;
}

}  // namespace

Card withoutNumbers() {
    return {.title = "Missing-data diagnostics",
            .subtitle = onNumbers,
            .paragraphs = {"There are no numeric columns. Set the role of a column with numbers in "
                           "Variable Types."}};
}

Card missingness(const Missingness& found) {
    Card card{.title = "Missing-data diagnostics", .subtitle = onNumbers, .wide = true};
    if (found.summary.missingCells == 0) {
        card.evidence = {{.tone = EvidenceTone::met,
                          .title = "No missing values",
                          .detail = "Every numeric field is complete."}};
        return card;
    }
    card.tables = {variableTable(found.summary), patternTable(found.summary)};
    card.evidence = {verdict(found.test)};
    if (found.test) {
        card.cautions = ResultText::messages(found.test->readiness);
    }
    return card;
}

Finding missingnessFinding(const Missingness& found) {
    ReportItem item{.id = Uuid::fresh(), .title = "Missing data", .apaSummary = sentenceOf(found)};
    if (found.summary.missingCells > 0) {
        item.table = variableTable(found.summary);
        const EvidenceLine line = verdict(found.test);
        item.extraTables = std::vector{patternTable(found.summary)};
        item.caution = line.title + ". " + line.detail;
    }
    return {.item = std::move(item), .figure = std::nullopt};
}

Card subgroups(const SubgroupMissingnessResult& result, const std::string& group) {
    Card card{.title = "Missing values by " + group,
              .subtitle =
                  "Percent missing in each group; 10 points or more between groups stand "
                  "out."};
    ReportTable table{.headers = {group, "Rows", "All variables"}, .title = "Percent missing"};
    std::vector<std::size_t> shown;
    for (std::size_t j = 0; j < result.spreads.size(); ++j) {
        const bool isMissing = std::ranges::any_of(
            result.groups,
            [j](const GroupMissingness& each) { return each.perVariable[j].missingCount > 0; });
        if (isMissing && shown.size() < shownVariables) {
            shown.push_back(j);
            table.headers.push_back(result.spreads[j].name);
        }
    }
    for (const GroupMissingness& each : result.groups) {
        std::vector<std::string> row = {each.group, count(each.nRows),
                                        percentText(each.missingCellPercent)};
        for (const std::size_t j : shown) {
            row.push_back(percentText(each.perVariable[j].missingPercent));
        }
        table.rows.push_back(std::move(row));
    }
    std::vector<std::string> spreads = {"Spread (points)", "", svFmt(result.spread, 1)};
    for (const std::size_t j : shown) {
        spreads.push_back(svFmt(result.spreads[j].spread, 1));
    }
    table.rows.push_back(std::move(spreads));
    card.tables = {std::move(table)};
    card.cautions = ResultText::messages(result.readiness);
    if (!card.cautions.empty()) {
        return card;
    }
    card.evidence = {
        result.isUneven
            ? EvidenceLine{.tone = EvidenceTone::caution,
                           .title = "Groups differ in what is missing",
                           .detail = "The percent missing differs by 10 points or more between "
                                     "groups. Dropping incomplete cases would change the sample's "
                                     "make-up."}
            : EvidenceLine{.tone = EvidenceTone::met,
                           .title = "Groups lack about equally much",
                           .detail = "The percent missing differs by less than 10 points between "
                                     "groups."}};
    return card;
}

}  // namespace sorvane::DataQualityCards
