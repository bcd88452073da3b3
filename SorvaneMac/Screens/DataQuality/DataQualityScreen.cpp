#include "SorvaneMac/Screens/DataQuality/DataQualityScreen.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

/// More categories than this are no composition that anyone enters benchmarks for.
constexpr std::size_t mostCategories = 30;

VariableLists::List allVariables(const ImportedDataset& dataset) {
    VariableLists::List list;
    for (const DataVariable& variable : dataset.variables) {
        list.push_back(&variable);
    }
    return list;
}

/// Whether something was typed that is no number.
bool isUnread(const Field<std::string>& text) {
    const std::string_view typed = UnicodeText::trimmed(text.get());
    return !typed.empty() && !NumberText::parse(typed);
}

std::optional<Gate> clampGate(const std::optional<std::string>& lacking) {
    if (!lacking) {
        return std::nullopt;
    }
    return Gate{.title = "Nothing to set to missing yet", .lead = "", .text = *lacking};
}

std::vector<NumericColumn> numbersOf(const ImportedDataset& dataset,
                                     const std::vector<std::string>& names) {
    std::vector<NumericColumn> columns;
    for (const std::string& name : names) {
        columns.push_back(dataset.numericColumn(name));
    }
    return columns;
}

std::vector<TextTable::Column> cellsOf(const ImportedDataset& dataset,
                                       const std::vector<std::string>& names) {
    std::vector<TextTable::Column> columns;
    for (const std::string& name : names) {
        columns.push_back(dataset.rows.sharedColumn(*dataset.columnIndex(name)));
    }
    return columns;
}

}  // namespace

SetupForm DataQualityScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    SetupForm form;
    form.title = "Data Quality";
    form.controls = {
        HeadingControl{"CHECK"},
        variablePicker("Variable", fields_.clVar, numericVariables(state_.dataset())),
        enumerationPicker("Outliers", fields_.clOutlierMethod),
    };
    addRange(form);
    if (state_.hasData()) {
        addDuplicates(form);
        addGroups(form);
        addComposition(form);
    }
    return form;
}

void DataQualityScreen::addRange(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    form.controls.emplace_back(HeadingControl{"VALID RANGE"});
    form.controls.emplace_back(textField("Lowest valid value", "none", fields_.clLower));
    form.controls.emplace_back(textField("Highest valid value", "none", fields_.clUpper));
    form.controls.emplace_back(NoteControl{
        "A value equal to a bound is in range. Setting values to missing writes a new column "
        "and leaves this one as it is.",
        false});
    if (isUnread(fields_.clLower) || isUnread(fields_.clUpper)) {
        form.controls.emplace_back(NoteControl{
            "A bound is not a number and counts as none. Write it with digits and a decimal point.",
            true});
    }
    DataPreparation::addRun(form, state_,
                            {.label = "Set out-of-range to missing",
                             .gate = clampGate(state_.clampLacks()),
                             .message = &fields_.clMessage,
                             .run = [this] {
                                 state_.clApplyClampToMissing();
                             }});
}

void DataQualityScreen::addDuplicates(SetupForm& form) {
    form.controls.emplace_back(HeadingControl{"DUPLICATE ROWS"});
    form.controls.emplace_back(FormControls::variableCheckList(
        "Compare by (none: every cell)", fields_.clKeyColumns, allVariables(state_.dataset())));
}

void DataQualityScreen::addGroups(SetupForm& form) {
    form.controls.emplace_back(HeadingControl{"MISSING VALUES BY GROUP"});
    form.controls.emplace_back(FormControls::optionalVariablePicker(
        "Groups", fields_.clGroup, VariableLists::anovaGroupingVariables(state_.dataset()),
        "None"));
}

