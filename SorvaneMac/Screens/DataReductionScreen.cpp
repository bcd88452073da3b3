#include "SorvaneMac/Screens/DataReductionScreen.h"

#include <algorithm>

#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::size_t seededItems = 4;
constexpr std::int64_t fewestLatentCases = 3;
constexpr std::int64_t fewestClusters = 2;
/// More are rarely told apart; a larger number that stands in the field can still be stepped down.
constexpr std::int64_t mostClusters = 12;

std::string_view runLabel(DataReductionMethod method) {
    switch (method) {
        case DataReductionMethod::pca:
            return "Run PCA";
        case DataReductionMethod::efa:
            return "Run factor analysis";
        case DataReductionMethod::omega:
            return "Run omega";
        case DataReductionMethod::kmeans:
        case DataReductionMethod::hierarchical:
            return "Run clustering";
    }
    return {};
}

bool findsClusters(DataReductionMethod method) {
    return method == DataReductionMethod::kmeans || method == DataReductionMethod::hierarchical;
}

Gate cannotRun(DataReductionMethod method) {
    switch (method) {
        case DataReductionMethod::pca:
            return {.title = "Cannot run PCA",
                    .lead = "",
                    .text = "PCA needs variables with variance and enough complete cases."};
        case DataReductionMethod::efa:
            return {.title = "Cannot run EFA",
                    .lead = "",
                    .text =
                        "EFA needs more items than factors, variance in each item, and enough "
                        "complete cases."};
        case DataReductionMethod::omega:
            return {.title = "Cannot run omega",
                    .lead = "",
                    .text = "Omega needs 3+ items with variance and enough complete cases."};
        case DataReductionMethod::kmeans:
        case DataReductionMethod::hierarchical:
            return {.title = "Cannot run clustering",
                    .lead = "",
                    .text = "Need at least k complete cases across the selected variables."};
    }
    return {};
}

Guide componentsGuide() {
    return {.answers =
                "How much of the variance of several related variables a few weighted sums of "
                "them carry.",
            .needs =
                "At least two numeric variables that vary, and complete cases: 100 or more, and "
                "at least five for each variable, for stable components.",
            .doNotClaim = {"Components are statistical summaries, not named constructs. Naming "
                           "them is an interpretive judgment, not a result.",
                           "Do not treat eigenvalues above 1 as proof of the number of "
                           "dimensions; the rule often keeps too many."}};
}

Guide factorsGuide() {
    return {.answers =
                "Which few unobserved factors could account for the correlations among the items, "
                "and which items go with which factor after varimax rotation.",
            .needs =
                "More items than factors, at least three items for each factor, and complete "
                "cases: 100 or more, and at least five for each item.",
            .doNotClaim = {"Factors are statistical, not named constructs. Naming is an "
                           "interpretive judgment, not a result.",
                           "Do not claim that the structure is confirmed by the data it was found "
                           "in.",
                           "Do not claim that factors are unrelated: varimax keeps them so by "
                           "construction."}};
}

Guide omegaGuide() {
    return {.answers =
                "How consistent the sum of the items is as a measure of one common factor, "
                "without asking that all items load alike.",
            .needs =
                "Three or more items of one scale, coded in the same direction, with variance and "
                "enough complete cases.",
            .doNotClaim = {"Reliability is evidence of internal consistency, not proof of "
                           "validity.",
                           "Do not take a high omega as proof of a single factor; omega assumes "
                           "it."}};
}

Guide clustersGuide(DataReductionMethod method) {
    const bool isTree = method == DataReductionMethod::hierarchical;
    return {.answers = isTree ? "Which cases resemble one another, as a tree that merges the most "
                                "similar ones first and can be cut into any number of clusters."
                              : "How the cases can be parted into a given number of clusters so "
                                "that each case is near the centre of its own.",
            .needs =
                "Numeric variables that matter for likeness, standardized where their units "
                "differ, and at least as many complete cases as clusters; five or more in each "
                "cluster.",
            .doNotClaim = {isTree ? "Clusters are groupings the algorithm found, not pre-existing "
                                    "types. Linkage and scaling choices change the solution."
                                  : "Clusters are groupings the algorithm found, not pre-existing "
                                    "types. Different k or scaling choices give different "
                                    "groupings.",
                           "Do not test whether clusters differ on the variables that made them; "
                           "they do by construction."}};
}

}  // namespace

void DataReductionScreen::seed() {
    Seeding::fillFirst(fields_.drItems, numericVariables(state_.dataset()), seededItems);
}

std::vector<std::string> DataReductionScreen::items() const {
    return FormControls::chosen(fields_.drItems.get(), numericVariables(state_.dataset()));
}

