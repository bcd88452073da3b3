#include "SorvaneMac/Screens/MultivariateScreen.h"

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
constexpr std::size_t seededVariables = 2;
constexpr std::size_t fewestVariables = 2;

std::string_view runLabel(MVTest test) {
    switch (test) {
        case MVTest::manova:
            return "Run MANOVA";
        case MVTest::discriminant:
            return "Run discriminant analysis";
        case MVTest::canonical:
            return "Run canonical correlation";
    }
    return {};
}

std::string_view subtitleOf(MVTest test) {
    switch (test) {
        case MVTest::manova:
            return "Compare groups on several numeric outcomes at once.";
        case MVTest::discriminant:
            return "Tell groups apart by several numeric variables at once.";
        case MVTest::canonical:
            return "Relate one set of numeric variables to another.";
    }
    return {};
}

Gate cannotRunManova() {
    return {.title = "Cannot run MANOVA",
            .lead = "",
            .text =
                "MANOVA needs 2+ numeric outcomes, a grouping factor with 2+ groups, and enough "
                "complete cases."};
}

Gate cannotRunDiscriminant() {
    return {.title = "Cannot run discriminant analysis",
            .lead = "",
            .text =
                "Discriminant analysis needs 2+ numeric variables, a grouping factor with 2+ "
                "groups, and enough complete cases."};
}

Gate cannotRunCanonical() {
    return {.title = "Cannot run canonical correlation",
            .lead = "",
            .text =
                "Canonical correlation needs at least one numeric variable in each set, and more "
                "complete cases than variables."};
}

Gate setsOverlap(const std::string& name) {
    return {.title = "The two sets must not share a variable",
            .lead = name,
            .text = "\"" + name + "\" stands in both sets. Take it out of one of them."};
}

Guide manovaGuide() {
    return {.answers =
                "Whether groups differ on several numeric outcomes taken together, also where no "
                "single outcome shows it.",
            .needs =
                "Two or more outcomes that belong together in theory, a grouping factor with two "
                "or more groups, and more cases than groups plus outcomes; in each group more "
                "cases than outcomes. No outcome may be a sum or a copy of others.",
            .doNotClaim = {"Do not name the outcome that differs from the multivariate test alone.",
                           "A multivariate group difference is association, not causation. Follow "
                           "up with univariate tests cautiously.",
                           "Do not pick among the four test statistics after seeing which is "
                           "significant; Pillai's trace is the most robust."}};
}

Guide discriminantGuide() {
    return {.answers =
                "Which weighted combinations of numeric variables tell known groups apart, and "
                "how many cases they would place in their own group.",
            .needs =
                "Groups that are known beforehand, two or more numeric variables, and more cases "
                "than groups plus variables. Spreads should be alike in all groups.",
            .doNotClaim = {"Do not report the share of cases classified correctly as if it held "
                           "for new cases: the rule was fitted to the same ones.",
                           "Do not compare that share with zero; compare it with the share of the "
                           "largest group.",
                           "Do not read weights of correlated variables as their importance."}};
}

Guide canonicalGuide() {
    return {.answers =
                "How strongly a weighted combination of one set of variables goes together with "
                "a combination of a second set.",
            .needs =
                "Two sets without a variable in common, chosen by theory, and many more cases "
                "than variables: 10 or more for each variable is a common rule.",
            .doNotClaim = {"Do not read a canonical correlation as variance that one set explains "
                           "in the other; it concerns the combinations only.",
                           "Do not interpret weights that a handful of cases could turn around.",
                           "Do not claim that one set influences the other."}};
}

}  // namespace

void MultivariateScreen::seed() {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    Seeding::fillFirst(fields_.mvGroup, anovaGroupingVariables(state_.dataset()));
    Seeding::fillFirst(fields_.mvVars, variableCandidates(), seededVariables);
    Seeding::fillFirst(fields_.mvSetX, VariableLists::without(numeric, fields_.mvSetY.get()),
                       seededVariables);
    Seeding::fillFirst(fields_.mvSetY, VariableLists::without(numeric, fields_.mvSetX.get()),
                       seededVariables);
}

VariableLists::List MultivariateScreen::variableCandidates() const {
    return VariableLists::without(numericVariables(state_.dataset()), {fields_.mvGroup->name});
}

SetupForm MultivariateScreen::setup() {
    const MVTest test = fields_.mvTest.get();
    SetupForm form;
    form.title = "Multivariate";
    form.controls = {FormControls::enumerationPicker("Test", fields_.mvTest),
                     HeadingControl{"VARIABLES"}};
    addTestControls(form);
    OptionControls::addRun(form, std::string(runLabel(test)), gate(), [this] { run(); });
    return form;
}

