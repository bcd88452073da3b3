#include <algorithm>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/Imputation/PooledAnalysis.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

/// Air quality, in which Ozone and Solar_R have gaps.
class AirQuality : public ScreenWorkplace {
public:
    AirQuality() {
        state.importData(SORVANE_SOURCE_DIR "/Tests/Reference/data/airquality.csv");
        EXPECT_FALSE(state.data.importError.get());
        assign({"Ozone", "Solar_R", "Wind", "Temp"}, VariableKind::outcome);
        set({{"prepareSection", R"("imputation")"},
             {"impTargets", R"(["Ozone","Solar_R"])"},
             {"impPredictors", R"(["Wind","Temp"])"}});
    }
    void impute(const Settings& settings = {}) {
        set(settings);
        const std::optional<std::string> refusal = screens.at(dataPrep).run();
        EXPECT_FALSE(refusal) << *refusal;
    }
    void press(const std::string& label) {
        for (const Control& control : screens.at(dataPrep).setup().controls) {
            const auto* button = std::get_if<ButtonControl>(&control);
            if (button && button->label == label) {
                ASSERT_TRUE(button->isEnabled) << label;
                button->press();
                return;
            }
        }
        FAIL() << label;
    }
    bool canPress(const std::string& label) {
        const SetupForm form = screens.at(dataPrep).setup();
        return std::ranges::any_of(form.controls, [&label](const Control& control) {
            const auto* button = std::get_if<ButtonControl>(&control);
            return button && button->label == label && button->isEnabled;
        });
    }
    ScreenContent content() { return screens.at(dataPrep).content(); }
    std::string message() { return state.impMessage->value_or(""); }
    const ImputationFields& fields() { return screens.fields.imputation; }
};

TEST(ImputationScreen, ShowsObservedAgainstImputedAndTheChains) {
    AirQuality air;
    EXPECT_EQ(air.content().cards.front().tables.front().rows[0],
              (Cells{"Ozone", "imputed", "37", "24.2"}));
    std::vector<double> shares;
    const Subscription observer = air.state.fields.observe([&](const AnyField& field) {
        if (&field == &air.state.computingProgress && air.state.computingProgress.get()) {
            shares.push_back(**air.state.computingProgress);
        }
    });
    air.impute();
    EXPECT_EQ(air.state.computingLabel.get(), "Running multiple imputation…");
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_GE(shares.size(), 10U);
    EXPECT_EQ(air.message(), "Generated 5 MICE imputations for Ozone, Solar_R.");
    EXPECT_EQ(air.state.data.transformationLog->back(), air.message());
    EXPECT_EQ(air.state.dataset().columnCount(), 6) << "the table stays as it was";

    const ScreenContent content = air.content();
    ASSERT_EQ(content.findings.size(), 1U);
    const ReportItem& item = content.findings.front().item;
    ASSERT_EQ(item.table->rows.size(), 2U);
    EXPECT_EQ(Cells(item.table->rows[0].begin(), item.table->rows[0].begin() + 5),
              (Cells{"Ozone", "37", "24.2", "42.13", "32.99"}));
    const auto& density = std::get<LinePlot>(content.findings.front().figure->plot);
    ASSERT_EQ(density.series.size(), 6U);
    EXPECT_EQ(density.series[0].name, "Observed");
    const auto trace =
        std::ranges::find(content.cards, "Trace of the imputed mean: Ozone", &Card::title);
    ASSERT_NE(trace, content.cards.end());
    const auto& lines = std::get<LinePlot>(trace->charts.front().plot);
    EXPECT_EQ(lines.series.front().x.size(), 10U);
    EXPECT_NEAR(*lines.reference, 42.1293, 1e-4);

    air.set({{"impChart", R"("Solar_R")"}});
    EXPECT_EQ(air.content().findings.front().figure->title, "Observed and imputed values: Solar_R");
    EXPECT_EQ(air.result(dataPrep, "/m"), "5");
}

