#include "SorvaneMac/Screens/ResultText.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Report/SignificanceFormatting.h"

namespace sorvane::ResultText {

namespace {

constexpr double significanceLevel = 0.05;

}  // namespace

std::string pSentence(double p) {
    if (!std::isfinite(p)) {
        return "p = --";
    }
    const std::string text = NumberText::pValue(p);
    return text.starts_with("<") ? "p " + text : "p = " + text;
}

std::string pCell(double p) {
    return std::isfinite(p) ? SignificanceFormatting::pValueText(p, false) : "--";
}

std::string starredPCell(double p) {
    return std::isfinite(p) ? SignificanceFormatting::pValueText(p, true) : "--";
}

std::string pTile(double p) {
    return std::isfinite(p) ? NumberText::pValue(p) : "--";
}

Tile pValueTile(double p) {
    return {"p-value", pTile(p), std::string(significanceWords(p))};
}

std::string ratio(double value, int decimals) {
    constexpr double largest = 99'999.0;
    // The error of a coefficient without end tells nothing of the digits of its ratio.
    constexpr int fewest = 2;
    const int places = std::max(decimals, fewest);
    const double smallest = std::pow(10.0, -places);
    if (value > largest) {
        return "> 99999";
    }
    return value >= 0.0 && value < smallest / 2.0 ? "< " + svFigure(smallest, places)
                                                  : svFigure(value, places);
}

std::string ratioSentence(std::string_view symbol, double value, int decimals) {
    const std::string text = ratio(value, decimals);
    const bool isBound = text.starts_with("<") || text.starts_with(">");
    return std::string(symbol) + (isBound ? " " : " = ") + text;
}

std::string count(std::int64_t value) {
    return NumberText::integer(value);
}

std::string degreesOfFreedom(double df) {
    return df == std::round(df) ? NumberText::fixed(df, 0) : svFmt(df, 2);
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0                  ? ""
                : i + 1 == names.size() ? (names.size() > 2 ? ", and " : " and ")
                                        : ", ";
        text += names[i];
    }
    return text;
}

std::string running(const std::vector<std::string>& sentences) {
    std::string text;
    for (const std::string& sentence : sentences) {
        text += (text.empty() || sentence.empty() ? "" : " ") + sentence;
    }
    return text;
}

std::string_view significanceWords(double p) {
    if (!std::isfinite(p)) {
        return "not testable";
    }
    return p < significanceLevel ? "statistically significant" : "not statistically significant";
}

std::vector<std::string> messages(const AnalysisReadiness& readiness) {
    std::vector<std::string> result;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        result.push_back(issue.message);
    }
    return result;
}

std::string obstacle(const AnalysisReadiness& readiness) {
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        if (issue.status == AnalysisReadinessStatus::blocked) {
            return issue.message;
        }
    }
    return {};
}

void addCharts(ScreenContent& content, const std::vector<Chart>& charts) {
    for (const Chart& chart : charts) {
        content.cards.push_back(
            {.title = chart.title, .subtitle = chart.subtitle, .charts = {chart}});
    }
}

std::string sentence(const Gate& gate) {
    const bool isWhole = gate.title.ends_with('.');
    return gate.title + (isWhole ? " " : ". ") + gate.text;
}

Gate noDataGate() {
    return {.title = "No dataset loaded",
            .lead = "Import a file or create a blank grid",
            .text =
                "This screen works on the columns of a dataset. Go to Import Data to bring in "
                "a data file or a table that you copied, or to start a blank grid."};
}

}  // namespace sorvane::ResultText
