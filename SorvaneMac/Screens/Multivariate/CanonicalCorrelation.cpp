#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateAnalyses.h"
#include "SorvaneMac/Screens/PlannedAnalysis.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

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

/// The list of one set: a variable of both sets stays in both lists, so that it can be taken out.
CheckListControl setList(std::string label,
                         Field<NameSet>& own,
                         NameSet other,
                         const VariableLists::List& numeric) {
    for (const std::string& name : own.get()) {
        other.erase(name);
    }
    const VariableLists::List candidates = VariableLists::without(numeric, other);
    return FormControls::withUnavailable(
        FormControls::variableCheckList(std::move(label), own, candidates), own.get(), numeric);
}

class CanonicalCorrelation final : public PlannedAnalysis<MultivariateFields> {
public:
    using PlannedAnalysis::PlannedAnalysis;

    std::string subtitle() const override {
        return "Relate one set of numeric variables to another.";
    }
    void addControls(SetupForm& form) override {
        const VariableLists::List numeric = numericVariables(state_.dataset());
        form.controls.emplace_back(setList("Set X", fields_.mvSetX, fields_.mvSetY.get(), numeric));
        form.controls.emplace_back(setList("Set Y", fields_.mvSetY, fields_.mvSetX.get(), numeric));
    }

    std::string runLabel() const override { return "Run canonical correlation"; }

    Guide guide() const override {
        return {
            .answers =
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

private:
    std::string_view name() const override { return displayName(MVTest::canonical); }

    std::optional<Gate> selectionGate() const override {
        const VariableLists::List numeric = numericVariables(state_.dataset());
        for (const Field<NameSet>* set : {&fields_.mvSetX, &fields_.mvSetY}) {
            if (std::optional<Gate> gone =
                    SelectionGates::goneColumn(*set, numeric, "numeric columns")) {
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
            !Categories::hasCompleteRows(state_.dataset(),
                                         static_cast<std::int64_t>(names.size()) + 1, names)) {
            return cannotRunCanonical();
        }
        return std::nullopt;
    }
};

}  // namespace

std::unique_ptr<Analysis> MultivariateAnalyses::canonicalCorrelation(StudioState& state,
                                                                     MultivariateFields& fields) {
    return std::make_unique<CanonicalCorrelation>(state, fields);
}

}  // namespace sorvane