void MultivariateScreen::addTestControls(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const VariableLists::List numeric = numericVariables(state_.dataset());
    const auto checkList = [&numeric](std::string label, Field<NameSet>& field,
                                      const VariableLists::List& candidates) {
        return withUnavailable(variableCheckList(std::move(label), field, candidates), field.get(),
                               numeric);
    };
    if (fields_.mvTest.get() == MVTest::canonical) {
        // A variable of both sets stays in both lists, so that it can be taken out.
        const auto candidates = [&numeric](const NameSet& own, NameSet other) {
            for (const std::string& name : own) {
                other.erase(name);
            }
            return VariableLists::without(numeric, other);
        };
        form.controls.emplace_back(checkList(
            "Set X", fields_.mvSetX, candidates(fields_.mvSetX.get(), fields_.mvSetY.get())));
        form.controls.emplace_back(checkList(
            "Set Y", fields_.mvSetY, candidates(fields_.mvSetY.get(), fields_.mvSetX.get())));
        return;
    }
    const bool isManova = fields_.mvTest.get() == MVTest::manova;
    form.controls.emplace_back(variablePicker("Grouping factor", fields_.mvGroup,
                                              anovaGroupingVariables(state_.dataset())));
    form.controls.emplace_back(
        checkList(isManova ? "Outcomes" : "Variables", fields_.mvVars, variableCandidates()));
}

std::optional<Gate> MultivariateScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (std::optional<Gate> missing = selectionGate()) {
        return missing;
    }
    return ResultText::notYetGate(displayName(fields_.mvTest.get()));
}

std::optional<Gate> MultivariateScreen::selectionGate() const {
    switch (fields_.mvTest.get()) {
        case MVTest::manova:
            return groupedGate(cannotRunManova());
        case MVTest::discriminant:
            return groupedGate(cannotRunDiscriminant());
        case MVTest::canonical:
            return canonicalGate();
    }
    return std::nullopt;
}

std::optional<Gate> MultivariateScreen::groupedGate(const Gate& unsuitable) const {
    const ImportedDataset& dataset = state_.dataset();
    if (std::optional<Gate> gone =
            goneColumn(fields_.mvGroup, anovaGroupingVariables(dataset), "grouping columns")) {
        return gone;
    }
    if (std::optional<Gate> gone =
            goneColumn(fields_.mvVars, numericVariables(dataset), numericKind)) {
        return gone;
    }
    const std::vector<std::string> names =
        FormControls::chosen(fields_.mvVars.get(), variableCandidates());
    const std::size_t groups = Categories::of(dataset, fields_.mvGroup->name).size();
    if (names.size() < fewestVariables || groups < 2) {
        return unsuitable;
    }
    const auto terms = static_cast<std::int64_t>(groups + names.size());
    const std::array<std::string, 1> group = {fields_.mvGroup->name};
    if (!Categories::hasCompleteRows(dataset, terms + 1, names, group)) {
        return unsuitable;
    }
    return std::nullopt;
}

std::optional<Gate> MultivariateScreen::canonicalGate() const {
    const VariableLists::List numeric = numericVariables(state_.dataset());
    for (const Field<NameSet>* set : {&fields_.mvSetX, &fields_.mvSetY}) {
        if (std::optional<Gate> gone = goneColumn(*set, numeric, numericKind)) {
            return gone;
        }
    }
    const NameSet& x = fields_.mvSetX.get();
    const NameSet& y = fields_.mvSetY.get();
    for (const std::string& name : x) {
        if (y.contains(name)) {
            return setsOverlap(name);
        }
    }
    std::vector<std::string> names(x.begin(), x.end());
    names.insert(names.end(), y.begin(), y.end());
    if (x.empty() || y.empty() ||
        !Categories::hasCompleteRows(state_.dataset(), static_cast<std::int64_t>(names.size()) + 1,
                                     names)) {
        return cannotRunCanonical();
    }
    return std::nullopt;
}

std::string MultivariateScreen::subtitle() const {
    return std::string(subtitleOf(fields_.mvTest.get()));
}

Guide MultivariateScreen::guide() const {
    switch (fields_.mvTest.get()) {
        case MVTest::manova:
            return manovaGuide();
        case MVTest::discriminant:
            return discriminantGuide();
        case MVTest::canonical:
            return canonicalGuide();
    }
    return {};
}

}  // namespace sorvane
