#include "SorvaneMac/Screens/CompareMeansScreen.h"

#include <algorithm>
#include <array>

#include "SorvaneMac/Screens/Categories.h"
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
/// As many conditions as make the test of sphericity meaningful.
constexpr std::size_t seededConditions = 3;
constexpr std::int64_t fewestCases = 2;

std::string_view runLabel(InferentialTest test) {
    switch (test) {
        case InferentialTest::tTest:
            return "Run t-test";
        case InferentialTest::pairedTTest:
            return "Run paired t-test";
        case InferentialTest::anova:
            return "Run ANOVA";
        case InferentialTest::repeatedMeasures:
            return "Run repeated-measures ANOVA";
        case InferentialTest::ancova:
            return "Run ANCOVA";
    }
    return {};
}

Gate needOutcomeAndGrouping() {
    return {.title = "Need a numeric outcome and a grouping field",
            .lead = "",
            .text = "Confirm them in Variable Roles, then set up the test on the right."};
}

Gate pickTwoGroups() {
    return {.title = "Pick two groups",
            .lead = "",
            .text =
                "Pick the outcome and two groups in the Setup panel, then Run t-test. Results "
                "appear here."};
}

Gate groupsMustDiffer() {
    return {.title = "Groups must differ",
            .lead = "",
            .text = "Group 1 and Group 2 are the same. Choose two distinct categories."};
}

Gate groupTooSmall(const Categories::Size& group, const std::string& outcome) {
    return {.title = "Each group needs two or more values",
            .lead = group.category,
            .text = "\"" + group.category + "\" has " + ResultText::count(group.cases) +
                    (group.cases == 1 ? " value of " : " values of ") + outcome +
                    ". Choose another group or another outcome."};
}

Gate pickBeforeAndAfter() {
    return {.title = "Need two measurements of the same cases",
            .lead = "",
            .text =
                "Pick Before and After in the Setup panel: two numeric columns that hold one "
                "measurement of each case. Results appear here."};
}

Gate measurementsMustDiffer() {
    return {.title = "Measurements must differ",
            .lead = "",
            .text = "Before and After are the same column. Choose two distinct columns."};
}

Gate tooFewPairs() {
    return {.title = "Too few complete pairs",
            .lead = "",
            .text =
                "Fewer than two cases have a number in both columns. Choose columns that were "
                "measured on the same cases."};
}

Gate tooFewUsableGroups() {
    return {.title = "Cannot run ANOVA",
            .lead = "",
            .text =
                "ANOVA needs at least two groups with two or more valid outcome values. Pick "
                "another outcome or grouping field."};
}

Gate tooFewConditions() {
    return {.title = "Pick two or more conditions",
            .lead = "",
            .text =
                "Check one numeric column for each condition in the Setup panel. Every case is "
                "measured once under each."};
}

Gate tooFewSubjects() {
    return {.title = "Too few complete subjects",
            .lead = "",
            .text =
                "Repeated-measures ANOVA needs at least two subjects with a complete value in "
                "every condition. Take out a condition that few subjects have."};
}

Gate cannotRunAncova() {
    return {.title = "Cannot run ANCOVA",
            .lead = "",
            .text =
                "Need at least one covariate, two groups, and more complete cases than model "
                "terms."};
}

}  // namespace

void CompareMeansScreen::cmSeedDefaults() {
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List numeric = numericVariables(dataset);
    Seeding::fillFirst(fields_.cmOutcome, numeric);
    Seeding::fillFirst(fields_.cmGrouping, VariableLists::without(anovaGroupingVariables(dataset),
                                                                  {fields_.cmOutcome->name}));
    Categories::refillPair(fields_.cmGroup1, fields_.cmGroup2,
                           Categories::of(dataset, fields_.cmGrouping->name));
    Seeding::fillFirst(fields_.rmColumns, numeric, seededConditions);
}

VariableLists::List CompareMeansScreen::cmAncovaCovariateCandidates() const {
    return VariableLists::without(numericVariables(state_.dataset()),
                                  {fields_.cmAncovaOutcome->name, fields_.cmAncovaGroup->name});
}

SetupForm CompareMeansScreen::setup() {
    const InferentialTest test = fields_.cmTest.get();
    SetupForm form;
    form.title = "Compare Means";
    form.controls = {FormControls::enumerationPicker("Test", fields_.cmTest),
                     HeadingControl{"VARIABLES"}};
    addTestControls(form);
    OptionControls::addRun(form, std::string(runLabel(test)), gate(), [this] { run(); });
    return form;
}

