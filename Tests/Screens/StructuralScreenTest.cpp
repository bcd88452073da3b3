#include <tuple>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/JsonQuoting.h"
#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Screens/Structural/SEMAdmissibility.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using Cells = std::vector<std::string>;
using enum StudioScreen;

const std::string threeFactors =
    "visual =~ x1 + x2 + x3\ntextual =~ x4 + x5 + x6\nspeed =~ x7 + x8 + x9";

Settings modelOf(const std::string& text) {
    return {{"semModel", jsonString(text)}};
}

/// The label of the path between two nodes; "none" without one.
std::string labelBetween(const PathDiagram& diagram,
                         const std::string& from,
                         const std::string& to) {
    for (const PathDiagram::Path& path : diagram.paths) {
        if (diagram.nodes[path.from].label == from && diagram.nodes[path.to].label == to) {
            return path.label;
        }
    }
    return "none";
}

const Cells& rowOf(const ReportTable& table, const std::string& first) {
    for (const Cells& row : table.rows) {
        if (row.front() == first) {
            return row;
        }
    }
    throw std::out_of_range(first);
}

TEST(StructuralScreen, AFactorModelGoesIntoTheReport) {
    ReferenceStudy study("hs1939.csv");
    const ScreenContent content = study.shown(sem, modelOf(threeFactors));
    const Finding& finding = content.findings.front();
    const ReportItem& item = finding.item;
    EXPECT_EQ(item.title, "Confirmatory Factor Analysis");
    EXPECT_EQ(item.apaSummary,
              "A confirmatory factor analysis was estimated by maximum likelihood (N = 301). Model "
              "fit: chi-square(24) = 85.31, p < .001, CFI = .931, TLI = .896, RMSEA = .092, 90% CI "
              "[.071, .114], SRMR = .065.");
    const ReportTable parameters = APAFormat::normalize(*item.table);
    EXPECT_EQ(parameters.headers, (Cells{"Parameter", "Estimate", "SE", "z", "p", "Std."}));
    EXPECT_EQ(parameters.rows[0], (Cells{"visual =~ x1", "1.000", "fixed", "--", "--", ".772"}));
    EXPECT_EQ(parameters.rows[1],
              (Cells{"visual =~ x2", "0.554", "0.100", "5.55", "< .001", ".424"}));
    EXPECT_EQ(parameters.rows.size(), 24U);
    EXPECT_TRUE(parameters.note->starts_with(
        "Maximum-likelihood estimates (marker-variable identification). Model fit: "
        "chi-square(24) = 85.31, p < .001, CFI"))
        << *parameters.note;
    const ReportTable fit = APAFormat::normalize(item.extraTables->at(0));
    EXPECT_EQ(fit.rows[0],
              (Cells{"85.31", "24", "< .001", ".931", ".896", ".092", ".071", ".114", ".065"}));
    EXPECT_TRUE(fit.note->starts_with("Common cutoffs: CFI ≥ .95"));
    EXPECT_EQ(rowOf(item.extraTables->at(1), "x4")[1], "0.725");
    EXPECT_EQ(item.extraTables->at(2).rows[0][0], "x2 – x7");
    EXPECT_EQ(item.extraTables->at(2).rows[0][3], "-.189");
    EXPECT_EQ(item.extraTables->at(2).rows.size(), 5U);
    EXPECT_EQ(item.caution,
              "Fit indices are guidance, not proof; a fitting model is one of many that could fit. "
              "Indicators are treated as continuous.");

    EXPECT_EQ(item.semDiagram->latent, (Cells{"visual", "textual", "speed"}));
    EXPECT_EQ(item.semDiagram->parameters.size(), 24U);
    EXPECT_NEAR(*item.semDiagram->parameters[1].std, 0.4236, 1e-4);
    EXPECT_TRUE(item.semDiagram->fit->starts_with("chi-square(24) = 85.31"));
    const auto& diagram = std::get<PathDiagram>(finding.figure->plot);
    EXPECT_EQ(diagram.nodes.size(), 12U);
    EXPECT_EQ(diagram.nodes[0].shape, PathDiagram::Shape::latent);
    EXPECT_EQ(labelBetween(diagram, "textual", "x5"), ".86");
    EXPECT_EQ(labelBetween(diagram, "visual", "textual"), ".46");
    EXPECT_EQ(diagram.paths.size(), 12U) << "variances are not drawn";

    const Card* fitCard = cardOf(content, "Model fit");
    ASSERT_NE(fitCard, nullptr);
    EXPECT_EQ(fitCard->passages.front().text,
              "BF₁₀ > 10000: extreme evidence for the fitted model over the saturated model.");
    EXPECT_EQ(cardOf(content, "The model as it was fitted")->preformatted, threeFactors);
}

