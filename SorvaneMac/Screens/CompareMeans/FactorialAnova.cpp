#include <algorithm>
#include <limits>
#include <map>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansAnalyses.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

constexpr std::string_view caution = "A group difference is association, not causation.";
constexpr std::size_t fewestFactors = 2;

Gate pickOutcomeAndFactors() {
    return {.title = "Need a numeric outcome and two factors",
            .lead = "",
            .text =
                "Pick the outcome and check two or more grouping fields as factors in the Setup "
                "panel. Results appear here."};
}

Gate couldNotCompute(const FactorialRun& run) {
    return {.title = "The factorial ANOVA could not be computed",
            .lead = run.outcome,
            .text = run.result ? ResultText::obstacle(run.result->readiness)
                               : "It needs two or more factors with two levels each among the "
                                 "complete cases. Choose other factors in the Setup panel."};
}

bool isBlocked(const FactorialANOVAResult& result) {
    return result.readiness.status == AnalysisReadinessStatus::blocked;
}

/// The values of each combination of levels, in the order of the factors and of the first
/// appearance of their levels.
struct DesignValues {
    std::vector<std::string> levels;
    std::vector<double> values;
};

std::vector<DesignValues> valuesByCell(const NumericColumn& outcome,
                                       const std::vector<const TextColumn*>& factors) {
    std::vector<std::map<std::string, std::size_t>> known(factors.size());
    std::map<std::vector<std::size_t>, DesignValues> cells;
    for (std::size_t row = 0; row < outcome.size(); ++row) {
        const std::optional<double> value = outcome[row];
        std::vector<std::string> levels;
        for (const TextColumn* factor : factors) {
            if (!MissingValue::isMissing((*factor)[row])) {
                levels.emplace_back((*factor)[row]);
            }
        }
        if (!value || levels.size() < factors.size()) {
            continue;
        }
        std::vector<std::size_t> positions;
        for (std::size_t i = 0; i < factors.size(); ++i) {
            positions.push_back(known[i].try_emplace(levels[i], known[i].size()).first->second);
        }
        DesignValues& cell = cells[positions];
        cell.levels = std::move(levels);
        cell.values.push_back(*value);
    }
    std::vector<DesignValues> result;
    for (auto& [positions, cell] : cells) {
        result.push_back(std::move(cell));
    }
    return result;
}

/// The means of the outcome along the first factor, a line for each level of the second; over the
/// levels of any further factor together.
Chart profileOf(const FactorialRun& run, const std::vector<DesignValues>& cells) {
    LinePlot plot;
    std::vector<std::vector<std::vector<double>>> values;
    const auto positionOf = [](const auto& names, const std::string& name, auto nameOf) {
        return static_cast<std::size_t>(
            std::find_if(names.begin(), names.end(),
                         [&](const auto& each) { return nameOf(each) == name; }) -
            names.begin());
    };
    for (const DesignValues& cell : cells) {
        const std::size_t column = positionOf(plot.categories, cell.levels[0],
                                              [](const std::string& each) { return each; });
        const std::size_t line = positionOf(plot.series, cell.levels[1],
                                            [](const LinePlot::Series& each) { return each.name; });
        if (column == plot.categories.size()) {
            plot.categories.push_back(cell.levels[0]);
        }
        if (line == plot.series.size()) {
            plot.series.push_back({.name = cell.levels[1]});
            values.emplace_back();
        }
        values[line].resize(std::max(values[line].size(), column + 1));
        std::vector<double>& pooled = values[line][column];
        pooled.insert(pooled.end(), cell.values.begin(), cell.values.end());
    }
    for (std::size_t line = 0; line < values.size(); ++line) {
        for (std::size_t column = 0; column < values[line].size(); ++column) {
            if (const auto mean = DescriptiveStatistics::mean(values[line][column])) {
                plot.series[line].x.push_back(static_cast<double>(column));
                plot.series[line].y.push_back(*mean);
            }
        }
    }
    Chart chart;
    chart.title = "Profile plot";
    const std::vector<std::string>& factors = run.result->factorNames;
    chart.subtitle = "Means; one line for each level of " + factors[1] +
                     (factors.size() > 2 ? ", over the levels of the other factors" : "") +
                     ". Lines that are not parallel speak for an interaction.";
    chart.xLabel = factors[0];
    chart.yLabel = "Mean " + run.outcome;
    chart.plot = std::move(plot);
    return chart;
}

