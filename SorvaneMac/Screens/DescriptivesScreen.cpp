#include "SorvaneMac/Screens/DescriptivesScreen.h"

#include <algorithm>
#include <map>

#include "SorvaneCore/Analyses/Basics/NormalityTests.h"
#include "SorvaneCore/Analyses/BoxPlotSummary.h"
#include "SorvaneCore/Analyses/Histogram.h"
#include "SorvaneCore/Analyses/StemAndLeaf.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/RespondentProfile.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::descriptiveNumericVariables;

constexpr std::size_t mostFields = 160;
constexpr std::string_view mostFieldsNote =
    "Showing the first 160 numeric fields to keep the screen responsive.";
constexpr std::string_view reportNote =
    "Descriptive summaries describe this sample only. They are not evidence of validity.";
constexpr double significanceLevel = 0.05;

const std::vector<std::string> summaryHeaders = {"Variable", "n",   "M",   "SD",
                                                 "Median",   "Min", "Max", "Skewness"};

std::vector<std::string> summaryRow(const std::string& name, const DescriptiveSummary& summary) {
    const int decimals = ReportDecimals::ofSample(summary.mean, summary.standardDeviation);
    return {name,
            ResultText::count(summary.validN),
            svFigure(summary.mean, decimals),
            svFigure(summary.standardDeviation, decimals),
            svFigure(summary.median, decimals),
            svFigure(summary.minimum, decimals),
            svFigure(summary.maximum, decimals),
            svFmt(summary.skewness, 2)};
}

EvidenceLine evidence(std::string title, const NormalityTestResult& result, std::string detail) {
    return {
        .tone = result.pValue < significanceLevel ? EvidenceTone::caution : EvidenceTone::met,
        .title = title + svFmt(result.statistic, 3) + ", " + ResultText::pSentence(result.pValue),
        .detail = std::move(detail)};
}

EvidenceLine shapiroWilkLine(const NormalityTestResult& result) {
    const std::string n = "(n = " + ResultText::count(result.n) + ")";
    return evidence(
        "Shapiro-Wilk W = ", result,
        result.pValue < significanceLevel
            ? "Significant departure from normality " + n + "; a rank-based test may be safer."
            : "No significant departure from normality " + n + ".");
}

EvidenceLine lillieforsLine(const NormalityTestResult& result) {
    return evidence("Lilliefors KS D = ", result,
                    "Kolmogorov-Smirnov test with estimated mean and SD.");
}

/// A power of ten in plain digits, where it has few.
std::string unitText(double unit) {
    constexpr double longestPlainUnit = 1e9;
    return unit >= 1.0 && unit <= longestPlainUnit ? NumberText::fixed(unit, 0)
                                                   : NumberText::shortest(unit);
}

std::string plotText(const StemAndLeafPlot& plot) {
    std::string text = "Stem unit " + unitText(plot.stemUnit) + "\n\n";
    for (const StemAndLeafRow& row : plot.rows) {
        const std::string stem = NumberText::integer(row.stem);
        constexpr std::size_t stemWidth = 6;
        text += std::string(stemWidth - std::min(stemWidth, stem.size()), ' ') + stem + " | ";
        for (const std::int64_t leaf : row.leaves) {
            text += NumberText::integer(leaf);
        }
        text += '\n';
    }
    return text;
}

/// The present numbers of a column, by the texts of a grouping column, in the order of the
/// texts.
std::vector<std::pair<std::string, std::vector<double>>> valuesByGroup(const NumericColumn& values,
                                                                       const TextColumn& groups) {
    std::vector<std::pair<std::string, std::vector<double>>> result;
    std::map<std::size_t, std::size_t> positionOfCode;
    for (std::size_t row = 0; row < groups.size(); ++row) {
        const std::optional<double> value = values[row];
        const std::size_t code = groups.code(row);
        if (!value || MissingValue::isMissing(groups.level(code))) {
            continue;
        }
        const auto [entry, isNew] = positionOfCode.try_emplace(code, result.size());
        if (isNew) {
            result.push_back({std::string(groups.level(code)), {}});
        }
        result[entry->second].second.push_back(*value);
    }
    std::sort(result.begin(), result.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    return result;
}

std::string goneText(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += list.empty() ? "" : ", ";
        list += name;
    }
    return "The respondents cannot be shown as chosen: " + list +
           (names.size() == 1 ? " is" : " are") +
           " no longer among the grouping variables. Choose again in the Setup panel.";
}