void CompareMeansScreen::addGroupControls(SetupForm& form) {
    const ImportedDataset& dataset = state_.dataset();
    const VariableLists::List groupings =
        VariableLists::without(anovaGroupingVariables(dataset), {fields_.cmOutcome->name});
    form.controls.emplace_back(
        FormControls::variablePicker("Outcome", fields_.cmOutcome, numericVariables(dataset)));
    form.controls.emplace_back(OptionControls::followedBy(
        FormControls::variablePicker("Grouping", fields_.cmGrouping, groupings), [this] {
            Categories::refillPair(fields_.cmGroup1, fields_.cmGroup2,
                                   Categories::of(state_.dataset(), fields_.cmGrouping->name));
        }));
}

void CompareMeansScreen::addTTestControls(SetupForm& form) {
    const std::vector<std::string> groups =
        Categories::of(state_.dataset(), fields_.cmGrouping->name);
    addGroupControls(form);
    std::vector<Control>& controls = form.controls;
    controls.emplace_back(OptionControls::categoryPicker("Group 1", fields_.cmGroup1, groups));
    controls.emplace_back(OptionControls::categoryPicker("Group 2", fields_.cmGroup2, groups));
    controls.emplace_back(HeadingControl{"OPTIONS"});
    controls.emplace_back(FormControls::enumerationPicker("Test type", fields_.cmTestType));
    controls.emplace_back(NoteControl{
        "Welch is the default (Auto). It is safer when group sizes or variances differ."});
    controls.emplace_back(OptionControls::confidencePicker(fields_.cmConfidence));
}

void CompareMeansScreen::addTestControls(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = numericVariables(state_.dataset());
    std::vector<Control>& controls = form.controls;
    switch (fields_.cmTest.get()) {
        case InferentialTest::tTest:
            addTTestControls(form);
            break;
        case InferentialTest::pairedTTest:
            controls.emplace_back(variablePicker("Before", fields_.cmPairBefore, numeric));
            controls.emplace_back(variablePicker("After", fields_.cmPairAfter, numeric));
            controls.emplace_back(HeadingControl{"OPTIONS"});
            controls.emplace_back(OptionControls::confidencePicker(fields_.cmConfidence));
            break;
        case InferentialTest::anova:
            addGroupControls(form);
            controls.emplace_back(HeadingControl{"OPTIONS"});
            controls.emplace_back(OptionControls::confidencePicker(fields_.cmConfidence));
            break;
        case InferentialTest::repeatedMeasures:
            controls.emplace_back(
                withUnavailable(variableCheckList("Conditions", fields_.rmColumns, numeric),
                                fields_.rmColumns.get(), numeric));
            break;
        case InferentialTest::ancova:
            controls.emplace_back(variablePicker("Outcome", fields_.cmAncovaOutcome, numeric));
            controls.emplace_back(
                variablePicker("Group", fields_.cmAncovaGroup,
                               VariableLists::without(anovaGroupingVariables(state_.dataset()),
                                                      {fields_.cmAncovaOutcome->name})));
            controls.emplace_back(
                withUnavailable(variableCheckList("Covariates", fields_.cmAncovaCovariates,
                                                  cmAncovaCovariateCandidates()),
                                fields_.cmAncovaCovariates.get(), numeric));
            break;
    }
}

std::optional<Gate> CompareMeansScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (std::optional<Gate> missing = selectionGate()) {
        return missing;
    }
    return ResultText::notYetGate(displayName(fields_.cmTest.get()));
}

std::optional<Gate> CompareMeansScreen::selectionGate() const {
    switch (fields_.cmTest.get()) {
        case InferentialTest::tTest:
            return tTestGate();
        case InferentialTest::pairedTTest:
            return pairedGate();
        case InferentialTest::anova:
            return anovaGate();
        case InferentialTest::repeatedMeasures:
            return repeatedMeasuresGate();
        case InferentialTest::ancova:
            return ancovaGate();
    }
    return std::nullopt;
}

std::optional<Gate> CompareMeansScreen::outcomeAndGroupGate(
    const Field<VariableName>& outcome, const Field<VariableName>& group) const {
    const ImportedDataset& dataset = state_.dataset();
    if (outcome->isBlank() || group->isBlank() || outcome.get() == group.get()) {
        return needOutcomeAndGrouping();
    }
    if (std::optional<Gate> gone = goneColumn(outcome, numericVariables(dataset), numericKind)) {
        return gone;
    }
    return goneColumn(group, anovaGroupingVariables(dataset), groupingKind);
}

