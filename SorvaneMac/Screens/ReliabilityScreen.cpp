#include "SorvaneMac/Screens/ReliabilityScreen.h"

#include <cmath>
#include <limits>

#include "SorvaneCore/Analyses/Reliability/ReliabilityScaleTables.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/ScaleAnalysis.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr int screenDecimals = 4;
constexpr int reportDecimals = 2;
/// Items below this correlate too little with the rest to pass without a look.
constexpr double lowItemTotal = 0.30;
constexpr std::string_view stance =
    "Sorvane treats internal consistency as one kind of evidence. Reliability does not prove "
    "validity, and small samples are labeled cautiously.";
constexpr std::string_view flaggedText =
    "Flagged as unreliable. Re-check to include and clear the flag.";

/// The nearest whole percent, so that 85% is the same number as 17 of 20 items.
double wholePercent(double share) {
    return std::round(100.0 * share) / 100.0;
}

ReportTable scaleTable(const ReliabilityResult& result) {
    const ScaleStatistics scale = ReliabilityScaleTables::scaleStatistics(result);
    ReportTable table;
    table.title = "Scale statistics";
    table.headers = {"", "N", "Mean", "Variance", "SD"};
    table.rows = {{"Statistics for scale", ResultText::count(scale.n),
                   svFmt(scale.mean, screenDecimals), svFmt(scale.variance, screenDecimals),
                   svFmt(scale.standardDeviation, screenDecimals)}};
    return table;
}

ReportTable summaryTable(const ReliabilityResult& result) {
    ReportTable table;
    table.title = "Summary item statistics";
    table.headers = {"", "Mean", "Minimum", "Maximum", "Range", "Max/Min", "Variance"};
    for (const SummaryItemStatistic& each : ReliabilityScaleTables::summaryItemStatistics(result)) {
        table.rows.push_back(
            {each.label, svFmt(each.mean, screenDecimals), svFmt(each.minimum, screenDecimals),
             svFmt(each.maximum, screenDecimals), svFmt(each.range, screenDecimals),
             svFmt(each.maximumOverMinimum, screenDecimals), svFmt(each.variance, screenDecimals)});
    }
    return table;
}

ReportTable itemTotalTable(const ReliabilityResult& result,
                           std::vector<std::string> headers,
                           int decimals) {
    ReportTable table;
    table.headers = std::move(headers);
    for (const ItemTotalStatistic& each : ReliabilityScaleTables::itemTotalStatistics(result)) {
        table.rows.push_back({each.itemName, svFmt(each.scaleMeanIfDeleted, decimals),
                              svFmt(each.scaleVarianceIfDeleted, decimals),
                              svFmt(each.correctedItemTotalCorrelation, decimals),
                              svFmt(each.alphaIfDeleted, decimals)});
    }
    return table;
}

Chart itemTotalChart(const ReliabilityResult& result) {
    BarPlot bars;
    bars.reference = lowItemTotal;
    for (const ReliabilityItemStatistic& each : result.itemStatistics) {
        bars.labels.push_back(each.itemName);
        bars.values.push_back(
            each.correctedItemTotalCorrelation.value_or(std::numeric_limits<double>::quiet_NaN()));
    }
    Chart chart;
    chart.title = "Corrected item-total correlation";
    chart.subtitle = "Items below .30 deserve a look at their content";
    chart.xLabel = "r with the sum of the other items";
    chart.plot = std::move(bars);
    return chart;
}

std::vector<Passage> interpretation(const ReliabilityResult& result) {
    std::vector<Passage> passages = {{.label = "Interpretation", .text = result.interpretation}};
    for (const std::string& warning : result.warnings) {
        passages.push_back({.label = "Caution", .text = warning, .isCaution = true});
    }
    passages.push_back({.label = "Recommended action", .text = result.recommendedAction});
    return passages;
}

/// All warnings of the result, as they are printed with the finding, and what was done to items.
std::string reportCaution(const ReliabilityResult& result,
                          const std::vector<ReverseCodedItem>& reverseCoded) {
    std::string reversed;
    for (const ReverseCodedItem& each : reverseCoded) {
        reversed += (reversed.empty() ? "Reverse-coded before the analysis: " : ", ") + each.item;
    }
    return ResultText::running(
        {ResultText::running(result.warnings), reversed.empty() ? "" : reversed + "."});
}

std::string_view adviceOnReversal(const DataVariable& item, bool isMarked) {
    if (!ScaleAnalysis::canBeReversed(item)) {
        return isMarked ? ". Rev has no effect on it, because the ends of its scale are not known; "
                          "if it is worded in reverse, recode it."
                        : ". If it is worded in reverse, recode it: Rev has no effect where the "
                          "ends of the scale are not known.";
    }
    return isMarked ? ". If it is worded like the others, switch Rev off."
                    : ". If it is worded in reverse, switch Rev on.";
}