SetupForm DataReductionScreen::setup() {
    const DataReductionMethod method = fields_.drMethod.get();
    const VariableLists::List numeric = numericVariables(state_.dataset());
    SetupForm form;
    form.title = "Data Reduction";
    form.controls = {
        FormControls::enumerationPicker("Method", fields_.drMethod),
        HeadingControl{"VARIABLES"},
        FormControls::withUnavailable(
            FormControls::variableCheckList(findsClusters(method) ? "Variables" : "Items",
                                            fields_.drItems, numeric),
            fields_.drItems.get(), numeric),
    };
    addOptionControls(form);
    OptionControls::addRun(form, std::string(runLabel(method)), gate(), [this] { run(); });
    return form;
}

void DataReductionScreen::addOptionControls(SetupForm& form) {
    std::vector<Control>& controls = form.controls;
    const auto mostFactors =
        std::max<std::int64_t>(static_cast<std::int64_t>(items().size()) - 1, 1);
    switch (fields_.drMethod.get()) {
        case DataReductionMethod::pca:
        case DataReductionMethod::omega:
            break;
        case DataReductionMethod::efa:
            controls.emplace_back(HeadingControl{"OPTIONS"});
            controls.emplace_back(OptionControls::stepper("Number of factors",
                                                          fields_.drFactorCount, 1, mostFactors));
            break;
        case DataReductionMethod::kmeans:
            controls.emplace_back(HeadingControl{"OPTIONS"});
            controls.emplace_back(OptionControls::stepper("Number of clusters (k)", fields_.drK,
                                                          fewestClusters, mostClusters));
            controls.emplace_back(
                OptionControls::toggle("Standardize variables", fields_.drStandardize));
            break;
        case DataReductionMethod::hierarchical:
            controls.emplace_back(HeadingControl{"OPTIONS"});
            controls.emplace_back(FormControls::enumerationPicker("Linkage", fields_.drLinkage));
            controls.emplace_back(OptionControls::stepper("Clusters at the cut (k)", fields_.drK,
                                                          fewestClusters, mostClusters));
            controls.emplace_back(
                OptionControls::toggle("Standardize variables", fields_.drStandardize));
            break;
    }
}

std::optional<Gate> DataReductionScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (std::optional<Gate> gone = SelectionGates::goneColumn(
            fields_.drItems, numericVariables(state_.dataset()), "numeric columns")) {
        return gone;
    }
    if (std::optional<Gate> missing = methodGate()) {
        return missing;
    }
    return ResultText::notYetGate(displayName(fields_.drMethod.get()));
}

bool DataReductionScreen::hasItems(std::size_t fewestItems, std::int64_t fewestCases) const {
    const std::vector<std::string> names = items();
    return names.size() >= fewestItems &&
           std::none_of(names.begin(), names.end(),
                        [this](const std::string& name) {
                            const auto& summary = state_.dataset().variable(name)->numericSummary;
                            return summary->minimum == summary->maximum;
                        }) &&
           Categories::hasCompleteRows(state_.dataset(), fewestCases, names);
}

std::optional<Gate> DataReductionScreen::methodGate() const {
    const DataReductionMethod method = fields_.drMethod.get();
    const std::int64_t factors = fields_.drFactorCount.get();
    const std::int64_t clusters = fields_.drK.get();
    bool isReady = false;
    switch (method) {
        case DataReductionMethod::pca:
            isReady = hasItems(2, fewestLatentCases);
            break;
        case DataReductionMethod::efa:
            isReady =
                factors >= 1 && hasItems(static_cast<std::size_t>(factors) + 1, fewestLatentCases);
            break;
        case DataReductionMethod::omega:
            isReady = hasItems(3, fewestLatentCases);
            break;
        case DataReductionMethod::kmeans:
        case DataReductionMethod::hierarchical: {
            const std::vector<std::string> names = items();
            isReady = !names.empty() && clusters >= 1 &&
                      Categories::hasCompleteRows(state_.dataset(), clusters, names);
            break;
        }
    }
    return isReady ? std::nullopt : std::optional(cannotRun(method));
}

std::string DataReductionScreen::subtitle() const {
    return std::string(displayName(fields_.drMethod.get()));
}

Guide DataReductionScreen::guide() const {
    switch (fields_.drMethod.get()) {
        case DataReductionMethod::pca:
            return componentsGuide();
        case DataReductionMethod::efa:
            return factorsGuide();
        case DataReductionMethod::omega:
            return omegaGuide();
        case DataReductionMethod::kmeans:
        case DataReductionMethod::hierarchical:
            return clustersGuide(fields_.drMethod.get());
    }
    return {};
}

}  // namespace sorvane