TEST(StructuralScreen, ArrowsOfRegressionsLeadToTheirOutcome) {
    ReferenceStudy study("politicaldemocracy.csv");
    const ScreenContent content = study.shown(
        sem, modelOf("ind60 =~ x1 + x2 + x3\ndem60 =~ y1 + y2 + y3 + y4\ndem60 ~ ind60\ny2 ~~ y4"));
    const Finding& finding = content.findings.front();
    EXPECT_EQ(finding.item.title, "Structural Equation Model");
    EXPECT_TRUE(finding.item.apaSummary.starts_with(
        "A structural equation model was estimated by maximum likelihood (N = 75)."));
    const auto& diagram = std::get<PathDiagram>(finding.figure->plot);
    EXPECT_NE(labelBetween(diagram, "ind60", "dem60"), "none");
    EXPECT_EQ(labelBetween(diagram, "dem60", "ind60"), "none");
    EXPECT_EQ(cardOf(content, "Cautions")->cautions.front(),
              "Fewer than 100 complete cases; SEM estimates and fit indices are unstable at this "
              "sample size.");
    const ReportTable& shares = finding.item.extraTables->at(1);
    EXPECT_NO_THROW(rowOf(shares, "dem60"));
    EXPECT_THROW(rowOf(shares, "ind60"), std::out_of_range) << "nothing explains it";
}

struct FitCase {
    int line;
    std::string model;
    /// Rows of the table that are used; 0 for all.
    std::size_t rows;
    /// One of the cautions begins so; empty where there is a gate with the obstacle.
    std::string caution;
    std::string obstacle;
};

TEST(StructuralScreen, SaysWhatSpeaksAgainstASolution) {
    const std::vector<FitCase> cases = {
        {__LINE__, "f =~ x1 + x2 + x3", 0, "The model has no degrees of freedom", ""},
        {__LINE__, "visual =~ x1 + x2 + x3\nspeed =~ x7 + x8 + x9\nvisual ~~ speed", 40,
         "A negative estimated variance (Heywood case) was found for x3", ""},
        {__LINE__, "f =~ x1 + x2 + x3 + x4\nx1 ~~ 0.5*x1\nx2 ~~ 0.5*x2\nx1 ~~ -0.6*x2", 0,
         "The estimated residual correlation of x1 and x2 is beyond ±1", ""},
        {__LINE__,
         threeFactors + "\nvisual ~~ 0.5*visual\ntextual ~~ 0.9*textual\nspeed ~~ 0.4*speed\n"
                        "visual ~~ 0.5*textual\nvisual ~~ 0.35*speed\ntextual ~~ 0.05*speed",
         0, "The estimated covariances of speed, textual, and visual cannot occur together", ""},
        {__LINE__, threeFactors, 20, "The ML estimator did not converge", ""},
        {__LINE__, "f =~ x1 + x2", 0, "", "Model is not identified: free parameters exceed"},
        {__LINE__, threeFactors, 2, "", "The sample covariance matrix is not positive"},
    };
    for (const FitCase& each : cases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study("hs1939.csv");
        if (each.rows > 0) {
            ImportedDataset table = study.state.dataset();
            std::string text = "x1,x2,x3,x4,x5,x6,x7,x8,x9\n";
            for (std::size_t row = 0; row < each.rows; ++row) {
                for (int item = 1; item <= 9; ++item) {
                    const std::string name = "x" + std::to_string(item);
                    text += table.values(name)[row] + (item == 9 ? "\n" : ",");
                }
            }
            study.state.importPastedData(text);
            study.assign({"x1", "x2", "x3", "x4", "x5", "x6", "x7", "x8", "x9"},
                         VariableKind::outcome);
        }
        const ScreenContent content = study.shown(sem, modelOf(each.model));
        EXPECT_EQ(content.findings.empty(), !each.obstacle.empty());
        if (!each.obstacle.empty()) {
            EXPECT_EQ(content.gate->title, "Estimation blocked");
            EXPECT_TRUE(content.gate->lead.starts_with(each.obstacle)) << content.gate->lead;
            continue;
        }
        const Card* cautions = cardOf(content, "Cautions");
        ASSERT_NE(cautions, nullptr);
        EXPECT_TRUE(std::ranges::any_of(cautions->cautions, [&each](const std::string& text) {
            return text.starts_with(each.caution);
        }));
        const bool converged = each.caution != "The ML estimator did not converge";
        const ReportItem& item = content.findings.front().item;
        EXPECT_EQ(content.tiles.front().value != "Did not converge", converged);
        EXPECT_NE(item.apaSummary.ends_with("estimates are not trustworthy."), converged);
        EXPECT_NE(item.caution->starts_with("The ML estimator did not converge"), converged);
        EXPECT_NE(item.semDiagram->fit->starts_with("Did not converge: "), converged);
    }
}