std::optional<Gate> CompareMeansScreen::tTestGate() const {
    if (std::optional<Gate> missing = outcomeAndGroupGate(fields_.cmOutcome, fields_.cmGrouping)) {
        return missing;
    }
    const std::vector<Categories::Size> sizes = Categories::sizes(
        state_.dataset(), fields_.cmGrouping->name, fields_.cmOutcome->name, fewestCases);
    const auto sizeOf = [&sizes](const std::string& category) {
        return std::find_if(sizes.begin(), sizes.end(), [&category](const Categories::Size& size) {
            return size.category == category;
        });
    };
    const auto first = sizeOf(fields_.cmGroup1.get());
    const auto second = sizeOf(fields_.cmGroup2.get());
    if (first == sizes.end() || second == sizes.end()) {
        return pickTwoGroups();
    }
    if (first == second) {
        return groupsMustDiffer();
    }
    for (const auto group : {first, second}) {
        if (group->cases < fewestCases) {
            return groupTooSmall(*group, fields_.cmOutcome->name);
        }
    }
    return std::nullopt;
}

std::optional<Gate> CompareMeansScreen::pairedGate() const {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    if (fields_.cmPairBefore->isBlank() || fields_.cmPairAfter->isBlank()) {
        return pickBeforeAndAfter();
    }
    for (const Field<VariableName>* field : {&fields_.cmPairBefore, &fields_.cmPairAfter}) {
        if (std::optional<Gate> gone = goneColumn(*field, numeric, numericKind)) {
            return gone;
        }
    }
    if (fields_.cmPairBefore.get() == fields_.cmPairAfter.get()) {
        return measurementsMustDiffer();
    }
    const std::array<std::string, 2> names = {fields_.cmPairBefore->name,
                                              fields_.cmPairAfter->name};
    if (!Categories::hasCompleteRows(state_.dataset(), fewestCases, names)) {
        return tooFewPairs();
    }
    return std::nullopt;
}

std::optional<Gate> CompareMeansScreen::anovaGate() const {
    if (std::optional<Gate> missing = outcomeAndGroupGate(fields_.cmOutcome, fields_.cmGrouping)) {
        return missing;
    }
    const std::vector<Categories::Size> sizes = Categories::sizes(
        state_.dataset(), fields_.cmGrouping->name, fields_.cmOutcome->name, fewestCases);
    const auto usable = std::count_if(sizes.begin(), sizes.end(), [](const Categories::Size& size) {
        return size.cases >= fewestCases;
    });
    if (usable < 2) {
        return tooFewUsableGroups();
    }
    return std::nullopt;
}

std::optional<Gate> CompareMeansScreen::repeatedMeasuresGate() const {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    if (std::optional<Gate> gone = goneColumn(fields_.rmColumns, numeric, numericKind)) {
        return gone;
    }
    const std::vector<std::string> names = FormControls::chosen(fields_.rmColumns.get(), numeric);
    if (names.size() < 2) {
        return tooFewConditions();
    }
    if (!Categories::hasCompleteRows(state_.dataset(), fewestCases, names)) {
        return tooFewSubjects();
    }
    return std::nullopt;
}

std::optional<Gate> CompareMeansScreen::ancovaGate() const {
    const ImportedDataset& dataset = state_.dataset();
    if (std::optional<Gate> missing =
            outcomeAndGroupGate(fields_.cmAncovaOutcome, fields_.cmAncovaGroup)) {
        return missing;
    }
    if (std::optional<Gate> gone =
            goneColumn(fields_.cmAncovaCovariates, numericVariables(dataset), numericKind)) {
        return gone;
    }
    std::vector<std::string> numbers =
        FormControls::chosen(fields_.cmAncovaCovariates.get(), cmAncovaCovariateCandidates());
    const std::size_t groups = Categories::of(dataset, fields_.cmAncovaGroup->name).size();
    // An intercept and a term for each group but one make as many terms as groups.
    const auto terms = static_cast<std::int64_t>(groups + numbers.size());
    if (numbers.empty() || groups < 2) {
        return cannotRunAncova();
    }
    numbers.push_back(fields_.cmAncovaOutcome->name);
    const std::array<std::string, 1> group = {fields_.cmAncovaGroup->name};
    if (!Categories::hasCompleteRows(dataset, terms + 1, numbers, group)) {
        return cannotRunAncova();
    }
    return std::nullopt;
}

std::string CompareMeansScreen::subtitle() const {
    return std::string(displayName(fields_.cmTest.get()));
}

}  // namespace sorvane