/// Items that run against the rest: worded in reverse, or reversed by mistake, most likely.
std::vector<EvidenceLine> oppositeItems(const ReliabilityResult& result,
                                        const ImportedDataset& dataset,
                                        const NameSet& marked) {
    std::vector<EvidenceLine> lines;
    for (const ReliabilityItemStatistic& each : result.itemStatistics) {
        if (each.correctedItemTotalCorrelation.value_or(0.0) < 0.0) {
            const std::string r = "r = " + svFmtBounded(each.correctedItemTotalCorrelation, 2);
            lines.push_back(
                {.tone = EvidenceTone::caution,
                 .title = each.itemName + " runs against the other items",
                 .detail = r + std::string(adviceOnReversal(*dataset.variable(each.itemName),
                                                            marked.contains(each.itemName)))});
        }
    }
    return lines;
}

std::string reportSentence(const std::string& construct, const ReliabilityResult& result) {
    if (!result.alpha) {
        return construct +
               " could not produce a stable Cronbach alpha with the current item selection and "
               "missing-data rule. Review missingness and item variance before reporting "
               "reliability evidence.";
    }
    return "A reliability analysis was carried out on the " + construct +
           " scale (k = " + ResultText::count(static_cast<std::int64_t>(result.itemNames.size())) +
           " items; n = " + ResultText::count(result.casesUsed) + "). Internal consistency was " +
           std::string(ScaleAnalysis::reportBand(*result.alpha)) +
           ", Cronbach's α = " + svFmtBounded(result.alpha, 2) +
           ". Alpha is internal-consistency evidence only; it does not establish validity.";
}

std::string reportNote(const std::string& construct, const ReliabilityResult& result) {
    return "Item-total statistics for the " + construct +
           " scale (k = " + ResultText::count(static_cast<std::int64_t>(result.itemNames.size())) +
           ", n = " + ResultText::count(result.casesUsed) +
           "). r is the corrected item-total correlation (each item with the sum of the remaining "
           "items); α if deleted is Cronbach's alpha with that item removed.";
}

}  // namespace

SetupForm ReliabilityScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    ScaleFields& scale = state_.scale;
    SetupForm form;
    form.title = "Scale & Reliability";
    form.controls = {
        HeadingControl{"SETUP"},
        TextControl{"Construct", "e.g. Job Satisfaction", scale.constructName.get(),
                    [&scale](const std::string& text) {
                        scale.constructName.set(text);
                    }},
        enumerationPicker("Score method", scale.scaleScoreMethod),
        enumerationPicker("Missing data", scale.reliabilityMissingDataRule),
        NumberControl{.label = "MINIMUM ITEM COMPLETION",
                      .minimum = 0.5,
                      .maximum = 1.0,
                      .step = 0.05,
                      .value = scale.minimumItemCompletion.get(),
                      .valueText = svFmt(100.0 * scale.minimumItemCompletion.get(), 0) + "%",
                      .isSlider = true,
                      .set =
                          [&scale](double value) {
                              scale.minimumItemCompletion.set(wholePercent(value));
                          }},
    };
    CheckListControl items = itemList();
    if (items.items.empty()) {
        form.controls.emplace_back(NoteControl{
            "No numeric item columns. Import a dataset, or set a column numeric in Variable Types.",
            false});
    } else {
        form.controls.emplace_back(std::move(items));
    }
    form.controls.emplace_back(HeadingControl{"CREATE SCALE SCORE"});
    form.controls.emplace_back(NoteControl{
        "Optional. Adds one new column that combines the selected items into a single score (the "
        "score method above: sum or mean).",
        false});
    form.controls.emplace_back(TextControl{"New score column name", "Scale score",
                                           scale.scaleScoreVariableName.get(),
                                           [&scale](const std::string& text) {
                                               scale.scaleScoreVariableName.set(text);
                                           }});
    const std::optional<std::string> lacking = state_.scaleScoreLacks();
    form.controls.emplace_back(
        ButtonControl{.label = "Create scale score", .isEnabled = !lacking, .press = [this] {
                          state_.createScaleScoreVariable();
                      }});
    if (lacking) {
        form.controls.emplace_back(NoteControl{*lacking, true});
    }
    DataPreparation::addOutcome(form, state_, scale.scaleScoreCreationMessage);
    return form;
}