/// Three items that load on f, with variances and covariances as given.
SEMResult solution(const std::vector<std::tuple<std::string, std::string, double>>& covariances) {
    SEMResult result;
    for (const char* item : {"x1", "x2", "x3"}) {
        result.parameters.push_back({.lhs = "f", .op = "=~", .rhs = item, .estimate = 1.0});
    }
    for (const auto& [lhs, rhs, estimate] : covariances) {
        result.parameters.push_back({.lhs = lhs, .op = "~~", .rhs = rhs, .estimate = estimate});
    }
    return result;
}

TEST(StructuralScreen, JudgesCovariancesByTheGroupsThatTheyJoin) {
    using Covariances = std::vector<std::tuple<std::string, std::string, double>>;
    const std::string end =
        " cannot occur together (their matrix is not positive definite); the solution is not "
        "admissible.";
    const Covariances factors = {{"f", "f", 1.0}, {"g", "g", 1.0},  {"h", "h", 1.0},
                                 {"f", "g", 0.9}, {"f", "h", -0.9}, {"g", "h", 0.9}};
    const std::string ofFactors = "The estimated covariances of f, g, and h" + end;
    struct Case {
        int line;
        Covariances further;
        std::vector<std::string> cautions;
    };
    const std::vector<Case> cases = {
        {__LINE__, {}, {ofFactors}},
        {__LINE__, {{"x1", "x1", 1.0}, {"x2", "x2", 1.0}, {"x1", "x2", 0.1}}, {ofFactors}},
        {__LINE__, {{"x1", "x1", 0.0}, {"x2", "x2", 1.0}, {"x1", "x2", 0.1}}, {ofFactors}},
        {__LINE__, {{"x1", "x1", -1.0}, {"x2", "x2", -1.0}, {"x1", "x2", 5.0}}, {ofFactors}},
        {__LINE__,
         {{"x1", "x1", 1.0}, {"x2", "x2", 1.0}, {"x1", "x2", 1.1}},
         {"The estimated residual correlation of x1 and x2 is beyond ±1; the solution is not "
          "admissible.",
          ofFactors}},
        {__LINE__,
         {{"x1", "x1", 1.0},
          {"x2", "x2", 1.0},
          {"x3", "x3", 1.0},
          {"x1", "x2", 0.9},
          {"x2", "x3", 0.9},
          {"x1", "x3", -0.9}},
         {ofFactors, "The estimated residual covariances of x1, x2, and x3" + end}},
        {__LINE__, {{"x1", "x1", 1.0}, {"f", "x1", 0.0}}, {ofFactors}}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        Covariances all = factors;
        all.insert(all.end(), each.further.begin(), each.further.end());
        EXPECT_EQ(SEMAdmissibility::cautions(solution(all)), each.cautions);
    }
}