ReportTable effectTable(const FactorialANOVAResult& result) {
    ReportTable table;
    table.title = "Tests of effects (Type III)";
    table.headers = {"Source", "SS", "df", "MS", "F", "p", "η²p"};
    const int decimals = ReportDecimals::of(result.meanSquareError, 2);
    for (const FactorialANOVAEffect& effect : result.effects) {
        table.rows.push_back({effect.name, svFigure(effect.sumOfSquares, decimals),
                              ResultText::count(effect.degreesOfFreedom),
                              svFigure(effect.meanSquare, decimals), svFmt(effect.f, 2),
                              effect.pValue ? ResultText::pCell(*effect.pValue) : "--",
                              svFmt(effect.partialEtaSquared, 3)});
    }
    table.rows.push_back(
        {"Error", svFigure(result.meanSquareError * static_cast<double>(result.dfError), decimals),
         ResultText::count(result.dfError), svFigure(result.meanSquareError, decimals), "", "",
         ""});
    return table;
}

ReportTable cellTable(const FactorialRun& run) {
    ReportTable table;
    table.title = "Cell statistics";
    table.headers = run.result->factorNames;
    for (const char* header : {"n", "M", "SD"}) {
        table.headers.emplace_back(header);
    }
    for (const DesignCell& cell : run.cells) {
        std::vector<std::string> row = cell.levels;
        row.push_back(ResultText::count(cell.figures.n));
        const int decimals = cell.figures.decimals();
        row.push_back(svFigure(cell.figures.mean, decimals));
        row.push_back(svFigure(cell.figures.standardDeviation, decimals));
        table.rows.push_back(std::move(row));
    }
    return table;
}

std::string effectWords(const FactorialANOVAEffect& effect, std::int64_t dfError) {
    const double p = effect.pValue.value_or(std::numeric_limits<double>::quiet_NaN());
    return effect.name + " was " + std::string(ResultText::significanceWords(p)) + ", F(" +
           ResultText::count(effect.degreesOfFreedom) + ", " + ResultText::count(dfError) +
           ") = " + svFmt(effect.f, 2) + ", " + ResultText::pSentence(p) +
           ", η²p = " + svFmtBounded(effect.partialEtaSquared, 2);
}

std::string design(const FactorialANOVAResult& result) {
    std::string text;
    for (const std::string& name : result.factorNames) {
        text += (text.empty() ? "" : " × ") + name;
    }
    return text;
}

std::string sentence(const FactorialRun& run) {
    const FactorialANOVAResult& result = *run.result;
    std::string text = "A " + design(result) + " factorial ANOVA of " + run.outcome +
                       " (N = " + ResultText::count(result.n) +
                       ") tested each effect with every other term in the model.";
    for (const FactorialANOVAEffect& effect : result.effects) {
        text += " The effect of " + effectWords(effect, result.dfError) + ".";
    }
    return text;
}

std::vector<Tile> tiles(const FactorialRun& run) {
    const FactorialANOVAResult& result = *run.result;
    return {{"Cases used", ResultText::count(result.n), "complete on all variables"},
            {"Cells", ResultText::count(static_cast<std::int64_t>(run.cells.size())),
             result.isBalanced ? "all of one size" : "of different sizes"},
            {"Error df", ResultText::count(result.dfError), ""}};
}

