#include "SorvaneMac/Screens/NonparametricScreen.h"

#include <algorithm>
#include <array>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CategoryTableGates.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"

namespace sorvane {

namespace {

using SelectionGates::goneColumn;
using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

constexpr std::string_view numericKind = "numeric columns";
constexpr std::string_view groupingKind = "grouping columns";
/// What a Friedman test asks for.
constexpr std::size_t fewestItems = 3;
constexpr std::int64_t fewestCases = 2;

std::string_view runLabel(NPTest test) {
    switch (test) {
        case NPTest::mannWhitney:
            return "Run Mann-Whitney U";
        case NPTest::wilcoxon:
            return "Run Wilcoxon signed-rank";
        case NPTest::kruskalWallis:
            return "Run Kruskal-Wallis";
        case NPTest::friedman:
            return "Run Friedman";
        case NPTest::chiSquare:
            return "Run chi-square";
        case NPTest::goodnessOfFit:
            return "Run goodness-of-fit";
        case NPTest::fisher:
            return "Run Fisher exact";
        case NPTest::mcnemar:
            return "Run McNemar";
    }
    return {};
}

Gate notComputable(std::string_view test, std::string reason) {
    return {.title = "Could not compute " + std::string(test) + " for the current selection.",
            .lead = "",
            .text = std::move(reason)};
}

Gate mannWhitneyStopped(std::string reason) {
    return notComputable("Mann-Whitney U", std::move(reason));
}

Gate wilcoxonStopped(std::string reason) {
    return notComputable("Wilcoxon signed-rank", std::move(reason));
}

Gate needOutcomeAndGrouping() {
    return {.title = "Need a numeric outcome and a grouping field",
            .lead = "",
            .text = "Confirm them in Variable Roles, then set up the test on the right."};
}

std::string groupsTooSmall(const Categories::Size& first, const Categories::Size& second) {
    std::string found;
    for (const Categories::Size* group : {&first, &second}) {
        if (group->cases < fewestCases) {
            found += (found.empty() ? "" : ", ") + group->category + ": " +
                     ResultText::count(group->cases);
        }
    }
    return "Each group needs 2+ values (" + found + ").";
}

}  // namespace

void npSeed(NonparametricFields& fields, const ImportedDataset& dataset) {
    const VariableLists::List numeric = numericVariables(dataset);
    const VariableLists::List groupings = anovaGroupingVariables(dataset);
    Seeding::fillFirst(fields.npOutcome, numeric);
    Seeding::fillFirst(fields.npGroup, VariableLists::without(groupings, {fields.npOutcome->name}));
    Categories::fillPair(fields.npG1, fields.npG2, Categories::of(dataset, fields.npGroup->name));
    Seeding::fillFirst(fields.npBefore, VariableLists::without(numeric, {fields.npAfter->name}));
    Seeding::fillFirst(fields.npAfter, VariableLists::without(numeric, {fields.npBefore->name}));
    Seeding::fillFirst(fields.npRowCat, VariableLists::without(groupings, {fields.npColCat->name}));
    Seeding::fillFirst(fields.npColCat, VariableLists::without(groupings, {fields.npRowCat->name}));
    Seeding::fillFirst(fields.npGoFVar, groupings);
    Seeding::fillFirst(fields.npFriedmanItems, numeric, fewestItems);
}

std::vector<std::string> NonparametricScreen::npCategories() const {
    return Categories::of(state_.dataset(), fields_.npGroup->name);
}

SetupForm NonparametricScreen::setup() {
    const NPTest test = fields_.npTest.get();
    SetupForm form;
    form.title = "Nonparametric & Categorical";
    form.controls = {FormControls::enumerationPicker("Test", fields_.npTest),
                     HeadingControl{"VARIABLES"}};
    addTestControls(form);
    OptionControls::addRun(form, std::string(runLabel(test)), gate(), [this] { run(); });
    return form;
}

void NonparametricScreen::addTestControls(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = numericVariables(state_.dataset());
    std::vector<Control>& controls = form.controls;
    switch (fields_.npTest.get()) {
        case NPTest::mannWhitney:
            addGroupControls(form);
            controls.emplace_back(
                OptionControls::categoryPicker("Group 1", fields_.npG1, npCategories()));
            controls.emplace_back(
                OptionControls::categoryPicker("Group 2", fields_.npG2, npCategories()));
            break;
        case NPTest::wilcoxon:
            controls.emplace_back(variablePicker("Before", fields_.npBefore, numeric));
            controls.emplace_back(variablePicker("After", fields_.npAfter, numeric));
            break;
        case NPTest::kruskalWallis:
            addGroupControls(form);
            break;
        case NPTest::friedman:
            controls.emplace_back(
                withUnavailable(variableCheckList("Items", fields_.npFriedmanItems, numeric),
                                fields_.npFriedmanItems.get(), numeric));
            break;
        case NPTest::goodnessOfFit:
            controls.emplace_back(variablePicker("Category", fields_.npGoFVar,
                                                 anovaGroupingVariables(state_.dataset())));
            controls.emplace_back(
                NoteControl{"Expected counts assume equal proportions across categories."});
            break;
        case NPTest::chiSquare:
        case NPTest::fisher:
        case NPTest::mcnemar:
            addTableControls(form);
            break;
    }
}

void NonparametricScreen::addGroupControls(SetupForm& form) {
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List groupings =
        VariableLists::without(anovaGroupingVariables(dataset), {fields_.npOutcome->name});
    form.controls.emplace_back(
        FormControls::variablePicker("Outcome", fields_.npOutcome, numericVariables(dataset)));
    form.controls.emplace_back(OptionControls::followedBy(
        FormControls::variablePicker("Group", fields_.npGroup, groupings),
        [this] { Categories::refillPair(fields_.npG1, fields_.npG2, npCategories()); }));
}

void NonparametricScreen::addTableControls(SetupForm& form) {
    const bool isPaired = fields_.npTest.get() == NPTest::mcnemar;
    const VariableLists::List groupings = anovaGroupingVariables(state_.dataset());
    form.controls.emplace_back(FormControls::variablePicker(
        isPaired ? "First measurement (rows)" : "Row category", fields_.npRowCat, groupings));
    form.controls.emplace_back(
        FormControls::variablePicker(isPaired ? "Second measurement (columns)" : "Column category",
                                     fields_.npColCat, groupings));
}

std::optional<Gate> NonparametricScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (std::optional<Gate> missing = selectionGate()) {
        return missing;
    }
    return ResultText::notYetGate(displayName(fields_.npTest.get()));
}

