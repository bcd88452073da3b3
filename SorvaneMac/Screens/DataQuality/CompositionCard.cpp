#include <cmath>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataQuality/DataQualityCards.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::DataQualityCards {

namespace {

using ResultText::count;

constexpr double significanceLevel = 0.05;

ReportTable compositionTable(const CompositionResult& result, const std::string& variable) {
    ReportTable table{.headers = {variable, "n", "Sample %", "Benchmark %", "Difference"},
                      .title = "Sample composition"};
    for (const CompositionCategory& each : result.categories) {
        table.rows.push_back({each.name, count(each.count), svFmt(each.samplePercent, 1),
                              svFmt(each.benchmarkPercent, 1), svFmt(each.difference, 1)});
    }
    return table;
}

std::string sentenceOf(const CompositionResult& result, const std::string& variable) {
    const std::string test =
        ", χ²(" + count(result.degreesOfFreedom) + ", N = " + count(result.readiness.validCases) +
        ") = " + svFmt(result.statistic, 2) + ", " + ResultText::pSentence(result.pValue) + ".";
    return result.pValue < significanceLevel
               ? "The sample's composition by " + variable + " differed from the benchmarks" + test
               : "No difference between the sample's composition by " + variable +
                     " and the benchmarks was found" + test;
}

}  // namespace

Card composition(const CompositionResult& result, const std::string& variable) {
    Card card{.title = "Sample composition",
              .subtitle = variable + " against the benchmarks entered in the Setup panel",
              .cautions = ResultText::messages(result.readiness)};
    if (!std::isfinite(result.pValue)) {
        return card;
    }
    card.tables = {compositionTable(result, variable)};
    card.paragraphs = {sentenceOf(result, variable)};
    return card;
}

Finding compositionFinding(const CompositionResult& result, const std::string& variable) {
    return {.item = {.id = Uuid::fresh(),
                     .title = "Sample composition: " + variable,
                     .apaSummary = sentenceOf(result, variable),
                     .table = compositionTable(result, variable),
                     .caution = "Agreement with benchmarks on one variable does not make a sample "
                                "representative."},
            .figure = std::nullopt};
}

}  // namespace sorvane::DataQualityCards