TEST(ImputationScreen, ACancelledRunLeavesEverythingAsItWas) {
    AirQuality air;
    air.impute({{"impM", "3"}});
    air.set({{"impAnalysis", R"("mean")"}, {"impTarget", R"("Ozone")"}});
    air.press("Run pooled analysis");
    const std::map<std::string, std::string> before = air.values();
    const ScreenContent shown = air.content();
    std::size_t reports = 0;
    const Subscription observer = air.state.fields.observe([&](const AnyField& field) {
        if (&field == &air.state.computingProgress && air.state.computingProgress.get() &&
            ++reports == 2) {
            EXPECT_TRUE(air.state.computingCancellable.get());
            air.state.cancelComputing();
        }
    });
    air.set({{"impM", "8"}});
    air.impute();
    EXPECT_EQ(reports, 2U) << "no sweep begins afterwards";
    EXPECT_FALSE(air.state.isComputing.get());
    EXPECT_EQ(air.message(), "Imputation canceled. Nothing was changed.");
    for (const auto& [name, value] : air.values()) {
        const bool isOfTheRun =
            name == "impMessage" || name == "impM" || name == "computingProgress";
        EXPECT_TRUE(isOfTheRun || value == before.at(name)) << name;
    }
    EXPECT_EQ(air.content().findings.size(), shown.findings.size());
    EXPECT_EQ(air.fields().impResult.get()->result.m, 3);
}

TEST(ImputationScreen, TooFewCopiesAreWarnedOfWhereTheFigureStands) {
    AirQuality air;
    air.impute({{"impM", "2"},
                {"impRegOutcome", R"("Ozone")"},
                {"impRegPredictors", R"(["Temp","Wind"])"}});
    air.press("Run pooled analysis");
    const ScreenContent content = air.content();
    const std::string pooled = *content.findings.front().item.table->note;
    EXPECT_NE(pooled.find("About as many copies as per cent are advised"), std::string::npos);
    const std::string imputed = *content.findings.back().item.table->note;
    EXPECT_NE(imputed.find("Fewer than 5 imputations (2)"), std::string::npos);
    EXPECT_NE(imputed.find("(5 donors), 2 copies of 153 cases, 10 sweeps each"), std::string::npos);
    EXPECT_EQ(air.result(dataPrep, "/impPooledBasis/variable"), R"("Ozone")");

    air.set({{"impMethod", R"("median")"}});
    EXPECT_TRUE(air.content().findings.empty()) << "the copies are of another method";
    EXPECT_EQ(air.result(dataPrep), "null");
}

struct PooledCase {
    int line;
    Settings settings;
    std::string title;
    std::size_t row;
    std::string label;
    std::size_t columns;
};

// clang-format off
const std::vector<PooledCase> pooledCases = {
    {__LINE__, {{"impAnalysis", R"("regression")"}, {"impRegOutcome", R"("Ozone")"},
                {"impRegPredictors", R"(["Temp","Wind"])"}},
     "Pooled Regression: Ozone", 1, "Wind", 9},
    {__LINE__, {{"impAnalysis", R"("correlation")"}, {"impCorrX", R"("Ozone")"},
                {"impCorrY", R"("Temp")"}},
     "Pooled Correlation: Ozone and Temp", 0, "Ozone and Temp", 6},
    {__LINE__, {{"impAnalysis", R"("mean")"}, {"impTarget", R"("Solar_R")"}},
     "Pooled Mean: Solar_R", 0, "Solar_R", 8},
};
// clang-format on

