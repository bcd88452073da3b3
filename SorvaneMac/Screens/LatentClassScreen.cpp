#include "SorvaneMac/Screens/LatentClassScreen.h"

#include <algorithm>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/SuitedVariables.h"

namespace sorvane {

namespace {

using VariableLists::List;

constexpr std::int64_t fewestClasses = 2;
constexpr std::int64_t mostClasses = 5;
constexpr std::int64_t casesPerProfile = 3;
constexpr std::int64_t casesPerClass = 5;

List candidatesFor(LatentMixtureMode mode, const ImportedDataset& dataset) {
    return mode == LatentMixtureMode::classAnalysis
               ? SuitedVariables::withFewCategories(SuitedVariables::analyzed(dataset))
               : VariableLists::numericVariables(dataset);
}

std::string runLabel(LatentScreenKind kind) {
    switch (kind) {
        case LatentScreenKind::profile:
            return "Run latent profiles";
        case LatentScreenKind::classes:
            return "Run latent classes";
        case LatentScreenKind::factorMixture:
            return "Run factor mixture";
    }
    return "";
}

std::string subtitleOf(LatentScreenKind kind) {
    switch (kind) {
        case LatentScreenKind::profile:
            return "Groups of cases with different means on numeric indicators. Listwise deletion. "
                   "Class-specific diagonal variances.";
        case LatentScreenKind::classes:
            return "Groups of cases with different answer probabilities on categorical indicators.";
        case LatentScreenKind::factorMixture:
            return "Groups of cases that differ in the level of one common factor.";
    }
    return "";
}

}  // namespace

void LatentClassScreen::seed() {
    const List candidates = candidatesFor(fields_.lcMode.get(), state_.dataset());
    Seeding::fillFirst(fields_.lcItems, candidates, candidates.size());
    const std::int64_t count = fields_.lcClassCount.get();
    fields_.lcClassCount.set(std::clamp(count, fewestClasses, mostClasses));
}

List LatentClassScreen::candidates() const {
    return candidatesFor(fields_.lcMode.get(), state_.dataset());
}

std::string LatentClassScreen::analysisName() const {
    switch (fields_.lcKind.get()) {
        case LatentScreenKind::profile:
            return "Latent profile analysis";
        case LatentScreenKind::classes:
            return "Latent class analysis";
        case LatentScreenKind::factorMixture:
            return "Factor mixture analysis";
    }
    return "";
}

SetupForm LatentClassScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    const LatentScreenKind kind = fields_.lcKind.get();
    const bool isClasses = fields_.lcMode.get() == LatentMixtureMode::classAnalysis;
    SetupForm form;
    form.title = "Latent Class";
    form.controls = {
        HeadingControl{"MODEL"},
        OptionControls::followedBy(enumerationPicker("Kind of classes", fields_.lcKind),
                                   [this] {
                                       fields_.lcMode.set(fields_.lcKind.get() ==
                                                                  LatentScreenKind::classes
                                                              ? LatentMixtureMode::classAnalysis
                                                              : LatentMixtureMode::profile);
                                   }),
        withUnavailable(variableCheckList(isClasses ? "Categorical indicators" : "Indicators",
                                          fields_.lcItems, candidates()),
                        fields_.lcItems.get(), candidates()),
        OptionControls::stepper("Classes", fields_.lcClassCount, fewestClasses, mostClasses),
    };
    OptionControls::addRun(form, runLabel(kind), gate(), [this] { run(); });
    if (kind != LatentScreenKind::factorMixture) {
        form.controls.emplace_back(HeadingControl{"How many classes?"});
        form.controls.emplace_back(NoteControl{
            "Fit several class counts and prefer the lower BIC, not a single convenient K.",
            false});
        form.controls.emplace_back(
            ButtonControl{.label = "Compare 2–6 classes", .isEnabled = false, .press = [this] {
                              run();
                          }});
    }
    return form;
}

std::optional<Gate> LatentClassScreen::tooFewCases(const std::vector<std::string>& items) const {
    if (fields_.lcKind.get() == LatentScreenKind::factorMixture) {
        return std::nullopt;
    }
    const bool isClasses = fields_.lcMode.get() == LatentMixtureMode::classAnalysis;
    const std::int64_t count = fields_.lcClassCount.get();
    const std::int64_t wanted = count * (isClasses ? casesPerClass : casesPerProfile);
    const bool isEnough = isClasses
                              ? Categories::hasCompleteRows(state_.dataset(), wanted, {}, items)
                              : Categories::hasCompleteRows(state_.dataset(), wanted, items);
    if (isEnough) {
        return std::nullopt;
    }
    return Gate{.title = "There are too few complete cases",
                .lead = "",
                .text = "Need at least " + ResultText::count(wanted) + " complete cases for a " +
                        ResultText::count(count) + "-class " +
                        (isClasses ? "LCA." : "profile model.")};
}

std::optional<Gate> LatentClassScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    const bool isClasses = fields_.lcMode.get() == LatentMixtureMode::classAnalysis;
    const std::vector<std::string> items =
        FormControls::chosen(fields_.lcItems.get(), candidates());
    // Columns that only the other kind takes stay checked, and are left out.
    if (const auto gone = SelectionGates::goneColumn(
            fields_.lcItems, SuitedVariables::analyzed(state_.dataset()), "analyzed columns")) {
        return *gone;
    }
    if (items.size() < 2) {
        return Gate{.title = "Select at least two indicators",
                    .lead = "",
                    .text = isClasses
                                ? "Check two or more columns with two to eight answer categories "
                                  "in the Setup panel."
                                : "Check two or more numeric columns in the Setup panel."};
    }
    if (const std::optional<Gate> few = tooFewCases(items)) {
        return *few;
    }
    return ResultText::notYetGate(analysisName());
}

std::string LatentClassScreen::heading() const {
    return analysisName();
}

std::string LatentClassScreen::subtitle() const {
    return subtitleOf(fields_.lcKind.get());
}

Guide LatentClassScreen::guide() const {
    return {.answers =
                "Whether cases fall into a few groups that nobody observed, what the groups look "
                "like on the indicators, and how surely each case can be placed in one.",
            .needs =
                "Two indicators or more that mean something together: numbers for profiles, "
                "answers of a few categories for classes. Some hundreds of cases, and clearly "
                "more than the smallest class would leave with a handful. Within a class the "
                "indicators are taken to be unrelated.",
            .doNotClaim = {
                "Do not claim that the classes exist because a program found them; skewed "
                "indicators alone make several classes fit better than one.",
                "Do not choose a class count for its neat story; compare the BIC over several "
                "counts and look at each solution.",
                "Do not treat the most likely class as a fact about a person, least of all in a "
                "later analysis that forgets how unsure it was."}};
}

}  // namespace sorvane
