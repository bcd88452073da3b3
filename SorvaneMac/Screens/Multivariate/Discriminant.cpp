#include "SorvaneCore/Analyses/Multivariate/DiscriminantWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Multivariate/DiscriminantReport.h"
#include "SorvaneMac/Screens/Multivariate/GroupedOutcomes.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateAnalyses.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

Gate cannotRunDiscriminant() {
    return {.title = "Cannot run discriminant analysis",
            .lead = "",
            .text =
                "Discriminant analysis needs 2+ numeric variables, a grouping factor with 2+ "
                "groups, and enough complete cases."};
}

std::vector<Tile> tiles(const DiscriminantResult& result) {
    const DiscriminantFunction& first = result.functions.front();
    return {{"Wilks' lambda", svFmtBounded(result.tests.front().wilksLambda, 3),
             ResultText::pSentence(result.tests.front().pValue)},
            {"Canonical correlation", svFmtBounded(first.canonicalCorrelation, 3),
             "of the first function"},
            {"Placed correctly", svFmt(100.0 * result.leaveOneOut.accuracy, 1) + "%",
             "leaving one out; largest group " + svFmt(100.0 * result.largestGroupShare, 1) + "%"},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

class Discriminant final : public StoredAnalysis<MultivariateFields, DiscriminantResult> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return "Tell groups apart by several numeric variables at once.";
    }
    void addControls(SetupForm& form) override {
        GroupedOutcomes::addControls(form, state_.dataset(), fields_, "Variables");
        form.controls.emplace_back(HeadingControl{"OPTIONS"});
        form.controls.emplace_back(
            FormControls::enumerationPicker("Prior probabilities", fields_.mvPriors));
    }

    std::string runLabel() const override { return "Run discriminant analysis"; }

    std::optional<Gate> gate() const override {
        return GroupedOutcomes::gate(state_.dataset(), fields_, cannotRunDiscriminant());
    }

    std::string selection() const override {
        return fields_.mvGroup->name + " by " +
               ResultText::listed(GroupedOutcomes::chosen(state_.dataset(), fields_));
    }

    Guide guide() const override {
        return {
            .answers =
                "Which weighted combinations of numeric variables tell known groups apart, and "
                "how many cases they would place in their own group.",
            .needs =
                "Groups that are known beforehand, two or more numeric variables, and more cases "
                "than groups plus variables. Spreads should be alike in all groups.",
            .doNotClaim = DiscriminantWording::cautions()};
    }

private:
    std::optional<DiscriminantResult> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        const std::vector<std::string> names = GroupedOutcomes::chosen(dataset, fields_);
        std::vector<NumericColumn> columns;
        for (const std::string& name : names) {
            columns.push_back(dataset.numericColumn(name));
        }
        const std::string group = fields_.mvGroup->name;
        return DiscriminantAnalysis::fit(
            columns, dataset.rows.column(*dataset.columnIndex(group)),
            {.predictorNames = names, .groupFactorName = group, .priors = fields_.mvPriors.get()});
    }

    void present(const DiscriminantResult& result, ScreenContent& content) const override {
        if (result.functions.empty()) {
            content.gate = {.title = "Discriminant analysis could not be computed",
                            .lead = result.groupFactorName,
                            .text = ResultText::obstacle(result.readiness)};
            return;
        }
        addReport({.title = "Discriminant analysis: " + result.groupFactorName,
                   .sentence = DiscriminantWording::summary(result),
                   .tiles = tiles(result),
                   .tables = DiscriminantReport::tables(result),
                   .note = "Variables: " + ResultText::listed(result.predictorNames) + ".",
                   .charts = {DiscriminantReport::scores(result)},
                   .figureCaption = "Scores of the cases on the discriminant functions, by " +
                                    result.groupFactorName + ".",
                   .caution = ResultText::running(DiscriminantWording::cautions()),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> MultivariateAnalyses::discriminant(StudioState& state,
                                                             MultivariateFields& fields) {
    return std::make_unique<Discriminant>(state, fields, fields.mvDiscriminantStored);
}

}  // namespace sorvane