std::optional<Gate> NonparametricScreen::selectionGate() const {
    switch (fields_.npTest.get()) {
        case NPTest::mannWhitney:
            return mannWhitneyGate();
        case NPTest::wilcoxon:
            return wilcoxonGate();
        case NPTest::kruskalWallis:
            return kruskalWallisGate();
        case NPTest::friedman:
            return friedmanGate();
        case NPTest::goodnessOfFit:
            return goodnessOfFitGate();
        case NPTest::chiSquare:
        case NPTest::fisher:
        case NPTest::mcnemar:
            return tableGate();
    }
    return std::nullopt;
}

std::optional<Gate> NonparametricScreen::outcomeAndGroupGate() const {
    const ImportedDataset& dataset = state_.dataset();
    if (fields_.npOutcome->isBlank() || fields_.npGroup->isBlank() ||
        fields_.npOutcome.get() == fields_.npGroup.get()) {
        return needOutcomeAndGrouping();
    }
    if (std::optional<Gate> gone =
            goneColumn(fields_.npOutcome, numericVariables(dataset), numericKind)) {
        return gone;
    }
    return goneColumn(fields_.npGroup, anovaGroupingVariables(dataset), groupingKind);
}

std::optional<Gate> NonparametricScreen::mannWhitneyGate() const {
    if (std::optional<Gate> missing = outcomeAndGroupGate()) {
        return missing;
    }
    const std::vector<Categories::Size> sizes = Categories::sizes(
        state_.dataset(), fields_.npGroup->name, fields_.npOutcome->name, fewestCases);
    const auto sizeOf = [&sizes](const std::string& category) {
        return std::find_if(sizes.begin(), sizes.end(), [&category](const Categories::Size& size) {
            return size.category == category;
        });
    };
    const auto first = sizeOf(fields_.npG1.get());
    const auto second = sizeOf(fields_.npG2.get());
    if (first == second || first == sizes.end() || second == sizes.end()) {
        return mannWhitneyStopped("Pick two different groups.");
    }
    if (first->cases < fewestCases || second->cases < fewestCases) {
        return mannWhitneyStopped(groupsTooSmall(*first, *second));
    }
    return std::nullopt;
}

