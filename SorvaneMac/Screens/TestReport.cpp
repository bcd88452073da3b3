#include "SorvaneMac/Screens/TestReport.h"

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

namespace {

/// The table's own note, then that of the whole report.
std::string mainNote(const TestReport& report) {
    return ResultText::running({report.tables.front().note.value_or(""), report.note});
}

Finding finding(const TestReport& report) {
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = report.title;
    item.apaSummary = report.sentence;
    item.table = report.tables.front();
    item.table->note =
        ResultText::running({mainNote(report), ResultText::running(report.warnings)});
    std::vector<ReportTable> further(report.tables.begin() + 1, report.tables.end());
    if (report.chartTable) {
        further.push_back(*report.chartTable);
    }
    if (!further.empty()) {
        item.extraTables = std::move(further);
    }
    item.caution = report.caution;
    Finding finding{.item = std::move(item), .figure = std::nullopt};
    if (!report.charts.empty()) {
        finding.item.figureCaption = report.figureCaption;
        finding.figure = report.charts.front();
    }
    return finding;
}

}  // namespace

void addReport(TestReport report, ScreenContent& content) {
    content.tiles = std::move(report.tiles);
    if (report.chartTable) {
        ResultText::addCharts(content, report.charts);
        content.cards.push_back(
            {.title = *report.chartTable->title, .tables = {*report.chartTable}, .wide = true});
    }
    const std::size_t firstTable = content.cards.size();
    for (const ReportTable& table : report.tables) {
        content.cards.push_back({.title = *table.title, .tables = {table}, .wide = true});
    }
    content.cards[firstTable].tables.front().note = mainNote(report);
    if (report.passage) {
        content.cards.back().passages.push_back(*report.passage);
    }
    if (!report.chartTable) {
        ResultText::addCharts(content, report.charts);
    }
    if (report.checks) {
        content.cards.push_back(*report.checks);
    }
    if (!report.warnings.empty()) {
        content.cards.push_back({.title = "Cautions", .cautions = report.warnings, .wide = true});
    }
    content.cards.push_back(
        {.title = "What not to claim", .cautions = {report.caution}, .wide = true});
    content.findings.push_back(finding(report));
}

}  // namespace sorvane