TEST(ImputationScreen, PoolsAnAnalysisOverTheCopies) {
    AirQuality air;
    EXPECT_FALSE(air.canPress("Run pooled analysis"));
    air.impute();
    for (const PooledCase& each : pooledCases) {
        SCOPED_TRACE(each.line);
        air.set(each.settings);
        air.press("Run pooled analysis");
        const ScreenContent content = air.content();
        ASSERT_EQ(content.findings.size(), 2U) << "only the last pooled analysis is shown";
        const ReportItem& item = content.findings.front().item;
        EXPECT_EQ(item.title, each.title);
        EXPECT_EQ(item.table->rows.at(each.row).front(), each.label);
        EXPECT_EQ(item.table->headers.size(), each.columns);
        EXPECT_EQ(item.table->rows.at(each.row).size(), each.columns);
        int span = 0;
        for (const ReportGroupHeader& header : *item.table->groupHeaders) {
            span += header.span;
        }
        EXPECT_EQ(span, static_cast<int>(each.columns));
        EXPECT_NE(item.apaSummary.find("pooled over 5 imputed copies of 153 cases"),
                  std::string::npos);
        EXPECT_TRUE(content.findings.front().figure);
    }
    const PooledEstimate& mean = *air.fields().impPooled.get();
    EXPECT_EQ(air.content().findings.front().item.table->rows[0][2],
              NumberText::fixed(mean.estimate, 2));

    air.impute();
    EXPECT_FALSE(air.fields().impPooled.get()) << "it was of other copies";
    air.set({{"impRegPredictors", R"(["Month"])"}, {"impAnalysis", R"("regression")"}});
    EXPECT_FALSE(air.canPress("Run pooled analysis"));
    air.set({{"impAnalysis", R"("correlation")"}, {"impCorrY", R"("Ozone")"}});
    EXPECT_FALSE(air.canPress("Run pooled analysis"));
}

TEST(ImputationScreen, PoolingWarnsOfAnOutcomeThatThePredictorsGiveExactly) {
    ScreenWorkplace place;
    // The gap is filled from the five rows that are like it.
    place.state.importPastedData(
        "a,b,x\n4.4,3,1.1\n4.4,3,1.1\n,3,1.1\n4.4,3,1.1\n4.4,3,1.1\n4.4,3,1.1\n10.8,5,2.7\n5.2,4,1."
        "3\n"
        "19.6,7,4.9\n13.2,9,3.3\n");
    place.assign({"a", "b", "x"}, VariableKind::outcome);
    place.set({{"prepareSection", R"("imputation")"},
               {"impTargets", R"(["a"])"},
               {"impPredictors", R"(["b","x"])"}});
    EXPECT_FALSE(place.screens.at(dataPrep).run());
    ASSERT_TRUE(place.screens.fields.imputation.impResult.get());
    place.set({{"impAnalysis", R"("regression")"}, {"impRegPredictors", R"(["x"])"}});
    for (const auto& [outcome, isExact] : {std::pair("a", true), std::pair("b", false)}) {
        place.set({{"impRegOutcome", "\"" + std::string(outcome) + "\""}});
        PooledAnalysis::run(place.state, place.screens.fields.imputation);
        const ScreenContent content = place.screens.at(dataPrep).content();
        const std::string note = *content.findings.front().item.table->note;
        EXPECT_EQ(note.find("rest on rounding alone") != std::string::npos, isExact) << outcome;
    }
}