TEST(StructuralScreen, PreviewsAModelAndKeepsAFitInViewWhileItIsRewritten) {
    ReferenceStudy study("hs1939.csv");
    study.screens.appear(sem);
    study.set(modelOf(threeFactors + "\ng =~ 1*visual + textual + speed"));
    Screen& screen = study.screens.at(sem);
    ScreenContent content = screen.content();
    EXPECT_EQ(content.gate->title, "Ready to fit");
    EXPECT_EQ(content.gate->lead, "4 latent variables, 9 observed variables");
    const Card& preview = content.cards.front();
    EXPECT_EQ(preview.facts[1].text, "24");
    EXPECT_EQ(labelBetween(std::get<PathDiagram>(preview.charts.front().plot), "g", "visual"), "1");
    EXPECT_TRUE(content.findings.empty());

    study.set(modelOf("f =~ x1 + x2"));
    EXPECT_EQ(screen.content().cards.front().cautions.size(), 1U) << "more parameters than moments";

    study.shown(sem, modelOf(threeFactors));
    study.set(modelOf(threeFactors + "\nx1 ~~ "));
    EXPECT_TRUE(screen.run()->starts_with("Model did not parse. Empty right-hand side in"));
    content = screen.content();
    EXPECT_FALSE(content.gate);
    EXPECT_EQ(content.findings.size(), 1U);
    EXPECT_EQ(study.result(sem, "/fit/degreesOfFreedom"), "24");
}

TEST(StructuralScreen, SmallCoefficientsKeepTheirDigits) {
    ReferenceStudy study("mtcars.csv");
    const ScreenContent content = study.shown(sem, modelOf("wt ~ disp\nmpg ~ disp + wt"));
    const ReportTable& table = *content.findings.front().item.table;
    EXPECT_EQ(rowOf(table, "wt ~ disp")[1], "0.00701");
    EXPECT_EQ(rowOf(table, "wt ~ disp")[2], "0.00064");
}

TEST(StructuralScreen, TellsOfTheBaselineWherePredictorsAreObserved) {
    ReferenceStudy study("hs1939.csv");
    const auto tells = [&study](const std::string& model) {
        const ScreenContent content = study.shown(sem, modelOf(model));
        return content.findings.front().item.extraTables->front().note->find(
                   " CFI and TLI compare with variables that are all uncorrelated") !=
               std::string::npos;
    };
    EXPECT_TRUE(tells("f =~ x1 + x2 + x3\nf ~ ageyr + sex"));
    EXPECT_FALSE(tells("f =~ x1 + x2 + x3\nf ~ sex"));
    EXPECT_FALSE(tells("x1 ~ ageyr + sex")) << "no degrees of freedom";
}

TEST(StructuralScreen, IncompleteRowsAreToldOf) {
    ReferenceStudy study("airquality.csv");
    const ScreenContent content = study.shown(sem, modelOf("Ozone ~ Wind + Temp"));
    EXPECT_EQ(content.tiles.back().value, "116");
    EXPECT_EQ(content.tiles.back().caption, "complete, of 153 rows");
    EXPECT_TRUE(content.findings.front().item.table->note->find(
                    " Listwise deletion: 116 of 153 rows are complete.") != std::string::npos);
}

TEST(StructuralScreen, ARenamedColumnIsRenamedInTheModel) {
    ReferenceStudy study("hs1939.csv");
    study.set(modelOf("x1 =~ x2 + x3 # x3\nvisual =~ x3 + x4 + x5"));
    study.state.renameVariable("x3", "the cubes");
    EXPECT_EQ(study.value("semModel"),
              jsonString("x1 =~ x2 + `the cubes` # x3\nvisual =~ `the cubes` + x4 + x5"));
    study.state.undoLastDataChange();
    EXPECT_EQ(study.value("semModel"), jsonString("x1 =~ x2 + x3 # x3\nvisual =~ x3 + x4 + x5"));
}

}  // namespace
}  // namespace sorvane
