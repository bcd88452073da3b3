#include <algorithm>
#include <cmath>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansAnalyses.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/RepeatedValues.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::string_view caution =
    "Within-subjects change is not proof of a causal effect without a controlled design; check "
    "sphericity before interpreting.";

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

Gate couldNotCompute(const RepeatedMeasuresRun& run) {
    return {
        .title = "The repeated-measures ANOVA could not be computed",
        .lead = "",
        .text = run.result ? ResultText::obstacle(run.result->readiness) : tooFewSubjects().text};
}

/// The test as it is to be reported: uncorrected, or with Greenhouse and Geisser's degrees of
/// freedom where sphericity is not assumed.
struct ReportedTest {
    double df1 = 0.0;
    double df2 = 0.0;
    double pValue = 1.0;
};

ReportedTest reportedTest(const RMANOVAResult& result) {
    const double factor = result.sphericityAssumed ? 1.0 : result.greenhouseGeisserEpsilon;
    return {.df1 = static_cast<double>(result.dfConditions) * factor,
            .df2 = static_cast<double>(result.dfError) * factor,
            .pValue = result.sphericityAssumed ? result.pValue : result.ggP};
}

std::string statisticName(const ReportedTest& test) {
    return "F(" + ResultText::degreesOfFreedom(test.df1) + ", " +
           ResultText::degreesOfFreedom(test.df2) + ")";
}

std::string sphericityFlag(const RMANOVAResult& result) {
    return !std::isfinite(result.mauchlyP) ? "Not testable"
           : result.sphericityAssumed      ? "Assumed"
                                           : "Violated → use GG";
}

int decimalsOf(const RMANOVAResult& result, std::size_t condition) {
    return ReportDecimals::ofSample(result.conditionMeans[condition],
                                    result.conditionSDs[condition]);
}

ReportTable conditionTable(const RMANOVAResult& result) {
    ReportTable table;
    table.title = "Conditions";
    table.headers = {"Condition", "n", "M", "SD"};
    for (std::size_t i = 0; i < result.conditionNames.size(); ++i) {
        const int decimals = decimalsOf(result, i);
        table.rows.push_back({result.conditionNames[i], ResultText::count(result.n),
                              svFigure(result.conditionMeans[i], decimals),
                              svFigure(result.conditionSDs[i], decimals)});
    }
    return table;
}

ReportTable sphericityTable(const RMANOVAResult& result) {
    ReportTable table;
    table.title = "Sphericity (Mauchly)";
    table.headers = {"W", "Chi-square", "df", "p", "GG epsilon", "HF epsilon", "Sphericity"};
    table.rows = {{svFmt(result.mauchlyW, 3), svFmt(result.mauchlyChiSquare, 2),
                   ResultText::count(result.mauchlyDF), ResultText::pCell(result.mauchlyP),
                   svFmt(result.greenhouseGeisserEpsilon, 3), svFmt(result.huynhFeldtEpsilon, 3),
                   sphericityFlag(result)}};
    return table;
}

ReportTable effectTable(const RMANOVAResult& result) {
    ReportTable table;
    table.title = "Within-subjects effect";
    table.headers = {"Source", "SS", "df", "MS", "F", "p", "p (GG)", "p (HF)", "η²p"};
    const int decimals = ReportDecimals::of(result.msError, 2);
    table.rows = {
        {"Conditions", svFigure(result.ssConditions, decimals),
         ResultText::count(result.dfConditions), svFigure(result.msConditions, decimals),
         svFmt(result.f, 2), ResultText::pCell(result.pValue), ResultText::pCell(result.ggP),
         ResultText::pCell(result.hfP), svFmt(result.partialEtaSquared, 3)},
        {"Error", svFigure(result.ssError, decimals), ResultText::count(result.dfError),
         svFigure(result.msError, decimals), "", "", "", "", ""}};
    return table;
}

ReportTable pairTable(const RMANOVAResult& result) {
    ReportTable table;
    table.title = "Pairwise comparisons";
    table.headers = {"Condition A", "Condition B", "Mean difference", "t",
                     "df",          "p",           "p (Bonferroni)"};
    const int ofError = ReportDecimals::of(std::sqrt(result.msError), 2);
    const auto decimalsOfCondition = [&result](const std::string& name) {
        const auto at = std::ranges::find(result.conditionNames, name);
        return decimalsOf(result, static_cast<std::size_t>(at - result.conditionNames.begin()));
    };
    for (const RMPairwise& pair : result.pairwise) {
        const int decimals = std::max(
            {ofError, decimalsOfCondition(pair.conditionA), decimalsOfCondition(pair.conditionB)});
        table.rows.push_back({pair.conditionA, pair.conditionB,
                              svFigure(pair.meanDifference, decimals), svFmt(pair.t, 2),
                              ResultText::degreesOfFreedom(pair.df), ResultText::pCell(pair.pValue),
                              ResultText::pCell(pair.bonferroniP)});
    }
    return table;
}