class FactorialAnova final : public StoredAnalysis<CompareMeansFields, FactorialRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(InferentialTest::factorial));
    }

    void addControls(SetupForm& form) override {
        using namespace FormControls;  // NOLINT(google-build-using-namespace)
        const VariableLists::List factors = VariableLists::without(
            anovaGroupingVariables(state_.dataset()), {fields_.cmOutcome->name});
        form.controls.emplace_back(
            variablePicker("Outcome", fields_.cmOutcome, numericVariables(state_.dataset())));
        form.controls.emplace_back(
            withUnavailable(variableCheckList("Factors", fields_.cmFactors, factors),
                            fields_.cmFactors.get(), factors));
    }

    std::string runLabel() const override { return "Run factorial ANOVA"; }

    std::optional<Gate> gate() const override {
        const ImportedDataset& dataset = state_.dataset();
        if (fields_.cmOutcome->isBlank() || fields_.cmFactors->size() < fewestFactors) {
            return pickOutcomeAndFactors();
        }
        if (std::optional<Gate> gone = SelectionGates::goneColumn(
                fields_.cmOutcome, numericVariables(dataset), "numeric columns")) {
            return gone;
        }
        return SelectionGates::goneColumn(
            fields_.cmFactors,
            VariableLists::without(anovaGroupingVariables(dataset), {fields_.cmOutcome->name}),
            "grouping columns other than the outcome");
    }

    std::string selection() const override {
        return fields_.cmOutcome->name + " by " +
               ResultText::listed(FormControls::chosen(fields_.cmFactors.get(),
                                                       anovaGroupingVariables(state_.dataset())));
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the mean of an outcome differs between the levels of each of several "
                "factors, and whether the effect of one factor depends on another (interaction).",
            .needs =
                "Independent cases with a value of the outcome and a level of every factor, at "
                "least two levels each, and cases in every combination; five or more in each is a "
                "common rule.",
            .doNotClaim = {"Do not interpret a main effect alone where its interaction is "
                           "significant; look at the profile plot first.",
                           "Do not claim causation for factors that cases were not assigned to.",
                           std::string(ResultText::notProofOfEqualMeans)}};
    }

private:
    std::optional<FactorialRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        fields_.cmAssumptionFindings.reset();
        FactorialRun run{.outcome = fields_.cmOutcome->name};
        const std::vector<std::string> names =
            FormControls::chosen(fields_.cmFactors.get(), anovaGroupingVariables(dataset));
        std::vector<const TextColumn*> factors;
        for (const std::string& name : names) {
            factors.push_back(&dataset.rows.column(*dataset.columnIndex(name)));
        }
        const NumericColumn outcome = dataset.numericColumn(run.outcome);
        run.result = FactorialANOVATests::nWay(outcome, factors, names);
        if (run.result && !isBlocked(*run.result)) {
            const std::vector<DesignValues> cells = valuesByCell(outcome, factors);
            for (const DesignValues& cell : cells) {
                run.cells.push_back(
                    {.levels = cell.levels, .figures = SampleFigures::of("", cell.values)});
            }
            run.charts = {profileOf(run, cells)};
        }
        return run;
    }

    void present(const FactorialRun& run, ScreenContent& content) const override {
        if (!run.result || isBlocked(*run.result)) {
            content.gate = couldNotCompute(run);
            return;
        }
        const FactorialANOVAResult& result = *run.result;
        content.subtitle = "Factorial ANOVA: " + run.outcome + " by " + design(result);
        addReport({.title = "Factorial ANOVA: " + run.outcome + " by " + design(result),
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = {effectTable(result), cellTable(run)},
                   .note = "SS is the Type III sum of squares; η²p is partial eta-squared.",
                   .charts = run.charts,
                   .figureCaption = "Means of " + run.outcome + " by " + result.factorNames[0] +
                                    " and " + result.factorNames[1] + ".",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(result.readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> CompareMeansAnalyses::factorialAnova(StudioState& state,
                                                               CompareMeansFields& fields) {
    return std::make_unique<FactorialAnova>(state, fields, fields.cmFactorialRun);
}

}  // namespace sorvane