void DataQualityScreen::addComposition(SetupForm& form) {
    form.controls.emplace_back(HeadingControl{"SAMPLE COMPOSITION"});
    form.controls.emplace_back(FormControls::optionalVariablePicker(
        "Compare with the population", fields_.clCompositionVar,
        VariableLists::anovaGroupingVariables(state_.dataset()), "None"));
    if (fields_.clCompositionVar->isBlank()) {
        return;
    }
    const std::vector<std::string> categories =
        Categories::of(state_.dataset(), fields_.clCompositionVar->name);
    if (categories.size() > mostCategories) {
        form.controls.emplace_back(NoteControl{
            "There are more than " + ResultText::count(mostCategories) +
                " categories. Combine them with Recode in Prepare Data, then compare those.",
            true});
        return;
    }
    form.controls.emplace_back(
        NoteControl{"Enter the share of each category in the population, in percent.", false});
    for (const std::string& category : categories) {
        const auto entered = fields_.clBenchmarks->find(category);
        form.controls.emplace_back(TextControl{
            .label = category,
            .prompt = "percent",
            .text = entered == fields_.clBenchmarks->end() ? std::string() : entered->second,
            .set = [this, category](const std::string& text) {
                fields_.clBenchmarks.edit([&](auto& shares) { shares[category] = text; });
            }});
    }
}

bool DataQualityScreen::hasNumbers() const {
    return !numericVariables(state_.dataset()).empty();
}

const DataQualityCards::Missingness& DataQualityScreen::missingness() const {
    const ImportedDataset& dataset = state_.dataset();
    std::vector<std::string> names = VariableLists::numericNames(dataset);
    return missingness_.of(cellsOf(dataset, names), names, [&] {
        const std::vector<NumericColumn> columns = numbersOf(dataset, names);
        return DataQualityCards::Missingness{
            .names = names,
            .summary = MissingDataAnalysis::summary(columns, names),
            .test = MissingDataAnalysis::littleMCAR(columns, names)};
    });
}

std::vector<std::string> DataQualityScreen::keyColumns() const {
    return FormControls::chosen(fields_.clKeyColumns.get(), allVariables(state_.dataset()));
}

const DuplicateReport& DataQualityScreen::duplicates() const {
    const ImportedDataset& dataset = state_.dataset();
    std::vector<std::string> names = keyColumns();
    if (names.empty()) {
        names = dataset.headers;
    }
    std::vector<std::size_t> positions;
    for (const std::string& name : names) {
        positions.push_back(*dataset.columnIndex(name));
    }
    return duplicates_.of(cellsOf(dataset, names), names,
                          [&] { return DataCleaning::duplicateRows(dataset.rows, positions); });
}

std::optional<SubgroupMissingnessResult> DataQualityScreen::subgroups() const {
    const ImportedDataset& dataset = state_.dataset();
    const std::optional<std::size_t> group = dataset.columnIndex(fields_.clGroup->name);
    if (!group) {
        return std::nullopt;
    }
    std::vector<std::string> names = VariableLists::numericNames(dataset);
    std::erase(names, fields_.clGroup->name);
    return SubgroupMissingness::byGroup(numbersOf(dataset, names), names,
                                        dataset.rows.column(*group));
}

std::optional<CompositionResult> DataQualityScreen::composition() const {
    const ImportedDataset& dataset = state_.dataset();
    const std::optional<std::size_t> column = dataset.columnIndex(fields_.clCompositionVar->name);
    if (!column) {
        return std::nullopt;
    }
    const std::vector<std::string> categories =
        Categories::of(dataset, fields_.clCompositionVar->name);
    if (categories.size() > mostCategories) {
        return std::nullopt;
    }
    // What was typed for the categories of another variable stays in the field.
    std::map<std::string, double> benchmarks;
    for (const std::string& category : categories) {
        const auto entered = fields_.clBenchmarks->find(category);
        if (entered != fields_.clBenchmarks->end()) {
            benchmarks[category] =
                NumberText::parse(UnicodeText::trimmed(entered->second)).value_or(0.0);
        }
    }
    return SampleComposition::compare(dataset.rows.column(*column), benchmarks);
}

const TextColumn* DataQualityScreen::checkedCells() const {
    const std::optional<std::size_t> column = state_.dataset().columnIndex(fields_.clVar->name);
    return column ? &state_.dataset().rows.column(*column) : nullptr;
}

