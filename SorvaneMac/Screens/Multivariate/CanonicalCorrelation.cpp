#include "SorvaneCore/Analyses/Multivariate/CanonicalWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Multivariate/CanonicalReport.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateAnalyses.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
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

std::vector<Tile> tiles(const CanonicalCorrelationResult& result) {
    const CanonicalFunction& first = result.functions.front();
    return {{"First correlation", svFmtBounded(first.correlation, 3), "of the variates"},
            {"Wilks' lambda", svFmtBounded(result.tests.front().wilksLambda, 3),
             ResultText::pSentence(result.tests.front().pValue)},
            {"Redundancy", svFmt(100.0 * result.totalRedundancyY, 1) + "%",
             "of set Y by set X; of X by Y " + svFmt(100.0 * result.totalRedundancyX, 1) + "%"},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

class CanonicalSets final : public StoredAnalysis<MultivariateFields, CanonicalCorrelationResult> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return "Relate one set of numeric variables to another.";
    }
    void addControls(SetupForm& form) override {
        const VariableLists::List numeric = numericVariables(state_.dataset());
        form.controls.emplace_back(setList("Set X", fields_.mvSetX, fields_.mvSetY.get(), numeric));
        form.controls.emplace_back(setList("Set Y", fields_.mvSetY, fields_.mvSetX.get(), numeric));
    }

    std::string runLabel() const override { return "Run canonical correlation"; }

    std::optional<Gate> gate() const override {
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

    std::string selection() const override {
        return ResultText::listed(chosen(fields_.mvSetX)) + " with " +
               ResultText::listed(chosen(fields_.mvSetY));
    }

    Guide guide() const override {
        return {
            .answers =
                "How strongly a weighted combination of one set of variables goes together with "
                "a combination of a second set.",
            .needs =
                "Two sets without a variable in common, chosen by theory, and many more cases "
                "than variables: 10 or more for each variable is a common rule.",
            .doNotClaim = CanonicalWording::cautions()};
    }

private:
    /// The variables of a set, in column order.
    std::vector<std::string> chosen(const Field<NameSet>& set) const {
        return FormControls::chosen(set.get(), numericVariables(state_.dataset()));
    }
    std::vector<NumericColumn> columns(const std::vector<std::string>& names) const {
        std::vector<NumericColumn> all;
        for (const std::string& name : names) {
            all.push_back(state_.dataset().numericColumn(name));
        }
        return all;
    }

    std::optional<CanonicalCorrelationResult> compute() override {
        const std::vector<std::string> x = chosen(fields_.mvSetX);
        const std::vector<std::string> y = chosen(fields_.mvSetY);
        return CanonicalCorrelation::fit(columns(x), columns(y), {.setXNames = x, .setYNames = y});
    }

    void present(const CanonicalCorrelationResult& result, ScreenContent& content) const override {
        if (result.functions.empty()) {
            content.gate = {.title = "Canonical correlation could not be computed",
                            .lead = ResultText::listed(result.setXNames) + " with " +
                                    ResultText::listed(result.setYNames),
                            .text = ResultText::obstacle(result.readiness)};
            return;
        }
        addReport({.title = "Canonical correlation of two sets",
                   .sentence = CanonicalWording::summary(result),
                   .tiles = tiles(result),
                   .tables = CanonicalReport::tables(result),
                   .note = "Set X: " + ResultText::listed(result.setXNames) +
                           ". Set Y: " + ResultText::listed(result.setYNames) + ".",
                   .charts = {CanonicalReport::scores(result)},
                   .figureCaption = "Scores of the cases on the first pair of canonical variates.",
                   .caution = ResultText::running(CanonicalWording::cautions()),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> MultivariateAnalyses::canonicalCorrelation(StudioState& state,
                                                                     MultivariateFields& fields) {
    return std::make_unique<CanonicalSets>(state, fields, fields.mvCanonicalStored);
}

}  // namespace sorvane