TEST(ImputationScreen, ExploratoryColumnsHoldTheMeanOfTheCopies) {
    AirQuality air;
    air.impute();
    const MultipleImputationResult copies = air.fields().impResult.get()->result;
    air.press("Add exploratory completed columns");
    const ImportedDataset& dataset = air.state.dataset();
    EXPECT_EQ(dataset.columnCount(), 8);
    const DataVariable* added = dataset.variable("Ozone (imp, exploratory)");
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->warnings.front(),
              "Exploratory completed copy (cell-mean of 5 imputations) of Ozone. Understates "
              "standard error; do not use for inference.");
    EXPECT_EQ(air.message(),
              "2 exploratory completed column(s) (cell-mean of 5 imputations) added: Ozone (imp, "
              "exploratory), Solar_R (imp, exploratory). These understate SE; use the pooled "
              "analysis for inference.");
    const NumericColumn source = dataset.numericColumn("Ozone");
    const NumericColumn completed = dataset.numericColumn("Ozone (imp, exploratory)");
    const auto position = static_cast<std::size_t>(
        std::ranges::find(copies.variableNames, "Ozone") - copies.variableNames.begin());
    for (std::size_t row = 0; row < source.size(); ++row) {
        double sum = 0.0;
        for (const CompletedColumns& copy : copies.imputedDatasets) {
            sum += *copy[position][row];
        }
        ASSERT_TRUE(completed[row]);
        EXPECT_NEAR(*completed[row], source[row].value_or(sum / 5.0), 1e-4) << row;
    }
    EXPECT_TRUE(air.state.undoLastDataChange());
    EXPECT_EQ(air.state.dataset().columnCount(), 6) << "both go in one step";
}

TEST(ImputationScreen, ExploratoryColumnsAreThoseOfTheTableAsItWas) {
    AirQuality air;
    air.impute();
    const ImportedDataset imputed = air.state.dataset();
    const struct {
        int line;
        std::size_t row;
        std::size_t column;
        std::string cell;
        bool fits;
    } cases[] = {
        {__LINE__, 0, 4, "11", true},
        {__LINE__, 0, 0, "42", false},
        {__LINE__, 0, 0, "", false},
        {__LINE__, 4, 0, "42", false},
    };
    for (const auto& each : cases) {
        ImportedDataset changed = imputed;
        DatasetGridEditor::setCell(changed, each.row, each.column, each.cell);
        air.state.data.dataset.replace(std::move(changed));
        EXPECT_EQ(air.canPress("Add exploratory completed columns"), each.fits) << each.line;
    }
}

TEST(ImputationScreen, SingleImputationAddsColumnsAndWarns) {
    AirQuality air;
    air.impute({{"impMethod", R"("mean")"}, {"impTargets", R"(["Ozone"])"}});
    EXPECT_EQ(air.message(),
              "Single imputation from 3 variable(s) using mean. Added 1 column(s) (Ozone (mean "
              "imputed)). Single imputation understates standard error; use MICE + a pooled "
              "analysis for inference.");
    EXPECT_EQ(air.state.dataset().numericColumn("Ozone (mean imputed)")[4], 42.1293);
    EXPECT_FALSE(air.canPress("Run pooled analysis"));
    EXPECT_TRUE(air.content().findings.empty());
}

struct RefusalCase {
    int line;
    std::string table;
    std::string targets;
    std::string predictors;
    std::string said;
};

// clang-format off
const std::vector<RefusalCase> refusalCases = {
    {__LINE__, "a,b\n1,2\n,3\n,4\n,5\n", R"(["a"])", R"(["b"])",
     "Chosen targets have >50% missing; imputation excludes those. Pick others."},
    {__LINE__, "a,b\n1,2\n3,3\n4,4\n,5\n", "[]", R"(["b"])",
     "Select at least one variable to impute."},
    {__LINE__, "a,b\n1,2\n3,3\n4,4\n5,5\n", R"(["a"])", R"(["b"])",
     "No missing values in the selected variables."},
    {__LINE__, "a,b\nx,y\ny,x\nx,x\n", "[]", "[]", "No numeric variables."},
};
// clang-format on

TEST(ImputationScreen, SaysWhyNothingCanBeImputed) {
    for (const RefusalCase& each : refusalCases) {
        SCOPED_TRACE(each.line);
        ScreenWorkplace place;
        place.state.importPastedData(each.table);
        place.assign({"a", "b"}, VariableKind::outcome);
        place.set({{"prepareSection", R"("imputation")"},
                   {"impTargets", each.targets},
                   {"impPredictors", each.predictors}});
        EXPECT_TRUE(place.screens.at(dataPrep).run().value_or("").ends_with(each.said));
    }
}