void addBox(BoxPlot& plot, std::string label, std::span<const double> values) {
    if (const std::optional<BoxPlotSummary> box = BoxPlotSummary::of(values)) {
        plot.boxes.push_back({.label = std::move(label),
                              .lowerWhisker = box->lowerWhisker,
                              .firstQuartile = box->firstQuartile,
                              .median = box->median,
                              .thirdQuartile = box->thirdQuartile,
                              .upperWhisker = box->upperWhisker,
                              .outliers = box->outliers});
    }
}

Card normalityCard(const NumericColumn& values) {
    const NormalityReport report = NormalityTests::report(values);
    Card card{.title = "Normality", .subtitle = "An assumption check, not a goal"};
    if (report.shapiroWilk) {
        card.evidence.push_back(shapiroWilkLine(*report.shapiroWilk));
        card.cautions = ResultText::messages(report.shapiroWilk->readiness);
    }
    if (report.lillieforsKS) {
        card.evidence.push_back(lillieforsLine(*report.lillieforsKS));
        for (std::string& message : ResultText::messages(report.lillieforsKS->readiness)) {
            if (std::find(card.cautions.begin(), card.cautions.end(), message) ==
                card.cautions.end()) {
                card.cautions.push_back(std::move(message));
            }
        }
    }
    if (card.evidence.empty()) {
        card.evidence.push_back({.tone = EvidenceTone::unavailable,
                                 .title = "Normality not computed",
                                 .detail = "Needs enough spread and a sufficient sample size."});
    }
    return card;
}

std::optional<Card> stemAndLeafCard(const NumericColumn& values) {
    const std::optional<StemAndLeafPlot> plot = StemAndLeaf::plot(values);
    if (!plot) {
        return std::nullopt;
    }
    // A text plot of thousands of leaves a row is no plot.
    constexpr std::int64_t mostLeaves = 1000;
    if (plot->n > mostLeaves) {
        return Card{.title = "Stem-and-leaf",
                    .paragraphs = {"The plot is left out above 1,000 values, where its rows would "
                                   "run off the page. The histogram shows the same shape."}};
    }
    return Card{.title = "Stem-and-leaf", .preformatted = plotText(*plot)};
}

}  // namespace

SetupForm DescriptivesScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List factors = VariableLists::anovaGroupingVariables(state_.dataset());
    SetupForm form;
    form.title = "Descriptives & Explore";
    form.controls = {
        HeadingControl{"SETUP"},
        variablePicker("Variable", state_.selectedDescriptiveVariableName,
                       descriptiveNumericVariables(state_.dataset())),
        optionalVariablePicker("Group by", state_.selectedDescriptiveGroupName, factors,
                               "All cases"),
        HeadingControl{"RESPONDENTS"},
        withUnavailable(variableCheckList("Characteristics", fields_.demoVars, factors),
                        fields_.demoVars.get(), factors),
        optionalVariablePicker("In columns by", fields_.demoGroup, factors, "All respondents"),
    };
    return form;
}

std::vector<std::string> DescriptivesScreen::characteristics() const {
    return FormControls::chosen(fields_.demoVars.get(),
                                VariableLists::anovaGroupingVariables(state_.dataset()));
}

std::vector<std::string> DescriptivesScreen::goneCharacteristics() const {
    NameSet chosen = fields_.demoVars.get();
    if (!chosen.empty() && !fields_.demoGroup->name.empty()) {
        chosen.insert(fields_.demoGroup->name);
    }
    for (const DataVariable* each : VariableLists::anovaGroupingVariables(state_.dataset())) {
        chosen.erase(each->name);
    }
    return {chosen.begin(), chosen.end()};
}