CheckListControl ReliabilityScreen::itemList() {
    CheckListControl list;
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List included = VariableLists::reliabilityVariables(dataset);
    for (const DataVariable& each : dataset.variables) {
        const DataVariable* variable = &each;
        if (!VariableLists::isNumericForAnalysis(each) &&
            !VariableLists::contains(included, each.name)) {
            continue;
        }
        const bool isFlagged = state_.scale.unreliableItemNames->contains(variable->name);
        list.items.push_back(
            {.name = variable->name,
             .detail = isFlagged ? std::string(flaggedText) : variable->label.value_or(""),
             .isChecked = VariableLists::contains(included, variable->name),
             .isFlagged = isFlagged,
             .second = state_.scale.reverseCodedItemNames->contains(variable->name)});
    }
    list.label =
        "ITEMS · " + ResultText::count(static_cast<std::int64_t>(included.size())) + " selected";
    list.secondLabel = "Rev";
    list.setChecked = [this](const std::string& name, bool isChecked) {
        if (const DataVariable* variable = state_.dataset().variable(name)) {
            state_.setReliabilityIncluded(Uuid(variable->id), isChecked);
        }
    };
    list.setAll = [set = list.setChecked](const std::vector<std::string>& names, bool isChecked) {
        for (const std::string& name : names) {
            set(name, isChecked);
        }
    };
    list.setSecond = [this](const std::string& name, bool isOn) {
        NameSet names = state_.scale.reverseCodedItemNames.get();
        if (isOn) {
            names.insert(name);
        } else {
            names.erase(name);
        }
        state_.scale.reverseCodedItemNames.set(std::move(names));
    };
    return list;
}

std::optional<Gate> ReliabilityScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (VariableLists::reliabilityVariables(state_.dataset()).size() < 2) {
        return Gate{.title = "Select at least two items",
                    .lead = "Pick at least two scale items",
                    .text =
                        "Check two or more items in the ITEMS list in the setup panel on the "
                        "right. Items are auto-detected on import; adjust roles in Instrument "
                        "Map."};
    }
    return std::nullopt;
}

std::string ReliabilityScreen::constructTitle() const {
    const std::string& name = state_.scale.constructName.get();
    return name.empty() ? "Unnamed" : name;
}

ReliabilityResult ReliabilityScreen::analyze() const {
    return ScaleAnalysis::analyze(
        state_, state_.scale.constructName.get(),
        VariableLists::names(VariableLists::reliabilityVariables(state_.dataset())));
}

ScreenContent ReliabilityScreen::content() const {
    ScreenContent content;
    content.title = "Scales & Reliability";
    content.subtitle = std::string(stance);
    content.gate = gate();
    if (content.gate) {
        return content;
    }
    const ReliabilityResult result = analyze();
    content.tiles = {
        {"Cronbach alpha", svFmt(result.alpha, 3), "Internal consistency"},
        {"Cases used", ResultText::count(result.casesUsed),
         std::string(rawValue(result.missingDataRule))},
        {"Items", ResultText::count(static_cast<std::int64_t>(result.itemNames.size())),
         "In the scale"}};
    ReportTable itemTotal =
        itemTotalTable(result,
                       {"Item", "Scale Mean if Deleted", "Scale Variance if Deleted",
                        "Corrected Item-Total Correlation", "Alpha if Deleted"},
                       screenDecimals);
    itemTotal.title = "Item-total statistics";
    content.cards.push_back(
        {.title = "Reliability statistics",
         .subtitle = "Scale, item summary, and item-total",
         .tables = {scaleTable(result), summaryTable(result), std::move(itemTotal)},
         .wide = true});
    content.cards.push_back({.title = "Item-total correlations",
                             .subtitle = "Each item with the sum of the others",
                             .charts = {itemTotalChart(result)},
                             .evidence = oppositeItems(result, state_.dataset(),
                                                       state_.scale.reverseCodedItemNames.get())});
    content.cards.push_back({.title = "Plain-language interpretation",
                             .subtitle = "Do not overclaim validity",
                             .passages = interpretation(result)});
    content.findings.push_back(finding(result));
    return content;
}

Finding ReliabilityScreen::finding(const ReliabilityResult& result) const {
    const std::string construct = constructTitle();
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Reliability: " + construct;
    item.apaSummary = reportSentence(construct, result);
    item.table = itemTotalTable(
        result, {"Item", "M if deleted", "Var if deleted", "r", "α if deleted"}, reportDecimals);
    item.table->note = reportNote(construct, result);
    item.caution = reportCaution(
        result, ScaleAnalysis::options(state_, construct, result.itemNames).reverseCoded);
    item.figureCaption = "Corrected item-total correlations of the " + construct + " scale.";
    return {.item = std::move(item), .figure = itemTotalChart(result)};
}

Guide ReliabilityScreen::guide() const {
    return {.answers =
                "How consistently a set of items measures together, and which items hold "
                "the scale together or weaken it.",
            .needs =
                "At least two items of the same construct in the same direction: switch Rev "
                "on for items worded the other way. Thirty cases or more.",
            .doNotClaim = {"Do not claim that a reliable scale is valid.",
                           "Do not claim one dimension from a high alpha.",
                           "Do not delete items by their statistics alone: read them first."}};
}

Json ReliabilityScreen::record() const {
    return toJson(analyze());
}

}  // namespace sorvane