std::vector<Tile> DataQualityScreen::tiles() const {
    std::vector<Tile> tiles;
    if (hasNumbers()) {
        const MissingDataSummary& summary = missingness().summary;
        tiles.push_back({"Missing values", ResultText::count(summary.missingCells),
                         svFmt(summary.missingCellPercent, 1) + "% of numeric cells"});
        tiles.push_back({"Complete cases", ResultText::count(summary.completeCases),
                         svFmt(summary.completeCasePercent, 1) + "% of rows"});
    }
    if (checkedCells()) {
        tiles.push_back({"Out of range",
                         ResultText::count(state_.clOutOfRangeReport().flaggedCount),
                         fields_.clVar->name});
        tiles.push_back({"Outliers", ResultText::count(state_.clOutlierReport().flaggedCount),
                         fields_.clVar->name});
    }
    tiles.push_back({"Duplicate rows", ResultText::count(duplicates().totalDuplicateRows),
                     ResultText::count(duplicates().duplicateGroupCount) + " group(s)"});
    return tiles;
}

ScreenContent DataQualityScreen::content() const {
    ScreenContent content{.title = "Data Quality",
                          .subtitle =
                              "Missing values, values out of range, outliers and duplicate "
                              "rows. The checks report; they change nothing."};
    if (!state_.hasData()) {
        content.gate = ResultText::noDataGate();
        return content;
    }
    content.tiles = tiles();
    if (hasNumbers()) {
        content.cards.push_back(DataQualityCards::missingness(missingness()));
        content.findings.push_back(DataQualityCards::missingnessFinding(missingness()));
    } else {
        content.cards.push_back(DataQualityCards::withoutNumbers());
    }
    if (const auto byGroup = subgroups()) {
        content.cards.push_back(DataQualityCards::subgroups(*byGroup, fields_.clGroup->name));
    }
    if (const TextColumn* cells = checkedCells()) {
        const std::string& name = fields_.clVar->name;
        content.cards.push_back(
            DataQualityCards::outOfRange(state_.clOutOfRangeReport(), name, *cells));
        content.cards.push_back(DataQualityCards::outliers(state_.clOutlierReport(), name, *cells));
    }
    content.cards.push_back(DataQualityCards::duplicates(duplicates(), keyColumns()));
    if (const auto compared = composition()) {
        const std::string& name = fields_.clCompositionVar->name;
        content.cards.push_back(DataQualityCards::composition(*compared, name));
        if (std::isfinite(compared->pValue)) {
            content.findings.push_back(DataQualityCards::compositionFinding(*compared, name));
        }
    }
    return content;
}

std::optional<std::string> DataQualityScreen::run() {
    return state_.hasData() ? std::nullopt
                            : std::optional(ResultText::sentence(ResultText::noDataGate()));
}

Json DataQualityScreen::result() const {
    if (!state_.hasData()) {
        return nullptr;
    }
    Json result = Json::object();
    if (hasNumbers()) {
        result["missing"] = toJson(missingness().summary);
        result["littleMCAR"] = toJson(missingness().test);
    }
    if (checkedCells()) {
        result["outOfRange"] = toJson(state_.clOutOfRangeReport());
        result["outliers"] = toJson(state_.clOutlierReport());
    }
    result["duplicates"] = toJson(duplicates());
    if (const auto byGroup = subgroups()) {
        result["subgroups"] = toJson(*byGroup);
    }
    if (const auto compared = composition()) {
        result["composition"] = toJson(*compared);
    }
    return result;
}

Guide DataQualityScreen::guide() const {
    return {.answers =
                "Where values are missing and whether that looks random, which values lie outside "
                "the range they can have, which lie far from the rest, and which rows are copies "
                "of one another.",
            .needs =
                "Numeric columns; for the range check the lowest and highest value that the "
                "instrument allows. Whether a flagged value is an error is decided with the "
                "questionnaire or the source at hand.",
            .doNotClaim = {
                "Do not delete cases only because a rule flagged them; in skewed data the quartile "
                "rule flags many honest values.",
                "Do not read a test of missingness that is not significant as proof that values "
                "are missing at random; with few cases it sees little.",
                "Do not call equal rows copies of one person where the answers have few "
                "categories and no identifier tells them apart.",
                "Do not clean without saying in the report what was set to missing, and by "
                "which rule."}};
}

}  // namespace sorvane