std::optional<Gate> DescriptivesScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (!VariableLists::contains(descriptiveNumericVariables(state_.dataset()), variable())) {
        return Gate{.title = "Need a numeric variable",
                    .lead = "Pick a variable",
                    .text =
                        "Choose one in the Setup panel. Columns with numbers that are included in "
                        "descriptives are offered; include one in Variable Types."};
    }
    return std::nullopt;
}

DescriptiveSummary DescriptivesScreen::summary(const NumericColumn& values) const {
    return DescriptiveStatistics::summary(values,
                                          {.variableName = variable(), .confidenceLevel = 0.95});
}

ScreenContent DescriptivesScreen::content() const {
    ScreenContent content;
    content.title = "Descriptives & Explore";
    content.gate = gate();
    if (content.gate) {
        return content;
    }
    content.subtitle = "What the values of one variable look like, before anything is tested.";
    const NumericColumn values = column();
    const DescriptiveSummary figures = summary(values);
    const int decimals = ReportDecimals::ofSample(figures.mean, figures.standardDeviation);
    const int ofError = ReportDecimals::of(figures.standardError.value_or(0.0), decimals);
    content.tiles = {
        {"Valid n", ResultText::count(figures.validN), variable()},
        {"Mean", svFigure(figures.mean, decimals),
         "95% CI " + svFigure(figures.confidenceIntervalLower, ofError) + " to " +
             svFigure(figures.confidenceIntervalUpper, ofError)},
        {"SD", svFigure(figures.standardDeviation, decimals), "sample"},
        {"Median", svFigure(figures.median, decimals),
         "IQR " + svFigure(figures.interquartileRange, decimals)},
        {"Minimum", svFigure(figures.minimum, decimals), ""},
        {"Maximum", svFigure(figures.maximum, decimals), ""},
        {"Missing", ResultText::count(figures.missingN), "of " + ResultText::count(figures.totalN)},
        {"Skewness", svFmt(figures.skewness, 2), ""}};
    std::optional<Chart> bars = histogram(values);
    for (const std::optional<Chart>& chart : {bars, boxPlot(values)}) {
        if (chart) {
            content.cards.push_back({.title = chart->title, .charts = {*chart}});
        }
    }
    content.cards.push_back(normalityCard(values));
    if (std::optional<Card> plot = stemAndLeafCard(values)) {
        content.cards.push_back(std::move(*plot));
    }
    content.cards.push_back(allFieldsCard(figures));
    std::vector<std::string> cautions = ResultText::messages(figures.readiness);
    cautions.emplace_back(reportNote);
    content.cards.push_back(
        {.title = "What not to claim", .cautions = std::move(cautions), .wide = true});
    if (figures.validN > 0) {
        content.findings.push_back(finding(figures, std::move(bars)));
    }
    addRespondents(content);
    if (isWeighted()) {
        addWeighted(values, content);
    }
    return content;
}

SurveyWeights::Descriptives DescriptivesScreen::weighted(const NumericColumn& values) const {
    return SurveyWeights::descriptives(state_.dataset(), survey_,
                                       {.variable = variable(), .values = values, .group = group()},
                                       design_);
}

void DescriptivesScreen::addWeighted(const NumericColumn& values, ScreenContent& content) const {
    for (Finding& finding : content.findings) {
        std::optional<std::string>& note = finding.item.table->note;
        note = (note ? *note + " " : "") + "These figures are unweighted.";
    }
    SurveyWeights::add(weighted(values), content);
}

void DescriptivesScreen::addRespondents(ScreenContent& content) const {
    const std::vector<std::string> respondents = characteristics();
    const std::vector<std::string> gone = goneCharacteristics();
    if (respondents.empty() && gone.empty()) {
        return;
    }
    Card card{
        .title = "Respondents", .subtitle = "How they spread over the categories", .wide = true};
    if (!gone.empty()) {
        card.cautions.push_back(goneText(gone));
    } else {
        const std::string& by = fields_.demoGroup->name;
        card.tables.push_back(RespondentProfile::table(state_.dataset(), respondents, by));
        content.findings.push_back(RespondentProfile::finding(state_.dataset(), respondents, by));
    }
    // The cautions stay at the end.
    content.cards.insert(content.cards.end() - 1, std::move(card));
}