TEST(ImputationScreen, HalfOfTheValuesIsEnoughAndExclusionsAreSaid) {
    ScreenWorkplace place;
    place.state.importPastedData(
        "a,b,c,d\n1,2,9,1\n2,3,,3\n3,5,,2\n,4,,5\n,6,4,4\n,1,,6\n4,7,,9\n,8,,7\n");
    place.assign({"a", "b", "c", "d"}, VariableKind::outcome);
    place.set({{"prepareSection", R"("imputation")"},
               {"impTargets", R"(["a","c"])"},
               {"impPredictors", R"(["b","d"])"}});
    EXPECT_FALSE(place.screens.at(dataPrep).run());
    EXPECT_EQ(place.state.impMessage.get(),
              "Generated 5 MICE imputations for a. Excluded >50% missing: c.");

    place.state.importPastedData("a,b\n1,2\n2,2\n,2\n4,2\n");
    place.assign({"a", "b"}, VariableKind::outcome);
    place.set({{"impTargets", R"(["a"])"}, {"impPredictors", R"(["b"])"}});
    EXPECT_FALSE(place.screens.at(dataPrep).run());
    EXPECT_TRUE(place.state.impMessage->value_or("").starts_with("MICE could not run. "));
    EXPECT_FALSE(place.screens.fields.imputation.impResult.get());

    place.set({{"impPredictors", R"(["a"])"}});
    EXPECT_FALSE(place.screens.at(dataPrep).run());
    const ScreenContent content = place.screens.at(dataPrep).content();
    EXPECT_NE(content.findings.front().item.table->note->find("There are no predictors"),
              std::string::npos);
}

TEST(ImputationScreen, TextsThatAreNoNumbersAreOfferedAsWell) {
    ScreenWorkplace place;
    place.state.importPastedData("a,b\n1,2\nrefused,2.5\n3,1\n4,5\n5,3\n6,7\n");
    place.assign({"a", "b"}, VariableKind::outcome);
    place.set({{"prepareSection", R"("imputation")"}});
    place.screens.appear(dataPrep);
    EXPECT_EQ(place.value("impTargets"), R"(["a"])");
    EXPECT_FALSE(place.screens.at(dataPrep).run());
}

TEST(ImputationScreen, PredictorsThatKeepTheirMeanAreToldOf) {
    ScreenWorkplace place;
    place.state.importPastedData(
        "a,p,b,c,d,e\n1,4,2,9,4,1\n2,,7,8,1,3\n3,5,5,1,2,2\n,,1,4,9,5\n5,4,6,3,8,7\n"
        "4,,9,2,7,6\n7,1,3,7,3,9\n6,,8,5,5,4\n8,2,4,6,6,8\n9,,2,1,1,7\n");
    place.assign({"a", "p", "b", "c", "d", "e"}, VariableKind::outcome);
    place.set({{"prepareSection", R"("imputation")"},
               {"impTargets", R"(["a"])"},
               {"impPredictors", R"(["p","b","c","d","e"])"}});
    EXPECT_FALSE(place.screens.at(dataPrep).run());
    const ScreenContent content = place.screens.at(dataPrep).content();
    EXPECT_NE(content.findings.front().item.table->note->find("Values of p could not be predicted"),
              std::string::npos);

    place.set({{"impTargets", R"(["a","p"])"}});
    EXPECT_FALSE(place.screens.at(dataPrep).run());
    place.set({{"impChart", R"("p")"}});
    const Chart shares = *place.screens.at(dataPrep).content().findings.front().figure;
    const auto& bars = std::get<GroupedBarPlot>(shares.plot);
    EXPECT_EQ(bars.categories, (Cells{"1", "2", "3.2", "4", "5"}));
    EXPECT_EQ(bars.series[1].values, (std::vector<double>{0, 0, 1, 0, 0}));
}

}  // namespace
}  // namespace sorvane