std::optional<Gate> NonparametricScreen::wilcoxonGate() const {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    for (const Field<VariableName>* field : {&fields_.npBefore, &fields_.npAfter}) {
        if (std::optional<Gate> gone = goneColumn(*field, numeric, numericKind)) {
            return gone;
        }
    }
    if (fields_.npBefore->isBlank() || fields_.npAfter->isBlank() ||
        fields_.npBefore.get() == fields_.npAfter.get()) {
        return wilcoxonStopped("Pick two different numeric fields.");
    }
    const std::array<std::string, 2> names = {fields_.npBefore->name, fields_.npAfter->name};
    if (!Categories::hasCompleteRows(state_.dataset(), fewestCases, names)) {
        const bool hasOne = Categories::hasCompleteRows(state_.dataset(), 1, names);
        return wilcoxonStopped(std::string("Need 2+ complete pairs (") +
                               (hasOne ? "1 found)." : "none found)."));
    }
    return std::nullopt;
}

std::optional<Gate> NonparametricScreen::kruskalWallisGate() const {
    if (std::optional<Gate> missing = outcomeAndGroupGate()) {
        return missing;
    }
    const std::vector<Categories::Size> sizes = Categories::sizes(
        state_.dataset(), fields_.npGroup->name, fields_.npOutcome->name, fewestCases);
    const auto usable = std::count_if(sizes.begin(), sizes.end(), [](const Categories::Size& size) {
        return size.cases >= fewestCases;
    });
    if (usable < 2) {
        return notComputable("Kruskal-Wallis", "Need 2+ groups with 2+ values each.");
    }
    return std::nullopt;
}

std::optional<Gate> NonparametricScreen::friedmanGate() const {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    if (std::optional<Gate> gone = goneColumn(fields_.npFriedmanItems, numeric, numericKind)) {
        return gone;
    }
    const std::vector<std::string> names =
        FormControls::chosen(fields_.npFriedmanItems.get(), numeric);
    if (names.size() < fewestItems ||
        !Categories::hasCompleteRows(state_.dataset(), fewestCases, names)) {
        return notComputable("Friedman", "Select 3+ item columns and have 2+ complete cases.");
    }
    return std::nullopt;
}

std::optional<Gate> NonparametricScreen::goodnessOfFitGate() const {
    const ImportedDataset& dataset = state_.dataset();
    if (std::optional<Gate> gone =
            goneColumn(fields_.npGoFVar, anovaGroupingVariables(dataset), groupingKind)) {
        return gone;
    }
    if (Categories::of(dataset, fields_.npGoFVar->name).size() < 2) {
        return notComputable("goodness-of-fit", "Need 2+ categories in the chosen field.");
    }
    return std::nullopt;
}

std::optional<Gate> NonparametricScreen::tableGate() const {
    using namespace CategoryTableGates;  // NOLINT(google-build-using-namespace)
    const std::string_view pickTwo = fields_.npTest.get() == NPTest::chiSquare
                                         ? "Pick two different categorical fields."
                                         : "Pick two different fields.";
    if (std::optional<Gate> missing = unsuitableFields(state_.dataset(), fields_, pickTwo)) {
        return missing;
    }
    switch (fields_.npTest.get()) {
        case NPTest::fisher:
            return notTwoByTwo(state_.dataset(), fields_);
        case NPTest::mcnemar:
            return notPairedBinary(state_.dataset(), fields_);
        default:
            return std::nullopt;
    }
}

std::string NonparametricScreen::subtitle() const {
    return std::string(displayName(fields_.npTest.get()));
}

}  // namespace sorvane