std::optional<Chart> DescriptivesScreen::histogram(const NumericColumn& values) const {
    const std::optional<HistogramBins> bins = Histogram::bins(values);
    if (!bins) {
        return std::nullopt;
    }
    Chart chart;
    chart.title = group().empty() ? "Histogram" : "Histogram (all cases)";
    chart.xLabel = variable();
    chart.yLabel = "Cases";
    chart.plot = HistogramPlot{.edges = bins->edges, .counts = bins->counts};
    return chart;
}

std::optional<Chart> DescriptivesScreen::boxPlot(const NumericColumn& values) const {
    BoxPlot plot;
    Chart chart;
    chart.title = "Box plot";
    const std::optional<std::size_t> groupIndex = state_.dataset().columnIndex(group());
    if (!group().empty() && groupIndex) {
        chart.title = "Box plot of " + variable() + " by " + group();
        chart.xLabel = group();
        for (const auto& [label, grouped] :
             valuesByGroup(values, state_.dataset().rows.column(*groupIndex))) {
            addBox(plot, label, grouped);
        }
    } else {
        addBox(plot, variable(), values.present());
    }
    if (plot.boxes.empty()) {
        return std::nullopt;
    }
    chart.yLabel = variable();
    chart.plot = std::move(plot);
    return chart;
}

Card DescriptivesScreen::allFieldsCard(const DescriptiveSummary& ofVariable) const {
    const VariableLists::List fields = descriptiveNumericVariables(state_.dataset());
    const std::size_t shown = std::min(fields.size(), mostFields);
    ReportTable table;
    table.headers = summaryHeaders;
    for (std::size_t i = 0; i < shown; ++i) {
        const std::string& name = fields[i]->name;
        table.rows.push_back(summaryRow(
            name, name == variable()
                      ? ofVariable
                      : DescriptiveStatistics::summary(state_.dataset().numericColumn(name))));
    }
    Card card{.title = "Numeric fields",
              .subtitle = "Every numeric field that is included in descriptives",
              .tables = {std::move(table)},
              .wide = true};
    if (fields.size() > mostFields) {
        card.paragraphs.emplace_back(mostFieldsNote);
    }
    return card;
}

Finding DescriptivesScreen::finding(const DescriptiveSummary& figures,
                                    std::optional<Chart> histogram) const {
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Descriptives: " + variable();
    const int decimals = ReportDecimals::ofSample(figures.mean, figures.standardDeviation);
    item.apaSummary =
        "Descriptive statistics for " + variable() + ": M = " + svFigure(figures.mean, decimals) +
        ", SD = " + svFigure(figures.standardDeviation, decimals) +
        ", N = " + ResultText::count(figures.validN) + ", range " +
        svFigure(figures.minimum, decimals) + " to " + svFigure(figures.maximum, decimals) + ".";
    ReportTable table;
    table.headers = summaryHeaders;
    table.rows = {summaryRow(variable(), figures)};
    table.note = std::string(reportNote);
    item.table = std::move(table);
    for (const std::string& message : ResultText::messages(figures.readiness)) {
        item.caution = item.caution ? *item.caution + " " + message : message;
    }
    item.figureCaption = "Histogram of " + variable() + ".";
    return {.item = std::move(item), .figure = std::move(histogram)};
}

Guide DescriptivesScreen::guide() const {
    return {.answers =
                "What is typical of a variable, how far cases spread, how its values are "
                "shaped, and how many are missing.",
            .needs = "One numeric variable with at least one value, and two for its spread.",
            .doNotClaim = {"Do not read a description of this sample as evidence of validity.",
                           "Do not claim that data are normal because a test was not significant.",
                           "Do not report a mean where the histogram shows two humps without "
                           "saying so."}};
}

Json DescriptivesScreen::record() const {
    const NumericColumn values = column();
    Json result = toJson(summary(values));
    result["normality"] = toJson(NormalityTests::report(values));
    if (isWeighted()) {
        Json estimates = Json::object();
        for (const auto& [label, estimate] : SurveyWeights::labelled(weighted(values))) {
            estimates[label] = toJson(estimate);
        }
        result["weighted"] = std::move(estimates);
    }
    return result;
}

}  // namespace sorvane
