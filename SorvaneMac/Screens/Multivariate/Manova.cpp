#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Multivariate/GroupedOutcomes.h"
#include "SorvaneMac/Screens/Multivariate/MultivariateAnalyses.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view note =
    "Pillai's trace is the most robust to assumption violations; report it when group sizes are "
    "unequal.";
constexpr std::string_view caution =
    "A multivariate group difference is association, not causation. Follow up with univariate "
    "tests cautiously.";

Gate cannotRunManova() {
    return {.title = "Cannot run MANOVA",
            .lead = "",
            .text =
                "MANOVA needs 2+ numeric outcomes, a grouping factor with 2+ groups, and enough "
                "complete cases."};
}

Gate couldNotCompute(const MANOVAResult& result) {
    return {.title = "MANOVA could not be computed on this selection.",
            .lead = result.groupFactorName,
            .text = ResultText::obstacle(result.readiness)};
}

std::vector<std::string> cellsOf(const MANOVATestStatistic& test) {
    return {test.name,
            svFmt(test.statistic, 3),
            svFmt(test.approxF, 2),
            ResultText::degreesOfFreedom(test.dfNumerator),
            ResultText::degreesOfFreedom(test.dfDenominator),
            ResultText::pCell(test.pValue)};
}

ReportTable testTable(const MANOVAResult& result) {
    ReportTable table;
    table.title = "Multivariate tests of " + result.groupFactorName;
    table.headers = {"Statistic", "Value", "F", "df1", "df2", "p"};
    table.rows = {cellsOf(result.pillai), cellsOf(result.wilks), cellsOf(result.hotellingLawley),
                  cellsOf(result.roy)};
    return table;
}

std::string testWords(const MANOVATestStatistic& test) {
    return svFmtBounded(test.statistic, 3) + ", F(" +
           ResultText::degreesOfFreedom(test.dfNumerator) + ", " +
           ResultText::degreesOfFreedom(test.dfDenominator) + ") = " + svFmt(test.approxF, 2) +
           ", " + ResultText::pSentence(test.pValue);
}

std::string sentence(const MANOVAResult& result) {
    return "A one-way MANOVA tested " + ResultText::count(result.numberOfDependentVariables) +
           " outcomes across " + result.groupFactorName + " (" +
           ResultText::count(result.numberOfGroups) +
           " groups, N = " + ResultText::count(result.n) +
           "). Wilks' lambda = " + testWords(result.wilks) +
           "; Pillai's trace = " + testWords(result.pillai) + ".";
}

std::vector<Tile> tiles(const MANOVAResult& result) {
    return {{"Pillai's trace", svFmtBounded(result.pillai.statistic, 3),
             ResultText::pSentence(result.pillai.pValue)},
            {"Wilks' lambda", svFmtBounded(result.wilks.statistic, 3),
             ResultText::pSentence(result.wilks.pValue)},
            {"Groups", ResultText::count(result.numberOfGroups), result.groupFactorName},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

class Manova final : public StoredAnalysis<MultivariateFields, MANOVAResult> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return "Compare groups on several numeric outcomes at once.";
    }

    void addControls(SetupForm& form) override {
        GroupedOutcomes::addControls(form, state_.dataset(), fields_, "Outcomes");
    }

    std::string runLabel() const override { return "Run MANOVA"; }

    std::optional<Gate> gate() const override {
        return GroupedOutcomes::gate(state_.dataset(), fields_, cannotRunManova());
    }

    std::string selection() const override {
        return ResultText::listed(GroupedOutcomes::chosen(state_.dataset(), fields_)) + " by " +
               fields_.mvGroup->name;
    }

    Guide guide() const override {
        return {
            .answers =
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

private:
    std::optional<MANOVAResult> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        const std::vector<std::string> names = GroupedOutcomes::chosen(dataset, fields_);
        std::vector<NumericColumn> columns;
        for (const std::string& name : names) {
            columns.push_back(dataset.numericColumn(name));
        }
        const std::string group = fields_.mvGroup->name;
        return MultivariateANOVA::test(columns, dataset.rows.column(*dataset.columnIndex(group)),
                                       {.dependentNames = names, .groupFactorName = group});
    }

    void present(const MANOVAResult& result, ScreenContent& content) const override {
        if (result.readiness.status == AnalysisReadinessStatus::blocked) {
            content.gate = couldNotCompute(result);
            return;
        }
        addReport({.title = "MANOVA: outcomes by " + result.groupFactorName,
                   .sentence = sentence(result),
                   .tiles = tiles(result),
                   .tables = {testTable(result)},
                   .note = std::string(note) +
                           " Outcomes: " + ResultText::listed(result.dependentNames) + ".",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> MultivariateAnalyses::manova(StudioState& state,
                                                       MultivariateFields& fields) {
    return std::make_unique<Manova>(state, fields, fields.mvManovaStored);
}

}  // namespace sorvane