std::string sphericityWords(const RMANOVAResult& result) {
    if (result.sphericityAssumed) {
        return "sphericity assumed.";
    }
    return std::string(std::isfinite(result.mauchlyP) ? "sphericity violated"
                                                      : "sphericity not testable") +
           ", Greenhouse-Geisser correction applied (epsilon = " +
           svFmtBounded(result.greenhouseGeisserEpsilon, 2) + ").";
}

std::string sentence(const RMANOVAResult& result) {
    const ReportedTest test = reportedTest(result);
    return "A one-way repeated-measures ANOVA across " + ResultText::count(result.k) +
           " conditions (N = " + ResultText::count(result.n) + ") showed a " +
           std::string(ResultText::significanceWords(test.pValue)) + " within-subjects effect, " +
           statisticName(test) + " = " + svFmt(result.f, 2) + ", " +
           ResultText::pSentence(test.pValue) +
           ", η²p = " + svFmtBounded(result.partialEtaSquared, 2) + ", " + sphericityWords(result);
}

std::vector<Tile> tiles(const RMANOVAResult& result) {
    const ReportedTest test = reportedTest(result);
    return {{statisticName(test), svFmt(result.f, 2),
             result.sphericityAssumed ? "sphericity assumed" : "Greenhouse-Geisser"},
            {"p-value", ResultText::pTile(test.pValue),
             std::string(ResultText::significanceWords(test.pValue))},
            {"Mauchly's W", svFmtBounded(result.mauchlyW, 3), sphericityFlag(result)},
            {"Subjects", ResultText::count(result.n), "complete in every condition"}};
}

class RepeatedMeasures final : public StoredAnalysis<CompareMeansFields, RepeatedMeasuresRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(InferentialTest::repeatedMeasures));
    }

    void addControls(SetupForm& form) override {
        using namespace FormControls;  // NOLINT(google-build-using-namespace)
        const VariableLists::List numeric = numericVariables(state_.dataset());
        form.controls.emplace_back(
            withUnavailable(variableCheckList("Conditions", fields_.rmColumns, numeric),
                            fields_.rmColumns.get(), numeric));
    }

    std::string runLabel() const override { return "Run repeated-measures ANOVA"; }

    std::optional<Gate> gate() const override {
        const VariableLists::List numeric = numericVariables(state_.dataset());
        if (std::optional<Gate> gone =
                SelectionGates::goneColumn(fields_.rmColumns, numeric, "numeric columns")) {
            return gone;
        }
        const std::vector<std::string> names =
            FormControls::chosen(fields_.rmColumns.get(), numeric);
        if (names.size() < 2) {
            return tooFewConditions();
        }
        if (!Categories::hasCompleteRows(state_.dataset(), GroupSelection::fewestCases, names)) {
            return tooFewSubjects();
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return ResultText::listed(
            FormControls::chosen(fields_.rmColumns.get(), numericVariables(state_.dataset())));
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the mean of the same cases differs between two or more conditions or "
                "points in time.",
            .needs =
                "One numeric column for each condition, all on one scale, and cases that have a "
                "value in every one of them. With three or more conditions the differences "
                "between conditions should vary alike (sphericity); where they do not, a "
                "corrected p-value is reported.",
            .doNotClaim = {"Do not treat a change over time as an effect without a controlled "
                           "design.",
                           "Do not report the uncorrected p-value where sphericity is violated.",
                           "Do not use items of one questionnaire as conditions only because they "
                           "share a response scale."}};
    }

private:
    std::optional<RepeatedMeasuresRun> compute() override {
        const std::vector<std::string> names =
            FormControls::chosen(fields_.rmColumns.get(), numericVariables(state_.dataset()));
        std::vector<NumericColumn> columns;
        for (const std::string& name : names) {
            columns.push_back(state_.dataset().numericColumn(name));
        }
        const std::vector<NamedNumericGroup> conditions = completeColumns(state_.dataset(), names);
        fields_.cmAssumptionFindings.reset();
        return RepeatedMeasuresRun{.result = RepeatedMeasuresANOVA::test(columns, names),
                                   .charts = {GroupCharts::profile(conditions),
                                              GroupCharts::measurementBoxes(conditions)}};
    }

    void present(const RepeatedMeasuresRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->readiness.status == AnalysisReadinessStatus::blocked) {
            content.gate = couldNotCompute(run);
            return;
        }
        const RMANOVAResult& result = *run.result;
        addReport({.title = "Repeated-Measures ANOVA: " + ResultText::listed(result.conditionNames),
                   .sentence = sentence(result),
                   .tiles = tiles(result),
                   .tables = {sphericityTable(result), effectTable(result), pairTable(result),
                              conditionTable(result)},
                   .note = "One-way within-subjects ANOVA. Mauchly's W = " +
                           svFmtBounded(result.mauchlyW, 3) + ", " +
                           ResultText::pSentence(result.mauchlyP) + ".",
                   .charts = run.charts,
                   .figureCaption = "Condition means with 95% confidence intervals.",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> CompareMeansAnalyses::repeatedMeasures(StudioState& state,
                                                                 CompareMeansFields& fields) {
    return std::make_unique<RepeatedMeasures>(state, fields, fields.cmRepeatedMeasuresRun);
}

}  // namespace sorvane
